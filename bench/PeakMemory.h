// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <functional>

namespace dorvantel::bench {

/// Runs `work` in a process of its own and gives back how many bytes of memory that process held at most meanwhile.
/// `prepare` runs there first and builds what the work needs; what it held at most does not count, what it leaves does.
/// To be called before the caller starts threads. Throws when there is no answer.
qint64 peakMemory(const std::function<void()>& prepare, const std::function<void()>& work);

} // namespace dorvantel::bench
