// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/api/Answers.h"
#include "tests/service/FullDisk.h"
#include "tests/service/HttpServerFixture.h"

#include <thread>

using namespace dorvantel::service;
using namespace dorvantel::test;
using namespace std::string_literals;
using nlohmann::json;
using testing::StartsWith;

TEST_F(HttpServerTest, EmptyListIsSixteenBytes) {
    const auto answer = get("/curriculums");
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(answer->body, "{\"response\":[]}");
    EXPECT_EQ(answer->get_header_value("Content-Type"), "application/json; charset=utf-8");
    EXPECT_EQ(answer->get_header_value("Cache-Control"), "no-store");
}

TEST_F(HttpServerTest, InsertIsAnsweredWithTheRecordAsText) {
    Record record = makeRecord("a@x", {"Femenino", {}, {"O'B"}, {}});
    record.jsonCVData = R"({"gender":"Femenino","softSkills":[],"techSkills":["O\'B"],"languages":[]})";
    record.file = std::string("%PDF\0", 5);
    const auto answer = insert(record);
    EXPECT_EQ(answer->status, 201);
    EXPECT_EQ(json::parse(answer->body), json::parse(insertBody(record)));
    EXPECT_EQ(inserts, 1);
}

TEST_F(HttpServerTest, ListCarriesCVDataAsObjectAndNoPDF) {
    Record record = makeRecord("a@x", {"Masculino", {"S"}, {"T"}, {"L"}});
    record.file = "bytes";
    insert(record);
    EXPECT_EQ(
        list(),
        (json::array(
            {{{"name", "Name of a@x"},
              {"profession", "Profession of a@x"},
              {"email", "a@x"},
              {"summarizedText", "Summary of a@x"},
              {"invitationMail", "Mail to a@x"},
              {"jsonCVData",
               {{"gender", "Masculino"}, {"softSkills", {"S"}}, {"techSkills", {"T"}}, {"languages", {"L"}}}}}})));
}

TEST_F(HttpServerTest, PDFComesAsNumbers) {
    Record record = makeRecord("a b/ñ@x");
    record.file = std::string("%PDF\0\xff", 6);
    insert(record);
    insert(makeRecord("none@x"));
    record = makeRecord("empty@x");
    record.file = "";
    insert(record);
    EXPECT_EQ(get("/curriculums/a%20b/%C3%B1@x/file")->body, "{\"file\":[37,80,68,70,0,255]}");
    EXPECT_EQ(get("/curriculums/none@x/file")->body, "{}");
    EXPECT_EQ(get("/curriculums/empty@x/file")->body, "{\"file\":[]}");
    expectError(get("/curriculums/nobody@x/file"), 404, "there is no record with this e-mail");
}

TEST_F(HttpServerTest, LargePDFComesWhole) {
    Record record = makeRecord("a@x");
    std::string bytes;
    for (int i = 0; i < 2'000'000; ++i) {
        bytes += static_cast<char>(i * 7 + i / 4096);
    }
    record.file = bytes;
    ASSERT_TRUE(store.insert(record)); // longer than this server takes
    const auto numbers = json::parse(get("/curriculums/a@x/file")->body)["file"].get<std::vector<int>>();
    ASSERT_EQ(numbers.size(), bytes.size());
    EXPECT_TRUE(std::ranges::equal(numbers, bytes, {}, {}, [](char byte) { return static_cast<unsigned char>(byte); }));
}

TEST_F(HttpServerTest, DeleteIsAnsweredWithoutBody) {
    insert(makeRecord("a@x"));
    const auto answer = client().Delete("/curriculums/a@x");
    EXPECT_EQ(answer->status, 204);
    EXPECT_EQ(answer->body, "");
    EXPECT_EQ(list(), json::array());
    expectError(client().Delete("/curriculums/a@x"), 404, "there is no record with this e-mail");
}

TEST_F(HttpServerTest, KeyInTheBodyOfADeleteCountsMoreThanThePath) {
    const std::string odd = "a?b#c%41 \"ñ\"\n/@x";
    insert(makeRecord(odd));
    insert(makeRecord("a"));
    EXPECT_EQ(client().Delete("/curriculums/a?b", json(odd).dump(), jsonType)->status, 204);
    EXPECT_EQ(list().size(), 1U);
    EXPECT_EQ(client().Delete("/curriculums/", json("a").dump(), jsonType)->status, 204);
    EXPECT_EQ(list().size(), 0U);
}

