// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/Faults.h"

#include <QString>

#include <functional>
#include <ostream>
#include <vector>

namespace dorvantel::test {

/// What a client makes of a server's answer, whatever it asked for.
struct Reading {
    enum class Kind {
        Healthy,   ///< the answer
        Transport, ///< no answer; `text` says why
        Status,    ///< another status than the right one, without a body
        NotJson,   ///< a body that is no JSON: `body`, wrong at byte `at`
    };
    Kind kind = Kind::Healthy;
    QString text{};
    int status = 0;
    QByteArray body{};
    qsizetype at = 0;
};

inline Reading healthy() {
    return {};
}
inline Reading noAnswer(const QString& text) {
    return {.kind = Reading::Kind::Transport, .text = text};
}
inline Reading otherStatus(int status) {
    return {.kind = Reading::Kind::Status, .status = status};
}
inline Reading notJson(const QByteArray& body, qsizetype at) {
    return {.kind = Reading::Kind::NotJson, .body = body, .at = at};
}

/// One way in which a server misbehaves, and what clients make of it.
struct Fault {
    const char* name;
    /// The answer instead of `healthy`; `elsewhere` is the address of another server. Empty: nobody listens.
    std::function<ScriptedReply(const ScriptedReply& healthy, const QByteArray& elsewhere)> reply;
    std::function<Reading(const ScriptedReply& healthy)> get;      ///< of an answer to a GET
    std::function<Reading(const ScriptedReply& healthy)> post;     ///< of an answer to a POST
    std::function<Reading(const ScriptedReply& healthy)> deletion; ///< of an answer to a DELETE, which has no
                                                                   ///< body; empty: makes no sense there
    bool isSilent = false; ///< the client waits until its time-out, or until the server hangs up
};

inline void PrintTo(const Fault& fault, std::ostream* out) {
    *out << fault.name;
}

const std::vector<Fault>& faults();

/// What a client makes of a silent fault when the server hangs up.
Reading hungUp();

} // namespace dorvantel::test
