// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/Sqlite.h"
#include "tests/service/FakeModelServer.h"
#include "tests/service/RawClient.h"
#include "tests/service/RecordsProcess.h"
#include "tests/service/ServiceSupport.h"
#include "tests/support/Wait.h"

#include <atomic>
#include <csignal>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace dorvantel::service;
using namespace dorvantel::test;
using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* jsonType = "application/json";
const std::string select = "select name,profession,email,summarizedText,invitationMail,jsonCVData,";
/// In every text of a candidate and in every statement, in both spellings that a path can have.
const std::string secret = "Zacarías";
const std::string encodedSecret = "Zacar%C3%ADas";

Record secretRecord(const std::string& email) {
    Record record = makeRecord(secret + email, {secret, {secret}, {secret}, {secret}});
    record.file = "%PDF " + secret;
    return record;
}

void everyKindOfRequest(const RecordsProcess& process) {
    const std::string body = insertBody(secretRecord("a@x"));
    const auto post = [&](const char* target, const std::string& text, const char* type = jsonType) {
        return process.client().Post(target, text, type)->status;
    };
    EXPECT_EQ(post("/curriculums", body), 201);
    EXPECT_EQ(post("/curriculums", body), 201);
    EXPECT_EQ(post("/curriculums", body.substr(0, body.size() - 2)), 400);
    EXPECT_EQ(post("/curriculums", json{{"name", secret}}.dump()), 422);
    EXPECT_EQ(post("/curriculums", body, "text/plain"), 415);
    EXPECT_EQ(post("/curriculums", body + std::string(1'100'000, ' ')), 413);
    const auto search = [&](const std::string& rest) {
        return post("/curriculums/search", json{{"sql", select + rest}}.dump());
    };
    EXPECT_EQ(search("100.0 as score from curriculums where JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'" +
                     secret + "')"),
              200);
    EXPECT_EQ(search("100.0 as score from " + secret), 400);
    EXPECT_EQ(search(secret), 400);
    EXPECT_EQ(process.client().Get("/curriculums")->status, 200);
    EXPECT_EQ(process.client().Get("/curriculums/" + encodedSecret + "a@x/file")->status, 200);
    EXPECT_EQ(process.client().Get("/curriculums/" + encodedSecret + "b@x/file")->status, 404);
    EXPECT_EQ(process.client().Get("/" + encodedSecret)->status, 404);
    EXPECT_EQ(process.client().Get("/curriculums", {{"Host", secret}})->status, 403);
    EXPECT_EQ(process.client().Get("/curriculums", {{"Origin", "http://" + secret}})->status, 403);
    EXPECT_EQ(process.client().Delete("/curriculums/" + encodedSecret + "b@x")->status, 404);
    EXPECT_EQ(process.client().Delete("/curriculums/" + encodedSecret + "a@x")->status, 204);
    for (const std::string& bytes : {secret + "\r\n\r\n", "GET /" + secret + " HTTP/1.1\r\n" + secret + "\r\n\r\n",
                                     "GET /" + std::string(9'000, 'x') + secret + " HTTP/1.1\r\n\r\n"}) {
        const RawClient raw(process.port());
        raw.send(bytes);
        EXPECT_THAT(raw.receiveAll(), testing::StartsWith("HTTP/1.1 4"));
    }
}

} // namespace

TEST(Log, SaysNothingOfACandidateWhateverHappens) {
    const StoreFolder folder;
    std::atomic<int> asked = 0; // each request may have another thread
    const FakeModelServer model([&asked](const std::string&) {
        const std::string refusal = R"({"error":"cannot embed )" + secret + "\"}";
        return ++asked % 2 == 0 ? FakeModelServer::Answer{400, refusal} : FakeModelServer::Answer{500, refusal};
    });
    RecordsProcess process({QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"), QStringLiteral("--store"),
                            QString::fromStdString(folder.store().string()), QStringLiteral("--body-limit=1"),
                            QStringLiteral("--embedding-model"), QStringLiteral("m"), QStringLiteral("--model-server"),
                            QString::fromStdString(model.url())});
    ASSERT_TRUE(process.waitUntilReady());
    everyKindOfRequest(process);
    {
        const SqliteDatabase other(folder.store().string(), SqliteDatabase::Access::ReadWriteCreate);
        other.execute("BEGIN IMMEDIATE");
        EXPECT_EQ(process.client().Post("/curriculums", insertBody(secretRecord("c@x")), jsonType)->status, 503);
    }
    EXPECT_EQ(process.client().Post("/curriculums", insertBody(secretRecord("c@x")), jsonType)->status, 201);
    EXPECT_TRUE(waitUntil([&] { return model.requests().size() >= 2; }));
    process.sendSignal(SIGTERM);
    EXPECT_EQ(process.exitCode(), 0);
    const std::string said = process.output() + process.errors();
    EXPECT_THAT(said, HasSubstr("the store is busy")) << "it does log";
    for (const std::string& word : {secret, encodedSecret, std::string("Zacar"), std::string("a@x"), std::string("c@x"),
                                    std::string("select"), std::string("Name of"), std::string("Summary of")}) {
        EXPECT_THAT(said, Not(HasSubstr(word)));
    }
}
