// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace dorvantel::test {

/// What a process takes of the machine at a moment, read from outside.
struct ProcessUsage {
    qint64 memory = 0; ///< bytes that are its own, in memory or swapped out; not the pages of programs and libraries
    int descriptors = 0;
    int threads = 0;
};

/// Of the process with that id; "self" is ours. Pages of files are left out, because how many of them are in memory
/// says more of the machine than of the process.
ProcessUsage usageOf(qint64 process);
ProcessUsage ownUsage();

/// Has the allocator give back to the system, from now on, whatever lies free at the end of one of its heaps. Left to
/// itself it learns to keep as much as the largest blocks that it has seen, and a thread's heap cannot be told later.
void keepNoFreeMemory();

/// Bytes that this process has from the allocator and has not given back. What was given back goes to the system first,
/// so that `ownUsage` afterwards does not count it.
qint64 heapInUse();

/// How many processes this one has started that still run or were not waited for.
int childProcesses();

/// Counts the living QObjects of every thread, from its creation on; only differences mean something. One at a time.
class ObjectCount {
public:
    ObjectCount();
    ~ObjectCount();
    ObjectCount(const ObjectCount&) = delete;
    ObjectCount& operator=(const ObjectCount&) = delete;

    static qint64 living();
};

} // namespace dorvantel::test
