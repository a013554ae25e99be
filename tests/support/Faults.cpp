// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/support/Faults.h"

#include <QTcpSocket>
#include <QTimer>

#include <memory>

namespace dorvantel::test {

namespace {

constexpr qint64 gigabyte = qint64{1024} * 1024 * 1024;

QByteArray head(const ScriptedReply& reply, const QByteArray& furtherLines) {
    return "HTTP/1.1 " + QByteArray::number(reply.status) + " Status\r\nContent-Type: " + reply.contentType + "\r\n" +
           furtherLines + "\r\n";
}

QByteArray lengthLine(const QByteArray& length) {
    return "Content-Length: " + length + "\r\n";
}

QByteArray lengthLine(qint64 length) {
    return lengthLine(QByteArray::number(length));
}

ScriptedReply played(std::function<void(QTcpSocket&)> play) {
    return {.way = ScriptedReply::Way::Played, .play = std::move(play)};
}

ScriptedReply sent(const QByteArray& bytes) {
    return played([bytes](QTcpSocket& socket) { socket.write(bytes); });
}

/// `bytes` as zlib packs them, which HTTP calls deflate.
QByteArray packed(const QByteArray& bytes, int howMuch = -1) {
    constexpr int lengthOfQt = 4; // before the stream
    return qCompress(bytes, howMuch).mid(lengthOfQt);
}

ScriptedReply sentAsDeflate(const ScriptedReply& reply, const QByteArray& stream) {
    return sent(head(reply, "Content-Encoding: deflate\r\n" + lengthLine(stream.size())) + stream);
}

/// `first`, and then `piece` again and again, as fast as the client takes it, until that is a gigabyte.
ScriptedReply poured(const QByteArray& first, const QByteArray& piece) {
    return played([first, piece](QTcpSocket& socket) {
        socket.write(first);
        auto written = std::make_shared<qint64>(0);
        const auto pour = [&socket, piece, written] {
            if (socket.bytesToWrite() < piece.size() && *written < gigabyte) {
                *written += socket.write(piece);
            }
        };
        QObject::connect(&socket, &QIODevice::bytesWritten, &socket, pour);
        pour();
    });
}

/// A piece large enough to be quick and small enough not to weigh in a measurement of memory.
QByteArray filling() {
    return QByteArray(0x40000, ' ');
}

} // namespace

QByteArray wholeAnswer(const ScriptedReply& healthy) {
    return head(healthy, lengthLine(healthy.body.size())) + healthy.body;
}

ScriptedReply stalled() {
    return {.way = ScriptedReply::Way::Stall};
}

ScriptedReply closedAtOnce() {
    return {.way = ScriptedReply::Way::Cut};
}

ScriptedReply sentAndClosed(const QByteArray& bytes) {
    return played([bytes](QTcpSocket& socket) {
        socket.write(bytes);
        socket.disconnectFromHost();
    });
}

ScriptedReply byteByByte(const ScriptedReply& healthy) {
    return played([bytes = wholeAnswer(healthy)](QTcpSocket& socket) {
        socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
        auto* drip = new QTimer(&socket);
        auto next = std::make_shared<qsizetype>(0);
        QObject::connect(drip, &QTimer::timeout, &socket, [&socket, drip, bytes, next] {
            socket.write(bytes.constData() + *next, 1);
            socket.flush();
            if (++*next == bytes.size()) {
                drip->stop();
            }
        });
        drip->start(0);
    });
}

ScriptedReply withLength(const ScriptedReply& healthy, const QByteArray& length) {
    return sent(head(healthy, lengthLine(length)) + healthy.body);
}

ScriptedReply withLengthAndClosed(const ScriptedReply& healthy, const QByteArray& length) {
    return sentAndClosed(head(healthy, lengthLine(length)) + healthy.body);
}

ScriptedReply inChunks(const ScriptedReply& healthy) {
    QByteArray chunks;
    const qsizetype half = healthy.body.size() / 2;
    for (const QByteArray& part : {healthy.body.left(half), healthy.body.mid(half)}) {
        if (!part.isEmpty()) {
            chunks += QByteArray::number(part.size(), 16) + "\r\n" + part + "\r\n";
        }
    }
    return sent(head(healthy, "Transfer-Encoding: chunked\r\n") + chunks + "0\r\n\r\n");
}

ScriptedReply compressed(const ScriptedReply& healthy) {
    return sentAsDeflate(healthy, packed(healthy.body));
}

ScriptedReply claimedAsGzip(const ScriptedReply& healthy) {
    return sent(head(healthy, "Content-Encoding: gzip\r\n" + lengthLine(healthy.body.size())) + healthy.body);
}

ScriptedReply halfOfCompressed(const ScriptedReply& healthy) {
    constexpr int beforeBody = 7; // the heads of a stream and of a block that is stored as it is
    constexpr int notAtAll = 0;
    return sentAsDeflate(healthy, packed(healthy.body, notAtAll).left(beforeBody + healthy.body.size() / 2));
}

ScriptedReply compressedBomb(const ScriptedReply& healthy) {
    static const QByteArray bomb = packed(QByteArray(30'000'000, ' '));
    return sentAsDeflate(healthy, bomb);
}

ScriptedReply redirected(int status, const QByteArray& location) {
    return {.status = status, .body = {}, .headers = "Location: " + location + "\r\n"};
}

ScriptedReply withHeaders(const ScriptedReply& healthy, int count) {
    QByteArray lines;
    for (int i = 0; i < count; ++i) {
        lines += "X-Header-" + QByteArray::number(i) + ": value\r\n";
    }
    return sent(head(healthy, lines + lengthLine(healthy.body.size())) + healthy.body);
}

ScriptedReply withLongHeader(const ScriptedReply& healthy, qsizetype bytes) {
    return sent(head(healthy, "X-Long: " + QByteArray(bytes, 'x') + "\r\n" + lengthLine(healthy.body.size())) +
                healthy.body);
}

ScriptedReply gigabyteInChunks(const ScriptedReply& healthy) {
    return poured(head(healthy, "Transfer-Encoding: chunked\r\n"), "40000\r\n" + filling() + "\r\n");
}

ScriptedReply gigabyteAnnounced(const ScriptedReply& healthy) {
    return poured(head(healthy, lengthLine(gigabyte)), filling());
}

} // namespace dorvantel::test