TEST_F(HttpServerTest, KeysWithControlCharactersAreFetchedAndDeleted) {
    for (const auto& [key, encoded] : {std::pair{"a\nb@x"s, "a%0Ab@x"s},
                                       {"a\rb@x"s, "a%0Db@x"s},
                                       {"a\0b@x"s, "a%00b@x"s},
                                       {"a\u2028b@x"s, "a%E2%80%A8b@x"s}}) {
        Record record = makeRecord(key);
        record.file = "%PDF";
        ASSERT_EQ(insert(record)->status, 201);
        const std::string address = "/curriculums/" + encoded;
        EXPECT_EQ(get(address + "/file")->body, "{\"file\":[37,80,68,70]}") << encoded;
        EXPECT_EQ(get(address + "/file", {{"Host", "evil.example"}})->status, 403) << encoded;
        EXPECT_EQ(client().Delete(address)->status, 204) << encoded;
        ASSERT_EQ(insert(record)->status, 201);
        EXPECT_EQ(client().Delete(address, nlohmann::json(key).dump(), jsonType)->status, 204) << encoded;
        expectError(client().Delete(address), 404, "there is no record with this e-mail");
    }
}

TEST_F(HttpServerTest, DeleteRefusesABodyThatIsNoKey) {
    insert(makeRecord("a@x"));
    expectError(client().Delete("/curriculums/a@x", "{}", jsonType), 422,
                "the body must be the e-mail as a JSON string");
    EXPECT_EQ(client().Delete("/curriculums/a@x", "a@x", jsonType)->status, 400);
    expectError(client().Delete("/curriculums/a@x", "\"a@x\"", "text/plain"), 415, "the body must be application/json");
    EXPECT_EQ(list().size(), 1U);
}

TEST_F(HttpServerTest, SearchAnswersTheStatementAndTheRows) {
    insert(makeRecord("a@x", {"Femenino", {}, {"O'Reilly"}, {}}));
    insert(makeRecord("b@x", {"Femenino", {}, {"Reilly"}, {}}));
    const std::string sql = everybody + " where JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'O'Reilly')";
    const auto answer = search(sql);
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(json::parse(answer->body), (json{{"sql", sql},
                                               {"result",
                                                {{{"name", "Name of a@x"},
                                                  {"profession", "Profession of a@x"},
                                                  {"email", "a@x"},
                                                  {"summarizedText", "Summary of a@x"},
                                                  {"invitationMail", "Mail to a@x"},
                                                  {"jsonCVData",
                                                   {{"gender", "Femenino"},
                                                    {"softSkills", json::array()},
                                                    {"techSkills", {"O'Reilly"}},
                                                    {"languages", json::array()}}},
                                                  {"score", 100}}}}}));
}

TEST_F(HttpServerTest, SearchWithoutRowsHasAnEmptyResult) {
    EXPECT_EQ(search(everybody)->body, "{\"sql\":\"" + everybody + "\",\"result\":[]}");
}

TEST_F(HttpServerTest, SemanticSearchRanks) {
    for (const char* const email : {"a@x", "b@x"}) {
        insert(makeRecord(email));
    }
    ASSERT_TRUE(store.putVector(1, {1, 0}));
    ASSERT_TRUE(store.putVector(2, {0, 1}));
    const auto semantic = [](const std::string& numbers) {
        return selectText + "GREATEST(0, LEAST(100, (dot_product(vector, JSON_ARRAY_PACK('[" + numbers +
               "]')) + 1) * 50)) AS score from curriculums ORDER BY score DESC LIMIT 5";
    };
    const json result = json::parse(search(semantic("0.0,0.5"))->body)["result"];
    ASSERT_EQ(result.size(), 2U);
    EXPECT_EQ(result[0]["email"], "b@x");
    EXPECT_EQ(result[0]["score"], 75);
    EXPECT_EQ(result[1]["email"], "a@x");
    EXPECT_EQ(result[1]["score"], 50);
    expectError(search(semantic("1.0")), 422, "the query vector has 1 numbers, the stored vectors have 2");
    expectError(search(semantic("")), 422, "the query vector has 0 numbers, the stored vectors have 2");
}

