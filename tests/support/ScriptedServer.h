// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QTcpServer>
#include <QUrl>

#include <functional>

class QTcpSocket;

namespace dorvantel::test {

struct ScriptedRequest {
    QByteArray method;
    QByteArray target;                     ///< path and query as sent, still percent-encoded
    QHash<QByteArray, QByteArray> headers; ///< names in lower case
    QByteArray body;
};

struct ScriptedReply {
    int status = 200;
    QByteArray body{};
    QByteArray contentType = "application/json";
    enum class Way {
        Whole,     ///< the complete answer
        Stall,     ///< nothing, and the connection stays open
        Cut,       ///< the connection closes without an answer
        CutInBody, ///< headers announce the body, half of it comes, the connection closes
        NotHttp,   ///< the bytes of `body` alone, then the connection closes
        Played,    ///< what `play` writes
    };
    Way way = Way::Whole;
    bool held = false;    ///< answered only when `release` is called
    QByteArray headers{}; ///< more of them, each line ending in CR LF
    std::function<void(QTcpSocket&)> play{};
};

/// An HTTP server on a free loopback port that answers what a test tells it to. It runs in the test's own event loop,
/// so that a test can look at what arrived without waiting for another thread.
class ScriptedServer {
public:
    using Handler = std::function<ScriptedReply(const ScriptedRequest&)>;

    /// Every request is answered by `handler`.
    explicit ScriptedServer(Handler handler);
    /// Every request is answered with `reply`.
    explicit ScriptedServer(ScriptedReply reply);

    QString url() const; ///< "http://127.0.0.1:PORT", no trailing slash
    const QList<ScriptedRequest>& requests() const { return m_requests; }

    /// Answers the oldest held request whose target ends with `targetEnd`; false when there is none.
    bool release(const QByteArray& targetEnd = {});
    qsizetype heldCount() const { return m_held.size(); }
    qsizetype openConnections() const { return m_open; }

    /// From now on nobody gets a connection.
    void refuse();
    /// Takes connections again, at the same address.
    void accept();
    /// Cuts the connections that are open, whatever they wait for.
    void hangUp();

private:
    struct Held {
        QTcpSocket* socket;
        QByteArray target;
        ScriptedReply reply;
    };
    void take();
    void read(QTcpSocket* socket, QByteArray& buffer);
    static void answer(QTcpSocket* socket, const ScriptedReply& reply);

    Handler m_handler;
    QTcpServer m_server;
    quint16 m_port = 0;
    QList<ScriptedRequest> m_requests;
    QList<Held> m_held;
    qsizetype m_open = 0;
};

} // namespace dorvantel::test
