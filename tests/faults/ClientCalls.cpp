// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/faults/ClientCalls.h"

#include "tests/faults/ExpectedLines.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Wait.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

/// For half a gigabyte on a busy machine.
constexpr int patience = 60'000;

const QString email = u"ana@example.com"_s;

/// The lines that are written until `call` has called what it was given, and then what it was given with.
template <typename Result>
QStringList completed(const std::function<void(std::function<void(std::expected<Result, APIError>)>)>& call) {
    CapturedOutput output;
    std::optional<QString> end;
    call([&end](const std::expected<Result, APIError>& result) {
        end = result ? u"= value"_s : u"= "_s + caseName(result.error());
    });
    EXPECT_TRUE(waitUntil([&end] { return end.has_value(); }, patience));
    return output.lines() + QStringList{end.value_or(u"= nothing"_s)};
}

template <typename Value>
QStringList awaited(const QFuture<ModelResult<Value>>& future) {
    CapturedOutput output;
    EXPECT_TRUE(waitUntil([&future] { return future.isFinished(); }, patience));
    const auto& result = future.result();
    return output.lines() + QStringList{result ? u"= value"_s : u"= "_s + localizedDescription(result.error())};
}

QStringList runTags(Clients& clients) {
    CapturedOutput output;
    clients.models.fetchAvailableModels();
    EXPECT_TRUE(waitUntil([&] { return !clients.models.isLoadingModels(); }, patience));
    return output.lines() + QStringList{u"= "_s + clients.models.modelError().value_or(u"value"_s)};
}

QStringList runShow(Clients& clients) {
    CapturedOutput output;
    const auto future = clients.models.fetchCapabilities(u"m"_s);
    EXPECT_TRUE(waitUntil([&future] { return future.isFinished(); }, patience));
    return output.lines() + QStringList{future.result() ? u"= value"_s : u"= nothing"_s};
}

QStringList runChat(Clients& clients) {
    return awaited(clients.models.chat({{u"user"_s, u"hola"_s}}, std::nullopt, 0.3));
}

QStringList runEmbed(Clients& clients) {
    return awaited(clients.models.generateEmbedding(u"contable"_s, std::nullopt));
}

QStringList runList(Clients& clients) {
    return completed<std::vector<DBRecordPointer>>([&](auto done) { clients.records.fetchAll(done); });
}

QStringList runPDF(Clients& clients) {
    return completed<std::optional<QByteArray>>([&](auto done) { clients.records.fetchPDF(email, done); });
}

QStringList runInsert(Clients& clients) {
    DBRecordRepresentation record;
    record.name = u"Ana"_s;
    record.email = email;
    record.summarizedText = u"Resumen"_s;
    record.invitationMail = u"Estimada Ana"_s;
    record.file = "%PDF-";
    return completed<DBRecord>([&](auto done) { clients.records.insertResume(record, done); });
}

QStringList runSearch(Clients& clients) {
    return completed<std::shared_ptr<IdentifiableSearchResponse>>(
        [&](auto done) { clients.records.search(u"select"_s, done); });
}

/// Nobody is told how a deletion ended: it has when its session has told its client.
QStringList runDelete(Clients& clients) {
    CapturedOutput output;
    const qsizetype before = clients.session.ended();
    clients.records.deleteResume(email);
    EXPECT_TRUE(waitUntil([&] { return clients.session.ended() == before + 1; }, patience));
    return output.lines();
}

ScriptedReply json(const QByteArray& body, int status = 200) {
    return {.status = status, .body = body};
}

template <QStringList (*expected)(const Reading&)>
QStringList withoutClients(const Reading& reading, const Clients&) {
    return expected(reading);
}

Reading ofGet(const Fault& fault, const ScriptedReply& healthyReply) {
    return fault.get(healthyReply);
}

/// A member that nobody asked for is passed over, and wrong from its beginning.
Reading ofGetPDF(const Fault& fault, const ScriptedReply& healthyReply) {
    Reading reading = fault.get(healthyReply);
    if (reading.body.contains('\xE9')) {
        reading.at = reading.body.indexOf("An\xE9");
    }
    return reading;
}

Reading ofPost(const Fault& fault, const ScriptedReply& healthyReply) {
    return fault.post(healthyReply);
}

Reading ofDelete(const Fault& fault, const ScriptedReply& healthyReply) {
    return fault.deletion(healthyReply);
}

} // namespace

void ImpatientSession::send(const HttpRequest& request, QObject* context, std::function<void(HttpOutcome)> completion) {
    HttpRequest impatient = request;
    impatient.timeout = timeout;
    impatient.mostBytes = std::min(request.mostBytes, mostBytes);
    m_session.send(impatient, context, [this, completion = std::move(completion)](HttpOutcome outcome) {
        completion(std::move(outcome));
        ++m_ended;
    });
}

Clients::Clients() {
    settings.setOllamaURL(server.url());
    settings.setSelectedLLMModel(u"m"_s);
    settings.setSelectedEmbeddingModel(u"e"_s);
}

void PrintTo(const ClientCall& call, std::ostream* out) {
    *out << call.name;
}

const std::vector<ClientCall>& clientCalls() {
    constexpr qsizetype bytesOfList = 150;
    static const std::vector<ClientCall> all{
        {"Tags", json(R"({"models":[{"name":"Ana"}]})"), runTags, withoutClients<expectedOfTags>, ofGet},
        {"Show", json(R"({"template":"Ana","capabilities":["tools"]})"), runShow, withoutClients<expectedOfShow>,
         ofPost},
        {"Chat", json(R"({"model":"m","message":{"role":"assistant","content":"Ana"},"done":true})"), runChat,
         withoutClients<expectedOfModel>, ofPost},
        {"Embed", json(R"({"model":"Ana","embeddings":[[0.25,1]]})"), runEmbed, withoutClients<expectedOfModel>,
         ofPost},
        {"List",
         json(R"({"response":[{"name":"Ana","profession":"","email":"","summarizedText":"",)"
              R"("jsonCVData":{"gender":"","softSkills":[],"techSkills":[],"languages":[]}}]})"),
         runList, [](const Reading& reading, const Clients&) { return expectedOfList(reading, bytesOfList); }, ofGet},
        {"PDF", json(R"({"Ana":0,"file":[37,80]})"), runPDF,
         [](const Reading& reading, const Clients&) { return expectedOfPDF(reading, email); }, ofGetPDF},
        {"Insert",
         json(R"({"name":"Ana","profession":"","email":"","summarizedText":"","invitationMail":"","jsonCVData":""})",
              201),
         runInsert,
         [](const Reading& reading, const Clients& clients) {
             return expectedOfInsert(reading, email, clients.server.url() + u"/curriculums"_s);
         },
         ofPost},
        {"Search", json(R"({"sql":"Ana","result":[]})"), runSearch, withoutClients<expectedOfSearch>, ofPost},
        {"Delete", {.status = 204, .body = {}}, runDelete, withoutClients<expectedOfDelete>, ofDelete},
    };
    return all;
}

} // namespace dorvantel::test
