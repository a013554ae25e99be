// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/http/Gate.h"

#include <gtest/gtest.h>

using namespace dorvantel::service;

namespace {

HttpRequest get(const std::string& host, std::vector<std::string> origins = {}) {
    HttpRequest request;
    request.method = "GET";
    request.hosts = {host};
    request.origins = std::move(origins);
    return request;
}

HttpRequest post(std::optional<std::string> contentType) {
    HttpRequest request;
    request.method = "POST";
    request.hosts = {"localhost"};
    request.contentType = std::move(contentType);
    request.hasBody = true;
    return request;
}

int status(const HttpRequest& request, const std::string& listenHost = "127.0.0.1") {
    const auto refusal = Gate(listenHost).refusal(request);
    if (refusal) {
        EXPECT_TRUE(refusal->body.starts_with("{\"error\":\"")) << refusal->body;
    }
    return refusal ? refusal->status : 0;
}

} // namespace

TEST(ParseHostAndPort, TakesNamesAddressesAndPorts) {
    EXPECT_EQ(parseHostAndPort("localhost")->host, "localhost");
    EXPECT_EQ(parseHostAndPort("localhost")->port, std::nullopt);
    EXPECT_EQ(parseHostAndPort("127.0.0.1:80")->port, 80);
    EXPECT_EQ(parseHostAndPort("[::1]:8765")->host, "::1");
    EXPECT_EQ(parseHostAndPort("[::1]:8765")->port, 8765);
    EXPECT_EQ(parseHostAndPort("[::1]")->port, std::nullopt);
    EXPECT_EQ(parseHostAndPort("x:0")->port, 0);
    EXPECT_EQ(parseHostAndPort("x:65535")->port, 65535);
}

TEST(ParseHostAndPort, RefusesWhatIsNeither) {
    for (const char* const text : {"", ":80", "x:", "x:65536", "x:-1", "x:8a", "[::1", "[x]:1", "[::1]8", "::1:80"}) {
        EXPECT_FALSE(parseHostAndPort(text)) << text;
    }
}

TEST(Gate, OwnHostsPass) {
    for (const char* const host :
         {"localhost", "LOCALHOST:8765", "127.0.0.1", "127.0.0.1:1", "127.1.2.3:99", "[::1]", "[::1]:8765"}) {
        EXPECT_EQ(status(get(host)), 0) << host;
    }
}

TEST(Gate, ForeignHostsAreRefused) {
    for (const char* const host : {"example.com", "example.com:8765", "127.0.0.1.example.com", "localhost.example.com",
                                   "192.168.1.5", "", "0.0.0.0", "[fe80::1]", "127.0.0.1:x", "2130706433"}) {
        EXPECT_EQ(status(get(host)), 403) << host;
    }
}

TEST(Gate, ExactlyOneHostIsDemanded) {
    HttpRequest request = get("localhost");
    request.hosts = {};
    EXPECT_EQ(status(request), 403);
    request.hosts = {"localhost", "localhost"};
    EXPECT_EQ(status(request), 403);
}

TEST(Gate, ListenAddressIsAnOwnHost) {
    EXPECT_EQ(status(get("192.168.1.5:8765"), "192.168.1.5"), 0);
    EXPECT_EQ(status(get("records.Example:8765"), "Records.example"), 0);
    EXPECT_EQ(status(get("localhost"), "192.168.1.5"), 0);
    EXPECT_EQ(status(get("192.168.1.6:8765"), "192.168.1.5"), 403);
}

TEST(Gate, WildcardTakesEveryLiteralAddressButNoName) {
    EXPECT_EQ(status(get("192.168.1.6:8765"), "0.0.0.0"), 0);
    EXPECT_EQ(status(get("[fe80::1]:8765"), "::"), 0);
    EXPECT_EQ(status(get("example.com"), "0.0.0.0"), 403);
    EXPECT_EQ(status(get("example.com"), "::"), 403);
}

TEST(Gate, OnlyLoopbackOriginsPass) {
    for (const char* const origin :
         {"http://localhost", "http://localhost:3000", "https://127.0.0.1", "http://[::1]:1"}) {
        EXPECT_EQ(status(get("localhost", {origin})), 0) << origin;
    }
    for (const char* const origin :
         {"http://example.com", "null", "", "file://", "http://localhost.example.com", "http://127.0.0.1@example.com",
          "ftp://localhost", "http://localhost/path", "http://192.168.1.5"}) {
        EXPECT_EQ(status(get("localhost", {origin})), 403) << origin;
    }
    EXPECT_EQ(status(get("localhost", {"http://localhost", "http://example.com"})), 403);
}

TEST(Gate, PostMustBeJSON) {
    for (const char* const type :
         {"application/json", "Application/JSON", "application/json; charset=utf-8", "application/json ;x"}) {
        EXPECT_EQ(status(post(type)), 0) << type;
    }
    for (const char* const type :
         {"", "text/plain", "application/x-www-form-urlencoded", "multipart/form-data", "application/jsonx",
          "text/plain; application/json", "application/json, text/plain"}) {
        EXPECT_EQ(status(post(type)), 415) << type;
    }
    EXPECT_EQ(status(post(std::nullopt)), 415);
}

TEST(Gate, BodyOfADeleteMustBeJSONWhenThereIsOne) {
    HttpRequest request = post("text/plain");
    request.method = "DELETE";
    EXPECT_EQ(status(request), 415);
    request.hasBody = false;
    EXPECT_EQ(status(request), 0);
}

TEST(Gate, ContentTypeOfAGetDoesNotMatter) {
    HttpRequest request = get("localhost");
    request.contentType = "application/json";
    EXPECT_EQ(status(request), 0);
    request.contentType = "text/plain";
    EXPECT_EQ(status(request), 0);
}

TEST(Gate, EncodedBodiesAreRefused) {
    HttpRequest request = post("application/json");
    request.isEncoded = true;
    EXPECT_EQ(status(request), 415);
}
