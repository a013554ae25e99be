// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTest>
#include <QTimer>

#include <functional>

namespace dorvantel::test {

/// Runs the event loop until `condition` holds; false when it does not within ten seconds. Nothing sleeps: the loop
/// wakes for every event, and every few milliseconds for what another thread or process changed. The limit only keeps a
/// broken test from hanging.
inline bool waitUntil(const std::function<bool()>& condition, int limitMs = 10'000) {
    const QDeadlineTimer limit(limitMs);
    QTimer tick;
    tick.start(5);
    while (!condition()) {
        if (limit.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

} // namespace dorvantel::test
