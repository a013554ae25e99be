// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace dorvantel {

namespace {

constexpr std::array handled{SIGTERM, SIGINT, SIGHUP};
std::array<struct sigaction, handled.size()> previous;
std::array<int, 2> pipeEnds{-1, -1};

/// All that a signal handler may do: the event loop wakes for the byte and does the rest.
void wakeEventLoop(int) {
    const int error = errno;
    [[maybe_unused]] const ssize_t written = write(pipeEnds[1], "", 1);
    errno = error;
}

} // namespace

TerminationSignals::TerminationSignals() {
    if (pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    const auto* notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (read(pipeEnds[0], &byte, 1) > 0) {
        }
        Q_EMIT received();
    });
    struct sigaction action{};
    action.sa_handler = wakeEventLoop;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    for (std::size_t i = 0; i < handled.size(); ++i) {
        sigaction(handled[i], nullptr, &previous[i]);
        if (previous[i].sa_handler != SIG_IGN) { // whoever started the program (nohup, say) wants it ignored
            sigaction(handled[i], &action, nullptr);
        }
    }
}

TerminationSignals::~TerminationSignals() {
    if (pipeEnds[0] < 0) {
        return;
    }
    for (std::size_t i = 0; i < handled.size(); ++i) {
        sigaction(handled[i], &previous[i], nullptr);
    }
    for (int& end : pipeEnds) {
        close(end);
        end = -1;
    }
}

} // namespace dorvantel
