// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/Script.h"

#include <QString>

#include <cstdint>
#include <expected>
#include <memory>

namespace dorvantel {

/// The stand-in model server, on threads of its own. Starts and stops within the program that holds it, so that tests
/// can have one on a free port; answers many requests at once. Created, started, stopped and destroyed on one thread.
class DemoModelServer {
public:
    explicit DemoModelServer(Script script = {});
    ~DemoModelServer(); ///< stops it
    DemoModelServer(const DemoModelServer&) = delete;
    DemoModelServer& operator=(const DemoModelServer&) = delete;

    /// Listens on `host` and gives the port, a free one for port 0. The error says why it cannot (the port is in use,
    /// the host is none of this machine's).
    std::expected<std::uint16_t, QString> start(const QString& host = QStringLiteral("127.0.0.1"),
                                                std::uint16_t port = 0);

    /// Ends stalled and delayed answers, closes the port and waits for its threads. Without effect when not started.
    void stop();

    QString url() const; ///< "http://127.0.0.1:PORT", empty before the start

private:
    class Running;
    std::unique_ptr<Script> m_script;
    std::unique_ptr<Running> m_running;
    QString m_url;
};

} // namespace dorvantel
