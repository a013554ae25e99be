// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/embedding/EmbeddingQueue.h"

#include <algorithm>

namespace dorvantel::service {

EmbeddingQueue::EmbeddingQueue(Store& store, const ModelServerAddress& server, std::string model, Pauses pauses,
                               LogLine log)
    : m_store(store)
    , m_client(server, std::move(model))
    , m_pauses(pauses)
    , m_log(std::move(log))
    , m_thread([this] { work(); }) {}

EmbeddingQueue::~EmbeddingQueue() {
    stop();
}

void EmbeddingQueue::wake() {
    const std::scoped_lock lock(m_mutex);
    m_due = std::min(m_due, std::max(Clock::now(), m_pausedUntil));
    m_changed.notify_all();
}

void EmbeddingQueue::stop() {
    if (!m_thread.joinable()) {
        return;
    }
    {
        std::unique_lock lock(m_mutex);
        m_isStopping = true;
        m_changed.notify_all();
        // A call that is only about to connect does not notice that it was cancelled, so it is told until it has.
        do {
            m_client.cancel();
        } while (!m_changed.wait_for(lock, std::chrono::milliseconds(20), [this] { return m_hasEnded; }));
    }
    m_thread.join();
}

bool EmbeddingQueue::isStopping() {
    const std::scoped_lock lock(m_mutex);
    return m_isStopping;
}

void EmbeddingQueue::work() {
    std::unique_lock lock(m_mutex);
    while (!m_isStopping) {
        if (m_due == Clock::time_point::max()) {
            m_changed.wait(lock);
        } else if (Clock::now() < m_due) {
            m_changed.wait_until(lock, m_due);
        } else {
            m_due = Clock::time_point::max(); // before the pass, so that a wake during it counts
            lock.unlock();
            const Clock::time_point next = passOrPause();
            lock.lock();
            m_pausedUntil = m_serverDelay.until;
            m_due = std::max(std::min(m_due, next), m_pausedUntil);
        }
    }
    m_hasEnded = true;
    m_changed.notify_all();
}

/// A pass that fails unexpectedly, for want of memory say, must not end the service.
EmbeddingQueue::Clock::time_point EmbeddingQueue::passOrPause() {
    try {
        return pass();
    } catch (const std::exception&) {
        lengthen(m_serverDelay, "it failed unexpectedly");
        return m_serverDelay.until;
    }
}

/// Goes through the whole queue once and says when that is worth doing again.
EmbeddingQueue::Clock::time_point EmbeddingQueue::pass() {
    std::map<std::int64_t, Delay> delays;
    Clock::time_point next = Clock::time_point::max();
    for (std::int64_t after = 0; !isStopping();) {
        const auto candidate = m_store.nextUnembedded(after);
        if (!candidate) {
            lengthen(m_serverDelay, candidate.error().message);
            return m_serverDelay.until;
        }
        if (!*candidate) {
            m_delays = std::move(delays); // forgets those that are no longer in the queue
            return next;
        }
        after = (*candidate)->id;
        Delay delay = m_delays[after];
        if (delay.until <= Clock::now()) {
            switch (embed(**candidate)) {
            case Outcome::Done:
                m_delays.erase(after);
                continue;
            case Outcome::NotTaken:
                delay = m_delays[after];
                break;
            case Outcome::NoServer:
                return m_serverDelay.until;
            }
        }
        delays[after] = delay;
        next = std::min(next, delay.until);
    }
    return next;
}

EmbeddingQueue::Outcome EmbeddingQueue::embed(const Unembedded& candidate) {
    const auto answer = m_client.embed(embeddingText(candidate));
    if (!answer && isStopping()) {
        return Outcome::NoServer;
    }
    if (!answer && !answer.error().concernsText) {
        lengthen(m_serverDelay, answer.error().message);
        return Outcome::NoServer;
    }
    m_serverDelay = {};
    if (!answer) {
        lengthen(m_delays[candidate.id], answer.error().message);
        return Outcome::NotTaken;
    }
    const auto vector = unitVector(*answer);
    if (!vector) {
        lengthen(m_delays[candidate.id], "the model server's vector has no direction");
        return Outcome::NotTaken;
    }
    if (const auto stored = m_store.putVector(candidate.id, *vector); !stored) {
        lengthen(m_delays[candidate.id], stored.error().message);
        return Outcome::NotTaken;
    }
    return Outcome::Done;
}

void EmbeddingQueue::lengthen(Delay& delay, std::string_view reason) const {
    delay.pause = std::clamp(delay.pause * 2, m_pauses.first, m_pauses.longest);
    delay.until = Clock::now() + delay.pause;
    m_log("embedding: " + std::string(reason) + "; trying again in " + std::to_string(delay.pause.count()) + " ms");
}

} // namespace dorvantel::service
