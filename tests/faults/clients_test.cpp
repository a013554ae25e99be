// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT

// Every request of the program against a server that misbehaves in every way: what the clients write, what their
// callers get, and that the next request finds everything in order.
#include "tests/faults/ClientCalls.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"
#include "tests/support/Wait.h"

#include <gtest/gtest.h>

#include <optional>
#include <string_view>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

class EveryClientCall : public testing::TestWithParam<Fault> {};

void misbehave(Clients& clients, const Fault& fault, const ClientCall& call, const QByteArray& elsewhere) {
    if (!fault.reply) {
        clients.server.refuse();
        return;
    }
    clients.reply = fault.reply(call.healthy, elsewhere);
    if (fault.isSilent && call.reading(fault, call.healthy).kind == Reading::Kind::Transport) {
        clients.session.timeout = std::chrono::milliseconds(150);
    }
}

void behave(Clients& clients, const Fault& fault, const ScriptedReply& healthyReply) {
    if (!fault.reply) {
        clients.server.accept();
    }
    clients.reply = healthyReply;
    clients.session.timeout = std::chrono::minutes(1);
}

} // namespace

TEST_P(EveryClientCall, EndsAsDocumentedAndTheNextOneSucceeds) {
    const Fault& fault = GetParam();
    for (const ClientCall& call : clientCalls()) {
        SCOPED_TRACE(call.name);
        if (!fault.deletion && call.name == std::string_view("Delete")) {
            continue;
        }
        Clients clients;
        ScriptedServer elsewhere(call.healthy);
        misbehave(clients, fault, call, elsewhere.url().toLatin1());
        EXPECT_EQ(call.run(clients), call.expected(call.reading(fault, call.healthy), clients));
        behave(clients, fault, call.healthy);
        EXPECT_EQ(call.run(clients), call.expected(healthy(), clients));
        EXPECT_EQ(elsewhere.requests().size(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Faults, EveryClientCall, testing::ValuesIn(faults()),
                         [](const testing::TestParamInfo<Fault>& fault) { return std::string(fault.param.name); });

// Whatever is said to be gzip and is not, the network library may take for a bare deflate stream, and then nearly every
// bit sequence means something.
TEST(GzipClaimed, BytesThatUnpackToSomethingAreNoAnswerEither) {
    Clients clients;
    clients.reply = claimedAsGzip({.body = R"({"file":[37,80],"Ana":0})"});
    CapturedOutput output;
    std::optional<std::expected<std::optional<QByteArray>, APIError>> end;
    clients.records.fetchPDF(u"ana@example.com"_s, [&end](auto result) { end = result; });
    ASSERT_TRUE(waitUntil([&end] { return end.has_value(); }));
    EXPECT_EQ(output.lines(),
              QStringList{u"❌ Decoding Error loading PDF: dataCorrupted (The body is not valid JSON: error "
                          "at byte 0. [])"_s});
    EXPECT_EQ(end->error(), APIError::decodingProblem);
}

class CutAtEveryByte : public testing::TestWithParam<ClientCall> {};

TEST_P(CutAtEveryByte, OfAnAnswerWithItsLengthEndsAsAClosedConnection) {
    const ClientCall& call = GetParam();
    Clients clients;
    const QByteArray whole = wholeAnswer(call.healthy);
    for (qsizetype bytes = 0; bytes < whole.size(); ++bytes) {
        SCOPED_TRACE(bytes);
        clients.reply = sentAndClosed(whole.left(bytes));
        ASSERT_EQ(call.run(clients), call.expected(hungUp(), clients));
    }
    clients.reply = sentAndClosed(whole);
    EXPECT_EQ(call.run(clients), call.expected(healthy(), clients));
}

INSTANTIATE_TEST_SUITE_P(Requests, CutAtEveryByte, testing::ValuesIn(clientCalls()),
                         [](const testing::TestParamInfo<ClientCall>& call) { return std::string(call.param.name); });

} // namespace dorvantel::test
