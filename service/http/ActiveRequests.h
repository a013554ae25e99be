// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>

namespace dorvantel::service {

/// What runs, so that a stop can wait for it. Must outlive what it gave out.
class ActiveRequests {
public:
    /// A request runs while the token lives; null once a stop has begun.
    std::shared_ptr<void> begin() {
        const std::scoped_lock lock(m_mutex);
        if (m_isStopping) {
            return nullptr;
        }
        ++m_count;
        return {this, [](void* self) { static_cast<ActiveRequests*>(self)->end(); }};
    }

    /// Lets nothing new begin and returns when everything has ended, or earlier when `patience` is at its end.
    void drain(std::chrono::milliseconds patience) {
        std::unique_lock lock(m_mutex);
        m_isStopping = true;
        m_ended.wait_for(lock, patience, [this] { return m_count == 0 || m_isHurried; });
    }

    /// Whoever waits for the end waits no longer.
    void hurry() {
        const std::scoped_lock lock(m_mutex);
        m_isHurried = true;
        m_ended.notify_all();
    }

private:
    void end() {
        const std::scoped_lock lock(m_mutex);
        --m_count;
        m_ended.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_ended;
    std::size_t m_count = 0;
    bool m_isStopping = false;
    bool m_isHurried = false;
};

} // namespace dorvantel::service
