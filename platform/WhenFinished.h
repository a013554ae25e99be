// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>

#include <utility>

namespace dorvantel {

/// Calls `handler` with the result of `future`, once, on the thread of `context` and from its event loop. It is never
/// called when the future ends cancelled or when `context` is gone by then. Called on the thread of `context`.
///
/// `QFuture::then` with a context is no replacement: in Qt 6.4 it asserts when the context goes before the future ends,
/// and it runs inside the caller when the future is already finished.
template <typename Result, typename Handler>
void whenFinished(const QFuture<Result>& future, QObject* context, Handler&& handler) {
    auto* watcher = new QFutureWatcher<Result>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context,
                     [watcher, handler = std::forward<Handler>(handler)]() mutable {
                         watcher->deleteLater();
                         const QFuture<Result> finished = watcher->future();
                         if (!finished.isCanceled()) {
                             handler(finished.result());
                         }
                     });
    watcher->setFuture(future);
}

} // namespace dorvantel
