// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/HttpServer.h"

#include "service/SqliteStore.h"
#include "tests/service/ServiceSupport.h"

#include <atomic>
#include <thread>

#include <gmock/gmock.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

using namespace dorvantel::service;
using namespace dorvantel::test;
using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr std::size_t bodyLimit = 200'000;
constexpr const char* jsonType = "application/json";
const std::string selectText = "select name,profession,email,summarizedText,invitationMail,jsonCVData,";
const std::string everybody = selectText + "100.0 as score from curriculums";

class HttpServerTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(server.bind());
        server.start(api);
    }

    httplib::Client client() const {
        httplib::Client made("127.0.0.1", server.port());
        made.set_read_timeout(30);
        return made;
    }
    httplib::Result get(const std::string& target, const httplib::Headers& headers = {}) const {
        return client().Get(target, headers);
    }
    httplib::Result post(const std::string& target, const std::string& body, const std::string& type = jsonType) const {
        return client().Post(target, body, type);
    }
    httplib::Result insert(const Record& record) const { return post("/curriculums", insertBody(record)); }
    httplib::Result search(const std::string& sql) const {
        return post("/curriculums/search", json{{"sql", sql}}.dump());
    }
    json list() const { return json::parse(get("/curriculums")->body)["response"]; }

    enum class End { Wait, HalfClose };
    /// What the server answers to these very bytes until it closes the connection.
    std::string raw(const std::string& bytes, End end = End::Wait) const;

    static void expectError(const httplib::Result& result, int status, const std::string& message) {
        ASSERT_TRUE(result);
        EXPECT_EQ(result->status, status);
        EXPECT_EQ(json::parse(result->body), (json{{"error", message}}));
        EXPECT_EQ(result->get_header_value("Content-Type"), "application/json; charset=utf-8");
    }

    StoreFolder folder;
    SqliteStore store{folder.store(), "m"};
    std::atomic<int> inserts = 0;
    RecordsApi api{store, [this] { ++inserts; }};
    std::vector<std::string> log;
    HttpServer server{{"127.0.0.1", 0, bodyLimit}, [this](std::string_view line) { log.emplace_back(line); }};
};

std::string HttpServerTest::raw(const std::string& bytes, End end) const {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(server.port()));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL), std::ssize(bytes));
    if (end == End::HalfClose) {
        ::shutdown(socket, SHUT_WR);
    }
    std::string answer;
    char buffer[4096];
    for (ssize_t size = 0; (size = ::recv(socket, buffer, sizeof buffer, 0)) > 0;) {
        answer.append(buffer, static_cast<std::size_t>(size));
    }
    ::close(socket);
    return answer;
}

} // namespace

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
    for (int i = 0; i < 100'000; ++i) {
        bytes += static_cast<char>(i * 7);
    }
    record.file = bytes;
    ASSERT_EQ(insert(record)->status, 201);
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

TEST_F(HttpServerTest, UnknownAddressesAndMethodsHaveTheOneErrorShape) {
    expectError(get("/"), 404, "there is nothing at this address");
    expectError(get("/curriculums/x"), 405, "this address does not take this method");
    EXPECT_EQ(get("/curriculums/x")->get_header_value("Allow"), "DELETE");
    expectError(client().Put("/curriculums", "{}", jsonType), 405, "this address does not take this method");
    expectError(client().Patch("/curriculums", "{}", jsonType), 405, "this address does not take this method");
    expectError(client().Options("/curriculums"), 405, "this address does not take this method");
    EXPECT_THAT(raw("BREW /curriculums HTTP/1.1\r\nConnection: close\r\nHost: localhost\r\n\r\n"),
                HasSubstr("{\"error\":"));
    EXPECT_THAT(raw("TRACE /curriculums HTTP/1.1\r\nConnection: close\r\nHost: localhost\r\n\r\n"),
                HasSubstr("{\"error\":"));
    EXPECT_THAT(raw("nonsense\r\n\r\n"), HasSubstr("{\"error\":"));
}

TEST_F(HttpServerTest, HeadHasTheHeadersOfAGetAndNoBody) {
    const auto answer = client().Head("/curriculums");
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(answer->body, "");
}

TEST_F(HttpServerTest, ForeignHostsAndOriginsAreRefused) {
    expectError(get("/curriculums", {{"Host", "example.com"}}), 403, "this Host is not the service's own");
    EXPECT_EQ(get("/curriculums", {{"Host", "localhost:1"}})->status, 200);
    expectError(get("/curriculums", {{"Origin", "http://example.com"}}), 403, "requests from this Origin are refused");
    EXPECT_EQ(get("/curriculums", {{"Origin", "http://localhost:3000"}})->status, 200);
    EXPECT_THAT(raw("GET /curriculums HTTP/1.1\r\nConnection: close\r\n\r\n"), StartsWith("HTTP/1.1 403 "));
    EXPECT_THAT(raw("GET /curriculums HTTP/1.1\r\nConnection: close\r\nHost: localhost\r\nHost: example.com\r\n\r\n"),
                StartsWith("HTTP/1.1 403 "));
}

TEST_F(HttpServerTest, OnlyJSONBodiesAreTaken) {
    const std::string body = insertBody(makeRecord("a@x"));
    for (const char* const type : {"text/plain", "application/x-www-form-urlencoded", "multipart/form-data; boundary=x",
                                   "multipart/form-data"}) {
        expectError(post("/curriculums", body, type), 415, "the body must be application/json");
    }
    httplib::Client encoding = client();
    encoding.set_compress(true);
    expectError(encoding.Post("/curriculums", body, jsonType), 415, "the body must come without a Content-Encoding");
    EXPECT_THAT(
        raw("POST /curriculums HTTP/1.1\r\nConnection: close\r\nHost: localhost\r\nContent-Length: 2\r\n\r\n{}"),
        StartsWith("HTTP/1.1 415 "));
    EXPECT_EQ(list().size(), 0U);
}

