// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ScriptedServer.h"

#include <QByteArray>

namespace dorvantel::test {

// What a server does that misbehaves instead of giving the answer `healthy`. A connection stays open unless it is said
// to close; then the test hangs up, or the client has enough.

/// The bytes of the answer as a healthy server sends them.
QByteArray wholeAnswer(const ScriptedReply& healthy);

ScriptedReply stalled();
ScriptedReply closedAtOnce();
/// The bytes as they are, then the connection closes.
ScriptedReply sentAndClosed(const QByteArray& bytes);
/// The whole answer, a byte at a time.
ScriptedReply byteByByte(const ScriptedReply& healthy);

/// The whole answer with another "Content-Length".
ScriptedReply withLength(const ScriptedReply& healthy, const QByteArray& length);
/// The same, then the connection closes.
ScriptedReply withLengthAndClosed(const ScriptedReply& healthy, const QByteArray& length);

/// The whole answer in two chunks, which is no fault.
ScriptedReply inChunks(const ScriptedReply& healthy);
/// The whole answer compressed, which is no fault.
ScriptedReply compressed(const ScriptedReply& healthy);
/// A plain body that is said to be gzip.
ScriptedReply claimedAsGzip(const ScriptedReply& healthy);
/// A compressed body that ends in the middle although its length is right: half of the plain one can be unpacked.
ScriptedReply halfOfCompressed(const ScriptedReply& healthy);
/// A body of thirty kilobytes that unpacks to thirty megabytes.
ScriptedReply compressedBomb(const ScriptedReply& healthy);

ScriptedReply redirected(int status, const QByteArray& location);

/// The whole answer after `count` more header lines.
ScriptedReply withHeaders(const ScriptedReply& healthy, int count);
/// The whole answer after one more header line of so many bytes.
ScriptedReply withLongHeader(const ScriptedReply& healthy, qsizetype bytes);
/// A body of a gigabyte of blanks, its length announced, or in chunks.
ScriptedReply gigabyteAnnounced(const ScriptedReply& healthy);
ScriptedReply gigabyteInChunks(const ScriptedReply& healthy);

} // namespace dorvantel::test
