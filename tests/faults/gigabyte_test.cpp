// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT

// What an answer without end costs, with the limits that the program has.
#include "platform/Sanitizers.h"
#include "tests/faults/ClientCalls.h"
#include "tests/support/FakeHttpSession.h"
#include "tests/support/Print.h"

#include <QFile>

#include <gtest/gtest.h>

#include <limits>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mebibyte = qsizetype{1024} * 1024;
/// Sanitizers keep what was freed for a while: with them only the outcome tells whether there is a limit.
constexpr qsizetype sanitizerFactor = isSanitized ? 4 : 1;

/// The most memory that this process had at once since `forgetPeak`, in bytes.
qsizetype peak() {
    QFile status(u"/proc/self/status"_s);
    EXPECT_TRUE(status.open(QIODevice::ReadOnly));
    const QByteArray text = status.readAll();
    const qsizetype start = text.indexOf("VmHWM:") + 6;
    return text.mid(start, text.indexOf("kB", start) - start).trimmed().toLongLong() * 1024;
}

void forgetPeak() {
    QFile references(u"/proc/self/clear_refs"_s);
    ASSERT_TRUE(references.open(QIODevice::WriteOnly));
    references.write("5");
}

const ClientCall& call(std::string_view name) {
    for (const ClientCall& each : clientCalls()) {
        if (each.name == name) {
            return each;
        }
    }
    throw std::invalid_argument("no such call");
}

/// The memory that the call took beyond what the process had before.
qsizetype costOfGigabyte(const ClientCall& call) {
    Clients clients;
    clients.session.mostBytes = std::numeric_limits<qsizetype>::max();
    clients.reply = gigabyteInChunks(call.healthy);
    forgetPeak();
    const qsizetype before = peak();
    EXPECT_EQ(
        call.run(clients),
        call.expected({.kind = Reading::Kind::Transport, .text = u"La respuesta es demasiado larga."_s}, clients));
    return peak() - before;
}

} // namespace

TEST(GigabyteAnswer, OfTheRecordsServiceCostsLittleMoreThanTheLimit) {
    EXPECT_LT(costOfGigabyte(call("List")), (512 + 96) * mebibyte * sanitizerFactor);
}

TEST(GigabyteAnswer, OfTheModelServerCostsLittleMoreThanTheLimit) {
    EXPECT_LT(costOfGigabyte(call("Chat")), (16 + 48) * mebibyte * sanitizerFactor);
}

TEST(GigabyteAnswer, AnnouncedCostsNothing) {
    Clients clients;
    clients.session.mostBytes = std::numeric_limits<qsizetype>::max();
    for (const ClientCall& each : clientCalls()) {
        clients.reply = gigabyteAnnounced(each.healthy);
        forgetPeak();
        const qsizetype before = peak();
        each.run(clients);
        EXPECT_LT(peak() - before, 16 * mebibyte * sanitizerFactor) << each.name;
    }
}

TEST(LimitsOfAnswers, AreThoseOfTheirService) {
    FakeHttpSession session;
    APIRequest records(session, u"http://records.test/curriculums"_s);
    records.fetchAll([](const auto&) {});
    records.fetchPDF(u"a"_s, [](const auto&) {});
    records.search(u"select"_s, [](const auto&) {});
    for (const HttpRequest& request : session.requests()) {
        EXPECT_EQ(request.mostBytes, 512 * mebibyte);
        EXPECT_EQ(request.mostTime, std::chrono::minutes(10));
        EXPECT_EQ(request.timeout, std::chrono::seconds(60));
    }
    EXPECT_EQ(session.requests().size(), 3);

    Clients settingsOnly;
    FakeHttpSession modelSession;
    OllamaService models(modelSession, settingsOnly.settings);
    models.fetchAvailableModels();
    models.fetchCapabilities(u"m"_s);
    models.chat({}, std::nullopt, std::nullopt);
    models.generateEmbedding(u"text"_s, std::nullopt);
    for (const HttpRequest& request : modelSession.requests()) {
        EXPECT_EQ(request.mostBytes, 16 * mebibyte);
        EXPECT_EQ(request.mostTime, std::chrono::minutes(10));
        EXPECT_EQ(request.timeout, std::chrono::seconds(60));
    }
    EXPECT_EQ(modelSession.requests().size(), 4);
}

} // namespace dorvantel::test
