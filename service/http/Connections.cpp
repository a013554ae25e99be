// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/http/Connections.h"

#include <algorithm>
#include <system_error>

#include <sys/socket.h>
#include <unistd.h>

namespace dorvantel::service {

namespace {

/// Who counts as the same client: an IPv4 address, or the 64 bits that an IPv6 network gives to one machine.
bool isSameClient(const ClientAddress& left, const ClientAddress& right) {
    constexpr auto networkBytes = 8;
    return left.isIPv4() || right.isIPv4()
               ? left == right
               : std::equal(left.bytes.begin(), left.bytes.begin() + networkBytes, right.bytes.begin());
}

} // namespace

Connections::Connections(const Limits& limits, std::function<void(int socket)> serve)
    : m_limits(limits)
    , m_serve(std::move(serve)) {}

Connections::~Connections() {
    end();
}

bool Connections::add(int socket, const ClientAddress& address) {
    const std::scoped_lock lock(m_mutex);
    const auto ofClient =
        std::ranges::count_if(m_open, [&](const auto& open) { return isSameClient(open.second, address); });
    const bool isOneTooMany = !address.isLoopback() && static_cast<std::size_t>(ofClient) >= m_limits.openPerClient;
    if (m_isEnding || isOneTooMany || m_open.size() >= m_limits.open) {
        return false;
    }
    if (m_open.size() == m_threads.size()) {
        try {
            m_threads.emplace_back(&Connections::work, this);
        } catch (const std::system_error&) {
            return false; // the system has no thread left
        }
    }
    m_open.emplace(socket, address);
    m_waiting.push_back(socket);
    m_changed.notify_one();
    return true;
}

void Connections::end() {
    {
        const std::scoped_lock lock(m_mutex);
        m_isEnding = true;
        for (const auto& [socket, address] : m_open) {
            ::shutdown(socket, SHUT_RDWR);
        }
        m_changed.notify_all();
    }
    for (std::thread& thread : m_threads) {
        thread.join();
    }
    m_threads.clear();
}

void Connections::work() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_isEnding || !m_waiting.empty(); });
        if (m_waiting.empty()) {
            return;
        }
        const int socket = m_waiting.front();
        m_waiting.pop_front();
        lock.unlock();
        m_serve(socket);
        lock.lock();
        m_open.erase(socket);
        ::close(socket); // not earlier: its number would come again while it is still in use here
    }
}

} // namespace dorvantel::service
