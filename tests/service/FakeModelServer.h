// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <httplib.h>

namespace dorvantel::test {

/// A model server on a free loopback port that answers `/api/embed` as a test tells it to, on threads of its own.
class FakeModelServer {
public:
    struct Answer {
        int status = 200;
        std::string body;
    };
    using Handler = std::function<Answer(const std::string& requestBody)>;

    explicit FakeModelServer(Handler handler);
    ~FakeModelServer();

    std::string url() const { return "http://127.0.0.1:" + std::to_string(m_port); }
    int port() const { return m_port; }
    /// The bodies that arrived, in order.
    std::vector<std::string> requests() const;

    /// The answer that carries this vector.
    static Answer vector(const std::vector<double>& numbers);

private:
    Handler m_handler;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_requests;
    httplib::Server m_server;
    int m_port = 0;
    std::thread m_thread;
};

} // namespace dorvantel::test
