// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QTest>

#include <functional>

namespace dorvantel::test {

/// Runs the event loop until `condition` holds; false when it does not within ten seconds. Nothing sleeps: the loop
/// wakes for every event, and the limit only keeps a broken test from hanging.
inline bool waitUntil(const std::function<bool()>& condition, int limitMs = 10'000) {
    return QTest::qWaitFor(condition, limitMs);
}

} // namespace dorvantel::test
