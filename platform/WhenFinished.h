// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>

#include <exception>
#include <utility>

namespace dorvantel {

/// Calls `handler` with the result of `future`, once, on the thread of `context` and from its event loop. When the
/// future carries an exception instead of a result, `failed` is called with it. Neither is called when the future ends
/// cancelled or when `context` is gone by then. Called on the thread of `context`.
///
/// `QFuture::then` with a context is no replacement: in Qt 6.4 it asserts when the context goes before the future ends,
/// and it runs inside the caller when the future is already finished.
template <typename Result, typename Handler, typename Failed>
void whenFinished(const QFuture<Result>& future, QObject* context, Handler&& handler, Failed&& failed) {
    auto* watcher = new QFutureWatcher<Result>(context);
    QObject::connect(
        watcher, &QFutureWatcherBase::finished, context,
        [watcher, handler = std::forward<Handler>(handler), failed = std::forward<Failed>(failed)]() mutable {
            watcher->deleteLater();
            QFuture<Result> finished = watcher->future();
            try {
                finished.waitForFinished(); // throws what the future carries
            } catch (const std::exception& error) {
                failed(error);
                return;
            }
            if (!finished.isCanceled()) {
                handler(finished.result());
            }
        });
    watcher->setFuture(future);
}

/// The same for futures that carry no exception.
template <typename Result, typename Handler>
void whenFinished(const QFuture<Result>& future, QObject* context, Handler&& handler) {
    whenFinished(future, context, std::forward<Handler>(handler), [](const std::exception&) {});
}

} // namespace dorvantel
