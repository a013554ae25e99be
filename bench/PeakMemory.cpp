// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/PeakMemory.h"

#include <fstream>
#include <stdexcept>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

namespace dorvantel::bench {

namespace {

/// Makes the kernel forget the highest memory use so far.
void forgetPeak() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

qint64 peak() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) {
            return std::stoll(line.substr(6)) * 1024;
        }
    }
    return 0;
}

} // namespace

qint64 peakMemory(const std::function<void()>& prepare, const std::function<void()>& work) {
    int ends[2] = {};
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe to the measured process");
    }
    const pid_t child = fork();
    if (child == 0) {
        prepare();
        forgetPeak();
        work();
        const qint64 bytes = peak();
        const bool written = write(ends[1], &bytes, sizeof bytes) == sizeof bytes;
        _exit(written ? 0 : 1);
    }
    close(ends[1]);
    qint64 bytes = 0;
    const bool isRead = read(ends[0], &bytes, sizeof bytes) == sizeof bytes;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    if (!isRead || bytes == 0) {
        throw std::runtime_error("no answer from the measured process");
    }
    return bytes;
}

} // namespace dorvantel::bench
