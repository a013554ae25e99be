// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/http/HttpServer.h"
#include "service/store/SqliteStore.h"
#include "tests/service/ServiceSupport.h"

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

namespace dorvantel::test {

constexpr const char* jsonType = "application/json";
const inline std::string selectText = "select name,profession,email,summarizedText,invitationMail,jsonCVData,";
const inline std::string everybody = selectText + "100.0 as score from curriculums";

/// A server with a store of its own and a small limit for bodies.
class HttpServerTest : public testing::Test {
protected:
    static constexpr std::size_t bodyLimit = 200'000;

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
    httplib::Result insert(const service::Record& record) const { return post("/curriculums", insertBody(record)); }
    httplib::Result search(const std::string& sql) const {
        return post("/curriculums/search", nlohmann::json{{"sql", sql}}.dump());
    }
    nlohmann::json list() const { return nlohmann::json::parse(get("/curriculums")->body)["response"]; }

    enum class End { Wait, HalfClose };
    /// What the server answers to these very bytes until it closes the connection.
    std::string raw(const std::string& bytes, End end = End::Wait) const;

    static void expectError(const httplib::Result& result, int status, const std::string& message) {
        ASSERT_TRUE(result);
        EXPECT_EQ(result->status, status);
        EXPECT_EQ(nlohmann::json::parse(result->body), (nlohmann::json{{"error", message}}));
        EXPECT_EQ(result->get_header_value("Content-Type"), "application/json; charset=utf-8");
    }

    StoreFolder folder;
    service::SqliteStore store{folder.store(), "m"};
    std::atomic<int> inserts = 0;
    service::RecordsApi api{store, [this] { ++inserts; }};
    std::mutex logging; // the server logs on any of its threads
    std::vector<std::string> log;
    service::HttpServer server{{.host = "127.0.0.1", .port = 0, .bodyLimit = bodyLimit}, [this](std::string_view line) {
                                   const std::scoped_lock lock(logging);
                                   log.emplace_back(line);
                               }};
};

} // namespace dorvantel::test
