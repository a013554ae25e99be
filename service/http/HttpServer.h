// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/api/RecordsApi.h"
#include "service/http/ActiveRequests.h"
#include "service/http/ByteBudget.h"
#include "service/http/Connections.h"
#include "service/http/Gate.h"
#include "service/http/Patience.h"

#include <chrono>
#include <cstddef>
#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace dorvantel::service {

/// As many bodies of the largest size are held at once, or more smaller ones; whoever comes then is told to try again.
constexpr std::size_t bodiesInMemory = 8;

using LogLine = std::function<void(std::string_view)>;

/// Speaks HTTP/1.1 on one address: gate, route, body, answer. Its threads run between `start` and `stop`.
class HttpServer {
public:
    struct Settings {
        std::string host = "127.0.0.1";
        int port = 8765;                                       ///< 0: a free one
        std::size_t bodyLimit = std::size_t{64} * 1024 * 1024; ///< in bytes; a larger body is 413
        Connections::Limits connections = {};
        ClientLimits client = {};                ///< its body limit is the one above
        std::vector<ClientNetwork> allowed = {}; ///< who may connect beside loopback
        /// How long a stop waits for the requests that run. Shorter than whoever supervises the service waits for it.
        std::chrono::milliseconds stopPatience = std::chrono::seconds(10);
    };

    /// `log` is called on any thread, with lines that hold nothing of any record.
    HttpServer(const Settings& settings, LogLine log);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// Takes the address, so that clients can connect; they are answered once `start` was called. The error is a
    /// sentence that names the address.
    std::expected<void, std::string> bind();

    /// The address with the port that was really taken: "http://127.0.0.1:8765/curriculums".
    std::string url() const;
    int port() const { return m_port; }

    /// `api` must live until `stop` has returned.
    void start(const RecordsApi& api);
    /// Takes no more requests, finishes those that run as far as its patience goes, cuts the connections and returns.
    void stop();
    /// A stop, running or to come, waits no longer. Any thread.
    void hurry();

private:
    class Listener;

    /// Reads a request's body to its end and gives it when it is no longer than `limit`.
    using ReadBody = std::function<std::expected<std::string, HttpAnswer>(std::size_t limit)>;

    void setUpListener();
    void routeWithoutBody();
    void routeWithBody();
    HttpAnswer answer(HttpRequest request, const ReadBody& readBody, bool isServing) const;

    Settings m_settings;
    Gate m_gate;
    const RecordsApi* m_api = nullptr;
    LogLine m_log;
    ActiveRequests m_active;
    ByteBudget m_bodies;
    std::unique_ptr<Listener> m_listener;
    std::thread m_thread;
    int m_port = 0;
};

} // namespace dorvantel::service