TEST_F(HttpServerTest, HealthTellsHowTheServiceIs) {
    const auto health = [this] { return json::parse(get("/health")->body); };
    const auto storeBytes = [this] {
        return std::filesystem::file_size(folder.store()) +
               std::filesystem::file_size(folder.store().string() + "-wal");
    };
    EXPECT_EQ(health(), (json{{"status", "ok"},
                              {"records", 0},
                              {"vectorsPending", 0},
                              {"embeddingModel", "m"},
                              {"storeBytes", storeBytes()}}));
    insert(makeRecord("a@x"));
    insert(makeRecord("b@x"));
    insert(makeRecord("b@x"));
    ASSERT_EQ(store.putVector(queuedId(store, "a@x"), {1, 0}), true);
    EXPECT_EQ(health(), (json{{"status", "ok"},
                              {"records", 2},
                              {"vectorsPending", 1},
                              {"embeddingModel", "m"},
                              {"storeBytes", storeBytes()}}));
    EXPECT_EQ(client().Head("/health")->status, 200);
    EXPECT_EQ(get("/health")->get_header_value("Content-Type"), "application/json; charset=utf-8");
}

TEST(HealthJSON, NoModelIsNull) {
    EXPECT_EQ(healthJSON({.records = 1, .vectorsPending = 2, .embeddingModel = "", .bytes = 3}),
              R"({"status":"ok","records":1,"vectorsPending":2,"embeddingModel":null,"storeBytes":3})");
}

TEST_F(HttpServerTest, RefusedStatementSaysWhere) {
    expectError(search("select * from curriculums"), 400,
                "the statement cannot be run: expected "
                "\"name,profession,email,summarizedText,invitationMail,jsonCVData,\" at offset 7");
    expectError(post("/curriculums/search", "{}"), 422, "\"sql\" must be a text");
}

TEST_F(HttpServerTest, BadInsertsAreToldApartAndStoreNothing) {
    EXPECT_EQ(post("/curriculums", "{")->status, 400);
    EXPECT_EQ(post("/curriculums", "")->status, 400);
    expectError(post("/curriculums", "{}"), 422, "\"name\" must be a text");
    EXPECT_EQ(list().size(), 0U);
    EXPECT_EQ(inserts, 0);
}

TEST_F(HttpServerTest, StoreInTroubleIsAnErrorOfTheServiceAndLogged) {
    const SqliteDatabase other(folder.store().string(), SqliteDatabase::Access::ReadWriteCreate);
    other.execute("BEGIN IMMEDIATE");
    expectError(insert(makeRecord("a@x")), 503, "the store is busy; try again");
    const std::scoped_lock lock(logging);
    EXPECT_THAT(log, testing::ElementsAre("the store is busy; try again"));
}

TEST_F(HttpServerTest, FullDiskIsAnErrorOfItsOwnAndTheServiceGoesOn) {
    EXPECT_EQ(insert(makeRecord("a@x"))->status, 201);
    {
        const FullDisk disk;
        expectError(insert(makeRecord("b@x")), 507, "there is no room left for the store");
        expectError(client().Delete("/curriculums/a@x"), 507, "there is no room left for the store");
        EXPECT_EQ(list().size(), 1U);
        EXPECT_EQ(get("/health")->status, 200);
    }
    EXPECT_EQ(insert(makeRecord("b@x"))->status, 201);
    EXPECT_EQ(list().size(), 2U);
}

TEST_F(HttpServerTest, ManyClientsAtOnce) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 12; ++thread) {
        threads.emplace_back([this, thread] {
            for (int i = 0; i < 10; ++i) {
                const std::string email = std::to_string(thread) + "-" + std::to_string(i);
                EXPECT_EQ(insert(makeRecord(email))->status, 201);
                EXPECT_EQ(search(everybody)->status, 200);
                if (i % 2 == 0) {
                    EXPECT_EQ(client().Delete("/curriculums/" + email)->status, 204);
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(list().size(), 60U);
}

TEST_F(HttpServerTest, PortInUseIsNamed) {
    HttpServer second({.host = "127.0.0.1", .port = server.port()}, [](std::string_view) {});
    const auto bound = second.bind();
    ASSERT_FALSE(bound);
    EXPECT_EQ(bound.error(), "cannot listen on 127.0.0.1:" + std::to_string(server.port()) +
                                 ": the port is in use by another program");
}

TEST_F(HttpServerTest, UrlNamesThePortThatWasTaken) {
    EXPECT_EQ(server.url(), "http://127.0.0.1:" + std::to_string(server.port()) + "/curriculums");
    EXPECT_GT(server.port(), 0);
}

TEST(HttpServer, AddressThatIsNotThisMachinesIsNamed) {
    for (const char* const host : {"192.0.2.1", "no.such.host.invalid"}) {
        HttpServer server({.host = host, .port = 8765}, [](std::string_view) {});
        const auto bound = server.bind();
        ASSERT_FALSE(bound);
        EXPECT_THAT(bound.error(), StartsWith("cannot listen on " + std::string(host) + ":8765: "));
    }
}
