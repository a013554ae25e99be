// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/HttpServerFixture.h"

using namespace dorvantel::service;
using namespace dorvantel::test;
using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

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

TEST_F(HttpServerTest, HealthIsForOwnHostsAndOriginsOnly) {
    expectError(get("/health", {{"Host", "example.com"}}), 403, "this Host is not the service's own");
    expectError(get("/health", {{"Origin", "http://example.com"}}), 403, "requests from this Origin are refused");
    expectError(post("/health", "{}"), 405, "this address does not take this method");
    EXPECT_EQ(post("/health", "{}")->get_header_value("Allow"), "GET");
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
