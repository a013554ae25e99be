// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/FakeModelServer.h"

#include <nlohmann/json.hpp>

namespace dorvantel::test {

FakeModelServer::FakeModelServer(Handler handler)
    : m_handler(std::move(handler)) {
    m_server.set_keep_alive_timeout(1);
    m_server.Post("/api/embed", [this](const httplib::Request& request, httplib::Response& response) {
        {
            const std::scoped_lock lock(m_mutex);
            m_requests.push_back(request.body);
        }
        const Answer answer = m_handler(request.body);
        response.status = answer.status;
        response.set_content(answer.body, "application/json");
    });
    m_port = m_server.bind_to_any_port("127.0.0.1");
    m_thread = std::thread([this] { m_server.listen_after_bind(); });
    while (!m_server.is_running()) {
        std::this_thread::yield();
    }
}

FakeModelServer::~FakeModelServer() {
    m_server.stop();
    m_thread.join();
}

std::vector<std::string> FakeModelServer::requests() const {
    const std::scoped_lock lock(m_mutex);
    return m_requests;
}

FakeModelServer::Answer FakeModelServer::vector(const std::vector<double>& numbers) {
    return {200, nlohmann::json{{"model", "m"}, {"embeddings", nlohmann::json::array({numbers})}}.dump()};
}

} // namespace dorvantel::test
