// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Store.h"
#include "service/embedding/Embedding.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string_view>
#include <thread>

namespace dorvantel::service {

/// Gives every stored candidate its vector, one after the other, in a thread of its own. What is still to do is kept
/// by the store, so it survives a restart. A model server that does not answer pauses the whole queue, a text that it
/// does not take only that candidate, and so does whatever else fails with one; both are tried again, each time after
/// twice the pause.
class EmbeddingQueue {
public:
    struct Pauses {
        std::chrono::milliseconds first{1'000};
        std::chrono::milliseconds longest{5 * 60'000};
    };
    using LogLine = std::function<void(std::string_view)>;

    /// Starts to work at once. `store` must outlive this object; `log` is called on the queue's thread.
    EmbeddingQueue(Store& store, const ModelServerAddress& server, std::string model, Pauses pauses, LogLine log);
    ~EmbeddingQueue();
    EmbeddingQueue(const EmbeddingQueue&) = delete;
    EmbeddingQueue& operator=(const EmbeddingQueue&) = delete;

    /// There may be new candidates in the store. Any thread.
    void wake();
    /// Gives a running call up; what it was for stays in the queue.
    void stop();

private:
    using Clock = std::chrono::steady_clock;
    struct Delay {
        std::chrono::milliseconds pause{0};
        Clock::time_point until{};
    };
    enum class Outcome {
        Done,     ///< it has its vector, or is gone
        NotTaken, ///< only this one failed
        NoServer, ///< the next one would fail as well
    };

    void work();
    Clock::time_point pass();
    Clock::time_point passOrPause();
    Outcome embed(std::int64_t id, Delay& delay);
    Outcome embedOrPostpone(std::int64_t id, Delay& delay);
    void lengthen(Delay& delay, std::string_view reason) const noexcept;
    bool isStopping();

    Store& m_store;
    EmbeddingClient m_client;
    Pauses m_pauses;
    LogLine m_log;

    // Of the queue's thread alone.
    Delay m_serverDelay;
    std::map<std::int64_t, Delay> m_delays; ///< of the candidates that were not taken

    std::mutex m_mutex;
    std::condition_variable m_changed;
    Clock::time_point m_due{};         ///< when to look into the store next
    Clock::time_point m_pausedUntil{}; ///< not earlier than this, whoever wakes it
    bool m_isStopping = false;
    bool m_hasEnded = false;
    std::thread m_thread;
};

} // namespace dorvantel::service
