// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HttpSession.h"

#include <QList>
#include <QPointer>

#include <deque>

namespace dorvantel::test {

/// An HTTP session without a network: it keeps every request and answers only when the test says so, oldest first.
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
        if (waiting.context != nullptr) {
            waiting.completion(std::move(outcome));
        }
    }
    void answer(int status, const QByteArray& body) { answer(HttpResponse{status, body}); }

private:
    struct Waiting {
        QPointer<QObject> context;
        std::function<void(HttpOutcome)> completion;
    };
    QList<HttpRequest> m_requests;
    std::deque<Waiting> m_waiting;
};

} // namespace dorvantel::test
