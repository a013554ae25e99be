// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "records/Responses.h"

#include "platform/ListLiteral.h"
#include "platform/Log.h"
#include "platform/Utf8.h"

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

QString contextLine(const DecodeError& error) {
    return u"   Context: "_s + error.context;
}

QString pathLine(const DecodeError& error) {
    return u"   Coding Path: "_s + listLiteral(error.path);
}

/// The line with the beginning of the body; none when the body is not UTF-8.
QStringList rawLines(const QByteArray& body) {
    constexpr int shownCharacters = 500;
    if (!isUtf8(body)) {
        return {};
    }
    return {u"   Raw JSON: "_s + firstCharacters(body, shownCharacters) + u"..."_s};
}

/// The text of a body that nobody expected, or its beginning when it is no text that anybody would read to the end.
QString loggedText(const QByteArray& body) {
    qsizetype size = std::min(body.size(), qsizetype{1024} * 1024);
    const auto isWithinCharacter = [&body](qsizetype at) { return (static_cast<uchar>(body[at]) & 0xC0U) == 0x80U; };
    while (size < body.size() && isWithinCharacter(size)) {
        --size;
    }
    return QString::fromUtf8(body.constData(), size);
}

} // namespace

std::expected<QByteArray, APIError> checkedBody(HttpOutcome outcome, const ResponseRules& rules) {
    const auto problem = std::unexpected(APIError::responseProblem);
    if (!outcome) {
        logLine(rules.networkError + outcome.error().description);
        return problem;
    }
    if (!outcome->statusCode) {
        logLine(rules.invalidType);
        return problem;
    }
    const QString status = QString::number(*outcome->statusCode);
    if (rules.logsProgress) {
        logLine(u"ℹ️ HTTP Status Code: "_s + status);
    }
    if (*outcome->statusCode != rules.expectedStatus) {
        logLine(rules.wrongStatus + status);
        if (!outcome->body.isEmpty() && isUtf8(outcome->body)) {
            logLine(rules.responseBody + loggedText(outcome->body));
        }
        return problem;
    }
    if (outcome->body.isEmpty()) {
        logLine(rules.noBody);
        return problem;
    }
    if (rules.logsProgress) {
        logLine(u"ℹ️ Received data: "_s + QString::number(outcome->body.size()) + u" bytes"_s);
    }
    return std::move(outcome->body);
}

QStringList decodingFailureLines(const DecodeError& error, const QByteArray& body) {
    switch (error.kind) {
    case DecodeError::Kind::KeyNotFound:
        return QStringList{u"❌ Decoding Error: Key '"_s + error.subject + u"' not found"_s, contextLine(error),
                           pathLine(error)} +
               rawLines(body);
    case DecodeError::Kind::TypeMismatch:
        return {u"❌ Decoding Error: Type mismatch for type "_s + error.subject, contextLine(error), pathLine(error)};
    case DecodeError::Kind::ValueNotFound:
        return {u"❌ Decoding Error: Value of type "_s + error.subject + u" not found"_s, contextLine(error),
                pathLine(error)};
    case DecodeError::Kind::DataCorrupted:
        break;
    }
    return QStringList{u"❌ Decoding Error: Data corrupted"_s, contextLine(error)} + rawLines(body);
}

} // namespace dorvantel
