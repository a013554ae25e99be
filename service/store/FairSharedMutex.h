// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <shared_mutex>

namespace dorvantel::service {

/// Many readers or one writer, where a writer that waits lets no new reader pass: searches that never pause must not
/// keep a stored vector waiting for ever, which the standard library's mutex does not promise.
class FairSharedMutex {
public:
    void lock() {
        const std::scoped_lock turn(m_turnstile);
        m_mutex.lock();
    }
    void unlock() { m_mutex.unlock(); }
    void lock_shared() {
        const std::scoped_lock turn(m_turnstile);
        m_mutex.lock_shared();
    }
    void unlock_shared() { m_mutex.unlock_shared(); }

private:
    std::mutex m_turnstile;
    std::shared_mutex m_mutex;
};

} // namespace dorvantel::service
