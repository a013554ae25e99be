// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/http/OpenFiles.h"

#include <algorithm>

#include <sys/resource.h>

namespace dorvantel::service {

std::size_t raiseOpenFileLimit() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return 1024; // what the system gives whoever does not ask
    }
    rlimit raised = limit;
    raised.rlim_cur = limit.rlim_max;
    return setrlimit(RLIMIT_NOFILE, &raised) == 0 ? raised.rlim_cur : limit.rlim_cur;
}

std::size_t connectionsWithin(std::size_t openFiles) {
    constexpr std::size_t ofTheServiceItself = 64; // far more than it has: the store, the model server, standard output
    constexpr std::size_t ofAConnection = 3;       // its socket, and the store with its log
    return (std::max(openFiles, ofTheServiceItself + ofAConnection) - ofTheServiceItself) / ofAConnection;
}

} // namespace dorvantel::service
