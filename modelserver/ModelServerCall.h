// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HttpSession.h"
#include "platform/WhenFinished.h"

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>
#include <QPromise>
#include <QtConcurrentRun>

#include <functional>
#include <utility>

namespace dorvantel {

/// One request to the model server, from sending it to the result in its future. Belongs to the service that sends it
/// and deletes itself at the end; lives on the UI thread. A holder that cancels the future ends it, which aborts the
/// request. When it is destroyed before its end, the future ends as cancelled.
template <typename Result>
class ModelServerCall final : public QObject {
public:
    /// Makes the result of what came back. Runs on a pool thread for large bodies, so it must hold what it needs.
    using Read = std::function<Result(const HttpOutcome&)>;

    static QFuture<Result> send(HttpSession& session, const HttpRequest& request, Read read, QObject* owner) {
        auto* call = new ModelServerCall(std::move(read), owner);
        QFuture<Result> future = call->m_promise.future();
        session.send(request, call, [call](HttpOutcome outcome) { call->receive(std::move(outcome)); });
        return future;
    }

private:
    ModelServerCall(Read read, QObject* owner)
        : QObject(owner)
        , m_read(std::move(read)) {
        m_promise.start();
        connect(&m_watcher, &QFutureWatcherBase::canceled, this, &QObject::deleteLater);
        m_watcher.setFuture(m_promise.future());
    }

    void receive(HttpOutcome outcome) {
        constexpr qsizetype largestBodyReadHere = qsizetype(64) * 1024;
        if (outcome && outcome->body.size() > largestBodyReadHere) {
            whenFinished(QtConcurrent::run(m_read, std::move(outcome)), this,
                         [this](const Result& result) { finish(result); });
        } else {
            finish(m_read(outcome));
        }
    }

    void finish(Result result) {
        deleteLater();
        // Whoever waits for the result may destroy the service and this call with it.
        QPromise<Result> promise = std::move(m_promise);
        promise.addResult(std::move(result));
        promise.finish();
    }

    Read m_read;
    QPromise<Result> m_promise;
    QFutureWatcher<Result> m_watcher;
};

} // namespace dorvantel
