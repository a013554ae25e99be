// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HttpSession.h"

#include <QList>
#include <QPointer>

#include <deque>

namespace dorvantel::test {

/// An HTTP session without a network: it keeps every request and answers only when the test says so.
class FakeHttpSession final : public HttpSession {
public:
    const QList<HttpRequest>& requests() const { return m_requests; }

    void send(const HttpRequest& request, QObject* context, std::function<void(HttpOutcome)> completion) override {
        m_requests.append(request);
        m_waiting.push_back({context, std::move(completion)});
    }

    /// Answers the oldest waiting request; whoever is gone by then does not hear of it.
    void answer(HttpOutcome outcome) {
        const Waiting waiting = std::move(m_waiting.front());
        m_waiting.pop_front();
        waiting.complete(std::move(outcome));
    }
    void answer(int status, const QByteArray& body) { answer(HttpResponse{status, body}); }

    /// Answers the latest request, so that it overtakes the others.
    void answerLatest(int status, const QByteArray& body) {
        const Waiting waiting = std::move(m_waiting.back());
        m_waiting.pop_back();
        waiting.complete(HttpResponse{status, body});
    }

private:
    struct Waiting {
        QPointer<QObject> context;
        std::function<void(HttpOutcome)> completion;

        void complete(HttpOutcome outcome) const {
            if (context != nullptr) {
                completion(std::move(outcome));
            }
        }
    };
    QList<HttpRequest> m_requests;
    std::deque<Waiting> m_waiting;
};

} // namespace dorvantel::test
