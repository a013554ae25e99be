// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/faults/ExpectedLines.h"

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

using Kind = Reading::Kind;

const QString value = u"= value"_s;
const QString responseProblem = u"= responseProblem"_s;
const QString decodingProblem = u"= decodingProblem"_s;
const QString wrongFormat = u"No se han podido leer los datos porque no tienen el formato correcto."_s;

QString context(const Reading& reading) {
    return u"The body is not valid JSON: error at byte %1."_s.arg(reading.at);
}

QString corrupted(const Reading& reading) {
    return u"dataCorrupted ("_s + context(reading) + u" [])"_s;
}

bool isText(const QByteArray& body) {
    return !body.contains('\xE9'); // the one byte by which bodies of these tests stop being text
}

} // namespace

QStringList expectedOfList(const Reading& reading, qsizetype healthyBytes) {
    const QString ok = u"ℹ️ HTTP Status Code: 200"_s;
    const QString received = u"ℹ️ Received data: %1 bytes"_s;
    switch (reading.kind) {
    case Kind::Healthy:
        return {ok, received.arg(healthyBytes), value};
    case Kind::Transport:
        return {u"❌ Network Error: "_s + reading.text, responseProblem};
    case Kind::Status:
        return {u"ℹ️ HTTP Status Code: %1"_s.arg(reading.status),
                u"❌ HTTP Error: Expected 200, got %1"_s.arg(reading.status), responseProblem};
    case Kind::NotJson:
        break;
    }
    constexpr qsizetype shownCharacters = 500; // of text without accents
    QStringList lines{ok, received.arg(reading.body.size()), u"❌ Decoding Error: Data corrupted"_s,
                      u"   Context: "_s + context(reading)};
    if (isText(reading.body)) {
        lines += u"   Raw JSON: "_s + QString::fromUtf8(reading.body.left(shownCharacters)) + u"..."_s;
    }
    return lines + QStringList{decodingProblem};
}

QStringList expectedOfPDF(const Reading& reading, const QString& key) {
    switch (reading.kind) {
    case Kind::Healthy:
        return {value};
    case Kind::Transport:
        return {u"❌ Network Error loading PDF for "_s + key + u": "_s + reading.text, responseProblem};
    case Kind::Status:
        return {u"❌ HTTP Error loading PDF: Expected 200, got %1"_s.arg(reading.status), responseProblem};
    case Kind::NotJson:
        break;
    }
    return {u"❌ Decoding Error loading PDF: "_s + corrupted(reading), decodingProblem};
}

QStringList expectedOfInsert(const Reading& reading, const QString& key, const QString& baseUrl) {
    const QString attempt = u"📤 Attempting to insert resume for "_s + key + u" to "_s + baseUrl;
    switch (reading.kind) {
    case Kind::Healthy:
        return {attempt, u"✅ Successfully inserted resume for "_s + key, value};
    case Kind::Transport:
        return {attempt, u"❌ Network Error in insertResume: "_s + reading.text, responseProblem};
    case Kind::Status:
        return {attempt, u"❌ Expected statusCode: 201, got %1"_s.arg(reading.status), responseProblem};
    case Kind::NotJson:
        break;
    }
    return {attempt, u"❌ Failed to decode response: "_s + corrupted(reading), decodingProblem};
}

QStringList expectedOfDelete(const Reading& reading) {
    return {reading.kind == Kind::Healthy ? u"Resume deleted successfully from database"_s
                                          : u"Failure! Record could not be deleted"_s};
}

QStringList expectedOfSearch(const Reading& reading) {
    switch (reading.kind) {
    case Kind::Healthy:
        return {value};
    case Kind::Transport:
    case Kind::Status:
        return {responseProblem};
    case Kind::NotJson:
        break;
    }
    return {decodingProblem};
}

QStringList expectedOfTags(const Reading& reading) {
    switch (reading.kind) {
    case Kind::Healthy:
        return {value};
    case Kind::Transport:
        return {u"= Failed to fetch models: "_s + reading.text};
    case Kind::Status:
    case Kind::NotJson:
        break;
    }
    return {u"= Failed to fetch models: "_s + wrongFormat};
}

QStringList expectedOfShow(const Reading& reading) {
    if (reading.kind == Kind::Healthy) {
        return {uR"(Capabilities from API: ["tools"])"_s, value};
    }
    return {u"= nothing"_s};
}

QStringList expectedOfModel(const Reading& reading) {
    switch (reading.kind) {
    case Kind::Healthy:
        return {value};
    case Kind::Transport:
        return {u"= Error de red: "_s + reading.text};
    case Kind::Status:
        return {u"= Error de red: HTTP %1"_s.arg(reading.status)};
    case Kind::NotJson:
        break;
    }
    return {u"= Error decodificando respuesta: "_s + wrongFormat};
}

} // namespace dorvantel::test
