// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaObject>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <utility>

namespace dorvantel {

/// Queues `work` on the thread of `context` (the UI thread for every view and observable object) and returns at once.
/// Work queued first runs first; it is dropped when `context` is gone by then. Any thread.
template <typename Work>
void runOnMainQueue(QObject* context, Work&& work) {
    QMetaObject::invokeMethod(context, std::forward<Work>(work), Qt::QueuedConnection);
}

/// Runs `work` on the thread of `context` after `delay`, unless `context` is gone by then. Called on that thread.
template <typename Work>
void runOnMainQueueAfter(std::chrono::milliseconds delay, QObject* context, Work&& work) {
    QTimer::singleShot(delay, context, std::forward<Work>(work));
}

} // namespace dorvantel
