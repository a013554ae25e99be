// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/support/ScriptedServer.h"

#include <QTcpSocket>

#include <memory>

namespace dorvantel::test {

ScriptedServer::ScriptedServer(Handler handler)
    : m_handler(std::move(handler)) {
    m_server.listen(QHostAddress::LocalHost, 0);
    m_port = m_server.serverPort();
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { take(); });
}

ScriptedServer::ScriptedServer(ScriptedReply reply)
    : ScriptedServer([reply = std::move(reply)](const ScriptedRequest&) { return reply; }) {}

QString ScriptedServer::url() const {
    return QStringLiteral("http://127.0.0.1:%1").arg(m_port);
}

void ScriptedServer::refuse() {
    m_server.close();
    hangUp();
}

void ScriptedServer::accept() {
    m_server.listen(QHostAddress::LocalHost, m_port);
}

void ScriptedServer::hangUp() {
    for (QTcpSocket* socket : m_server.findChildren<QTcpSocket*>()) {
        socket->abort();
    }
}

void ScriptedServer::take() {
    while (QTcpSocket* socket = m_server.nextPendingConnection()) {
        ++m_open;
        auto buffer = std::make_shared<QByteArray>();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, buffer] { read(socket, *buffer); });
        QObject::connect(socket, &QTcpSocket::disconnected, &m_server, [this, socket] {
            --m_open;
            m_held.removeIf([socket](const Held& held) { return held.socket == socket; });
            socket->deleteLater();
        });
    }
}

void ScriptedServer::read(QTcpSocket* socket, QByteArray& buffer) {
    buffer += socket->readAll();
    for (;;) {
        const qsizetype headEnd = buffer.indexOf("\r\n\r\n");
        if (headEnd < 0) {
            return;
        }
        ScriptedRequest request;
        const QList<QByteArray> lines = buffer.left(headEnd).split('\n');
        const QList<QByteArray> first = lines[0].trimmed().split(' ');
        request.method = first.value(0);
        request.target = first.value(1);
        for (const QByteArray& line : lines.mid(1)) {
            const qsizetype colon = line.indexOf(':');
            request.headers.insert(line.left(colon).trimmed().toLower(), line.mid(colon + 1).trimmed());
        }
        const qsizetype length = request.headers.value("content-length", "0").toLongLong();
        if (buffer.size() < headEnd + 4 + length) {
            return;
        }
        request.body = buffer.mid(headEnd + 4, length);
        buffer.remove(0, headEnd + 4 + length);
        m_requests.append(request);
        const ScriptedReply reply = m_handler(request);
        if (reply.held) {
            m_held.append({socket, request.target, reply});
        } else {
            answer(socket, reply);
        }
    }
}

bool ScriptedServer::release(const QByteArray& targetEnd) {
    for (qsizetype i = 0; i < m_held.size(); ++i) {
        if (m_held[i].target.endsWith(targetEnd)) {
            const Held held = m_held.takeAt(i);
            answer(held.socket, held.reply);
            return true;
        }
    }
    return false;
}

void ScriptedServer::answer(QTcpSocket* socket, const ScriptedReply& reply) {
    const QByteArray head =
        "HTTP/1.1 " + QByteArray::number(reply.status) + " Status\r\nContent-Type: " + reply.contentType +
        "\r\nContent-Length: " + QByteArray::number(reply.body.size()) + "\r\n" + reply.headers + "\r\n";
    switch (reply.way) {
    case ScriptedReply::Way::Whole:
        socket->write(reply.status == 204 ? QByteArray("HTTP/1.1 204 No Content\r\n\r\n") : head + reply.body);
        break;
    case ScriptedReply::Way::Stall:
        break;
    case ScriptedReply::Way::Cut:
        socket->disconnectFromHost();
        break;
    case ScriptedReply::Way::CutInBody:
        socket->write(head + reply.body.left(reply.body.size() / 2));
        socket->disconnectFromHost();
        break;
    case ScriptedReply::Way::NotHttp:
        socket->write(reply.body);
        socket->disconnectFromHost();
        break;
    case ScriptedReply::Way::Played:
        reply.play(*socket);
        break;
    }
}

} // namespace dorvantel::test
