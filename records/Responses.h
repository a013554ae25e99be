// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/RecordsService.h"
#include "platform/Decoding.h"
#include "platform/HttpSession.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <expected>

namespace dorvantel {

/// What one operation demands of a response and how it words the failures.
struct ResponseRules {
    int expectedStatus;
    QString networkError; ///< the transport's description follows
    QString invalidType;
    QString wrongStatus;  ///< the status follows
    QString responseBody; ///< the body of a wrong status follows
    QString noBody;
    bool logsProgress = false; ///< also the status and the length of what came
};

/// The response's body when it keeps the rules; otherwise logs what is wrong with it. An empty body is none.
std::expected<QByteArray, APIError> checkedBody(HttpOutcome outcome, const ResponseRules& rules);

/// The log lines about a list answer that did not decode, in order. Pure; any thread.
QStringList decodingFailureLines(const DecodeError& error, const QByteArray& body);

} // namespace dorvantel