TEST_F(HttpServerTest, BodiesUpToTheLimitAreTakenAndLargerOnesRefused) {
    std::string body = insertBody(makeRecord("a@x"));
    body.resize(bodyLimit, ' ');
    EXPECT_EQ(post("/curriculums", body)->status, 201);
    body += ' ';
    expectError(post("/curriculums", body), 413, "the body is too large");
}

TEST_F(HttpServerTest, LimitHoldsForChunkedBodiesToo) {
    const std::string body = insertBody(makeRecord("a@x")) + std::string(bodyLimit, ' ');
    for (const std::size_t size : {bodyLimit, bodyLimit + 1}) {
        const auto answer = client().Post(
            "/curriculums",
            [&](std::size_t offset, httplib::DataSink& sink) {
                const std::size_t end = std::min(offset + 60'000, size);
                sink.write(body.data() + offset, end - offset);
                if (end == size) {
                    sink.done();
                }
                return true;
            },
            jsonType);
        EXPECT_EQ(answer->status, size == bodyLimit ? 201 : 413);
    }
}

TEST_F(HttpServerTest, ConnectionStaysInStepAfterARefusal) {
    httplib::Client kept = client();
    kept.set_keep_alive(true);
    const std::string hidden = "GET /curriculums/hidden HTTP/1.1\r\nConnection: close\r\nHost: localhost\r\n\r\n";
    EXPECT_EQ(kept.Post("/curriculums", hidden, "text/plain")->status, 415);
    EXPECT_EQ(kept.Post("/nothing", hidden, jsonType)->status, 404);
    EXPECT_EQ(kept.Post("/curriculums", {{"Origin", "http://example.com"}}, hidden, jsonType)->status, 403);
    EXPECT_EQ(kept.Post("/curriculums", std::string(bodyLimit + 1, 'x'), jsonType)->status, 413);
    EXPECT_EQ(kept.Post("/curriculums", hidden, "multipart/form-data; boundary=x")->status, 415);
    EXPECT_EQ(kept.Get("/curriculums")->body, "{\"response\":[]}");
}

TEST_F(HttpServerTest, BodyThatDoesNotComeWholeStoresNothing) {
    const std::string body = insertBody(makeRecord("a@x"));
    raw("POST /curriculums HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\nContent-Length: " +
            std::to_string(body.size() + 1) + "\r\n\r\n" + body,
        End::HalfClose);
    EXPECT_EQ(list().size(), 0U);
}

TEST_F(HttpServerTest, PostWithoutALengthHasNoBody) {
    EXPECT_THAT(raw("POST /curriculums HTTP/1.1\r\nConnection: close\r\nHost: localhost\r\nContent-Type: "
                    "application/json\r\n\r\n"),
                StartsWith("HTTP/1.1 400 "));
}

TEST_F(HttpServerTest, LongAddressesAreTakenOrRefusedButNeverHurt) {
    EXPECT_EQ(get("/curriculums/" + std::string(7'900, 'x') + "/file")->status, 404);
    EXPECT_EQ(client().Delete("/" + std::string(7'900, '/'))->status, 404);
    expectError(get("/" + std::string(9'000, 'x')), 414, "the address is too long");
    EXPECT_EQ(get("/curriculums")->status, 200);
}

TEST_F(HttpServerTest, AnswersAreNotCompressed) {
    insert(makeRecord("a@x"));
    httplib::Client plain = client();
    plain.set_decompress(false);
    const auto answer = plain.Get("/curriculums", {{"Accept-Encoding", "gzip, deflate, br"}});
    EXPECT_FALSE(answer->has_header("Content-Encoding"));
    EXPECT_THAT(answer->body, StartsWith("{\"response\":["));
}

TEST_F(HttpServerTest, LongListIsStreamedInChunks) {
    for (int i = 0; i < 120; ++i) {
        Record record = makeRecord(std::to_string(i));
        record.summarizedText = std::string(5'000, 'x');
        ASSERT_TRUE(store.insert(record));
    }
    const auto answer = get("/curriculums");
    EXPECT_EQ(answer->get_header_value("Transfer-Encoding"), "chunked");
    const json records = json::parse(answer->body)["response"];
    ASSERT_EQ(records.size(), 120U);
    EXPECT_EQ(records[119]["email"], "119");
}

TEST_F(HttpServerTest, StoreInTroubleIsAnErrorOfTheServiceAndLogged) {
    const SqliteDatabase other(folder.store().string(), SqliteDatabase::Access::ReadWriteCreate);
    other.execute("BEGIN IMMEDIATE");
    expectError(insert(makeRecord("a@x")), 503, "the store is busy; try again");
    EXPECT_THAT(log, testing::ElementsAre("{\"error\":\"the store is busy; try again\"}"));
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
    HttpServer second({"127.0.0.1", server.port(), bodyLimit}, [](std::string_view) {});
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
        HttpServer server({host, 8765, bodyLimit}, [](std::string_view) {});
        const auto bound = server.bind();
        ASSERT_FALSE(bound);
        EXPECT_THAT(bound.error(), StartsWith("cannot listen on " + std::string(host) + ":8765: "));
    }
}
