// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT

// The system's Qt starts a program with a clone that shares the memory of this process until the other program runs.
// The thread sanitizer takes every clone for a fork and has the child stop looking, which in shared memory stops it
// here as well: it would see nothing of this thread any more and forbid new ones. So in builds with the thread
// sanitizer, and no others, Qt's clone comes by here and gives the child a memory of its own, as a fork does.

#include <cstdarg>

#include <dlfcn.h>
#include <sched.h>
#include <sys/types.h>

using Clone = int (*)(int (*)(void*), void*, int, void*, ...);

extern "C" int clone(int (*function)(void*), void* stack, int flags, void* argument, ...) noexcept {
    static const auto next = reinterpret_cast<Clone>(dlsym(RTLD_NEXT, "clone"));
    std::va_list more;
    va_start(more, argument);
    auto* parentId = va_arg(more, pid_t*);
    auto* storage = va_arg(more, void*);
    auto* childId = va_arg(more, pid_t*);
    va_end(more);
    return next(function, stack, flags & ~CLONE_VM, argument, parentId, storage, childId);
}
