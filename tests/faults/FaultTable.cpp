// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/faults/FaultTable.h"

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

using Read = std::function<Reading(const ScriptedReply&)>;

Read always(const Reading& reading) {
    return [reading](const ScriptedReply&) { return reading; };
}

const Read isHealthy = always(healthy());
const Read closed = always(noAnswer(u"Connection closed"_s));
const Read timedOut = always(noAnswer(u"Se ha agotado el tiempo de espera."_s));
const Read tooLong = always(noAnswer(u"La respuesta es demasiado larga."_s));
const Read notUnpacked = always(noAnswer(u"Decompression failed: "_s));

QByteArray firstHalf(const QByteArray& body) {
    return body.left(body.size() / 2);
}

Reading ofFirstHalf(const ScriptedReply& reply) {
    return notJson(firstHalf(reply.body), firstHalf(reply.body).size());
}

QByteArray withBadUtf8(QByteArray body) {
    return body.replace("Ana", "An\xE9");
}

ScriptedReply withBody(ScriptedReply reply, const QByteArray& body) {
    reply.body = body;
    return reply;
}

QByteArray oneTooMany(const ScriptedReply& reply) {
    return QByteArray::number(reply.body.size() + 1);
}

/// A fault of the connection, the same for every request.
Fault ofConnection(const char* name, const std::function<ScriptedReply(const ScriptedReply&)>& reply,
                   const Read& read) {
    return {name, [reply](const ScriptedReply& healthy, const QByteArray&) { return reply(healthy); }, read, read,
            read};
}

/// A fault of a body, which the answer to a DELETE does not have.
Fault ofBody(const char* name, const std::function<ScriptedReply(const ScriptedReply&)>& reply, const Read& read) {
    Fault fault = ofConnection(name, reply, read);
    fault.deletion = isHealthy;
    return fault;
}

Fault silent(Fault fault) {
    fault.isSilent = true;
    return fault;
}

/// What comes after an answer that has no body is the next answer's beginning.
Fault notOfDeletions(Fault fault) {
    fault.deletion = {};
    return fault;
}

Fault redirect(const char* name, int status, bool isElsewhere) {
    const QString text = isElsewhere ? u"El servidor remite a otra dirección."_s : u"Too many redirects"_s;
    return {name,
            [status, isElsewhere](const ScriptedReply&, const QByteArray& elsewhere) {
                return redirected(status, isElsewhere ? elsewhere + "/curriculums" : "?again");
            },
            always(noAnswer(text)), always(otherStatus(status)), always(otherStatus(status))};
}

Fault refused() {
    const Read read = always(noAnswer(u"Connection refused"_s));
    return {"Refused", {}, read, read, read};
}

} // namespace

Reading hungUp() {
    return noAnswer(u"Connection closed"_s);
}

const std::vector<Fault>& faults() {
    using Reply = const ScriptedReply&;
    static const std::vector<Fault> all{
        refused(),
        silent(ofConnection(
            "Stalled", [](Reply) { return stalled(); }, timedOut)),
        ofConnection(
            "ClosedAtOnce", [](Reply) { return closedAtOnce(); }, closed),
        ofConnection("ByteByByte", byteByByte, isHealthy),
        ofConnection(
            "NotHTTP", [](Reply) { return sentAndClosed("SSH-2.0-OpenSSH_9.2\r\n"); }, closed),
        ofBody(
            "LengthTooSmall",
            [](Reply reply) { return withLength(reply, QByteArray::number(firstHalf(reply.body).size())); },
            ofFirstHalf),
        notOfDeletions(ofConnection(
            "LengthTooLargeThenClosed", [](Reply reply) { return withLengthAndClosed(reply, oneTooMany(reply)); },
            closed)),
        silent(ofBody(
            "LengthTooLarge", [](Reply reply) { return withLength(reply, oneTooMany(reply)); }, timedOut)),
        silent(ofBody(
            "LengthThatIsNoNumber", [](Reply reply) { return withLength(reply, "many"); }, timedOut)),
        silent(ofBody(
            "NegativeLength", [](Reply reply) { return withLength(reply, "-5"); }, timedOut)),
        ofConnection(
            "LengthOfATerabyte", [](Reply reply) { return withLength(reply, "1000000000000"); }, tooLong),
        ofBody("GzipClaimed", claimedAsGzip, notUnpacked),
        ofBody("HalfOfCompressed", halfOfCompressed, ofFirstHalf),
        ofBody("CompressedBomb", compressedBomb, notUnpacked),
        redirect("RedirectLoop302", 302, false),
        redirect("RedirectLoop307", 307, false),
        redirect("RedirectElsewhere302", 302, true),
        redirect("RedirectElsewhere307", 307, true),
        silent(ofBody(
            "TenThousandHeaders", [](Reply reply) { return withHeaders(reply, 10'000); }, timedOut)),
        silent(ofBody(
            "VeryLongHeader", [](Reply reply) { return withLongHeader(reply, 200'000); }, timedOut)),
        ofBody(
            "InvalidUTF8", [](Reply reply) { return withBody(reply, withBadUtf8(reply.body)); },
            [](Reply reply) { return notJson(withBadUtf8(reply.body), reply.body.indexOf("Ana") + 2); }),
        ofConnection("GigabyteAnnounced", gigabyteAnnounced, tooLong),
        notOfDeletions(ofConnection("GigabyteInChunks", gigabyteInChunks, tooLong)),
    };
    return all;
}

} // namespace dorvantel::test
