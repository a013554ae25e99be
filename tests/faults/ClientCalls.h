// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "modelserver/AppSettings.h"
#include "modelserver/OllamaService.h"
#include "records/APIRequest.h"
#include "tests/faults/FaultTable.h"

#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>

#include <vector>

namespace dorvantel::test {

/// The program's session with less patience, so that what is silent is given up soon and what is endless early.
class ImpatientSession final : public HttpSession {
public:
    std::chrono::milliseconds timeout = std::chrono::minutes(1);
    qsizetype mostBytes = qsizetype{4} * 1024 * 1024;

    void send(const HttpRequest& request, QObject* context, std::function<void(HttpOutcome)> completion) override;

    /// How many requests were answered, one way or another.
    qsizetype ended() const { return m_ended; }

private:
    NetworkHttpSession m_session;
    qsizetype m_ended = 0;
};

/// Both clients over one server, which answers everything with `reply`.
struct Clients {
    ScriptedReply reply;
    ScriptedServer server{[this](const ScriptedRequest&) { return reply; }};
    ImpatientSession session;
    QTemporaryDir folder;
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(QStringLiteral("a.conf")), QSettings::IniFormat)};
    APIRequest records{session, server.url() + QStringLiteral("/curriculums")};
    OllamaService models{session, settings};

    Clients();
};

/// One thing that the program asks of a service.
struct ClientCall {
    const char* name;
    ScriptedReply healthy;
    /// Makes the call and waits for its end: the lines that it wrote, and what its caller got behind "= ".
    std::function<QStringList(Clients&)> run;
    /// The same as it should be.
    std::function<QStringList(const Reading&, const Clients&)> expected;
    std::function<Reading(const Fault&, const ScriptedReply&)> reading;
};

void PrintTo(const ClientCall& call, std::ostream* out);

const std::vector<ClientCall>& clientCalls();

} // namespace dorvantel::test
