// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/http/ClientNetworks.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

namespace dorvantel::service {

/// The open connections, each with a thread of its own for as long as it is open: nobody waits because others are slow.
/// Threads are kept for later connections. Any thread.
class Connections {
public:
    struct Limits {
        std::size_t open = 512;
        /// Of the same client; so that one cannot keep all others out. Loopback is no single client: tunnels and
        /// proxies come from there.
        std::size_t openPerClient = 128;
    };

    /// `serve` runs on the connection's thread. The socket is closed behind it.
    Connections(const Limits& limits, std::function<void(int socket)> serve);
    ~Connections();
    Connections(const Connections&) = delete;
    Connections& operator=(const Connections&) = delete;

    /// Has the socket served; false when there are too many, and then the socket is still the caller's.
    bool add(int socket, const ClientAddress& address);
    /// Cuts every connection and returns when none is served any more. Nothing may be added after that.
    void end();

private:
    void work();

    Limits m_limits;
    std::function<void(int)> m_serve;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<int, ClientAddress> m_open; ///< by socket
    std::deque<int> m_waiting;           ///< for a thread that has just been woken or made
    std::vector<std::thread> m_threads;
    bool m_isEnding = false;
};

} // namespace dorvantel::service
