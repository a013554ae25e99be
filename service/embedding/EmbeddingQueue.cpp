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

/// What fails unexpectedly, for want of memory say, must not end the service.
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
    Clock::time_point next = Clock::time_point::max();
    for (std::int64_t last = 0; !isStopping();) {
        const auto waiting = m_store.nextUnembedded(last);
        if (!waiting) {
            lengthen(m_serverDelay, waiting.error().message);
            return m_serverDelay.until;
        }
        // Those between are no longer in the queue.
        m_delays.erase(m_delays.upper_bound(last), *waiting ? m_delays.lower_bound(**waiting) : m_delays.end());
        if (!*waiting) {
            return next;
        }
        last = **waiting;
        Delay& delay = m_delays[last];
        switch (delay.until <= Clock::now() ? embedOrPostpone(last, delay) : Outcome::NotTaken) {
        case Outcome::Done:
            m_delays.erase(last);
            break;
        case Outcome::NotTaken:
            next = std::min(next, delay.until);
            break;
        case Outcome::NoServer:
            return m_serverDelay.until;
        }
    }
    return next;
}

/// One that fails again and again must not keep those behind it waiting.
EmbeddingQueue::Outcome EmbeddingQueue::embedOrPostpone(std::int64_t id, Delay& delay) {
    try {
        return embed(id, delay);
    } catch (const std::exception&) {
        lengthen(delay, "it failed unexpectedly");
        return Outcome::NotTaken;
    }
}

EmbeddingQueue::Outcome EmbeddingQueue::embed(std::int64_t id, Delay& delay) {
    const auto candidate = m_store.unembedded(id);
    if (!candidate) {
        lengthen(delay, candidate.error().message);
        return Outcome::NotTaken;
    }
    if (!*candidate) {
        return Outcome::Done;
    }
    const auto answer = m_client.embed(embeddingText(**candidate));
    if (!answer && isStopping()) {
        return Outcome::NoServer;
    }
    if (!answer && !answer.error().concernsText) {
        lengthen(m_serverDelay, answer.error().message);
        return Outcome::NoServer;
    }
    m_serverDelay = {};
    if (!answer) {
        lengthen(delay, answer.error().message);
        return Outcome::NotTaken;
    }
    const auto vector = unitVector(*answer);
    if (!vector) {
        lengthen(delay, "the model server's vector has no direction");
        return Outcome::NotTaken;
    }
    if (const auto stored = m_store.putVector(id, *vector); !stored) {
        lengthen(delay, stored.error().message);
        return Outcome::NotTaken;
    }
    return Outcome::Done;
}

void EmbeddingQueue::lengthen(Delay& delay, std::string_view reason) const noexcept {
    delay.pause = std::clamp(delay.pause * 2, m_pauses.first, m_pauses.longest);
    delay.until = Clock::now() + delay.pause;
    try {
        m_log("embedding: " + std::string(reason) + "; trying again in " + std::to_string(delay.pause.count()) + " ms");
    } catch (const std::exception&) {
        // What there is no memory for is not said.
    }
}

} // namespace dorvantel::service
