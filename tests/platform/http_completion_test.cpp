// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/HttpSession.h"

#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"

#include <QThread>

#include <atomic>
#include <memory>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using test::ScriptedReply;
using test::ScriptedServer;
using test::waitUntil;

/// Counts the completions that are gone, and those among them that another thread than the test's destroyed. Whether
/// one of Qt's could come in between depends on the moment, hence many requests.
struct CompletionsTest : testing::Test {
    static constexpr int requests = 200;
    std::unique_ptr<NetworkHttpSession> session = std::make_unique<NetworkHttpSession>();
    std::unique_ptr<QObject> context = std::make_unique<QObject>();
    std::atomic<int> ended = 0;
    std::atomic<int> endedElsewhere = 0;

    void postAll(const ScriptedServer& server) {
        HttpRequest request;
        request.method = HttpRequest::Method::Post;
        request.url = QUrl(server.url());
        request.body = "{}";
        const auto end = [this, asker = QThread::currentThread()](void*) {
            if (QThread::currentThread() != asker) {
                ++endedElsewhere;
            }
            ++ended;
        };
        for (int i = 0; i < requests; ++i) {
            session->send(request, context.get(), [held = std::shared_ptr<void>(this, end)](const HttpOutcome&) {});
        }
    }
};

TEST_F(CompletionsTest, EndOnTheThreadThatAskedWhenTheyHaveBeenCalled) {
    ScriptedServer server(ScriptedReply{.body = "x"});
    postAll(server);
    EXPECT_TRUE(waitUntil([this] { return ended == requests; })) << ended;
    EXPECT_EQ(endedElsewhere, 0);
}

TEST_F(CompletionsTest, EndOnTheThreadThatAskedWhenTheContextIsGone) {
    ScriptedServer server(ScriptedReply{.body = {}, .way = ScriptedReply::Way::Stall});
    postAll(server);
    ASSERT_TRUE(waitUntil([&] { return server.openConnections() > 100; })) << server.openConnections();
    context.reset();
    EXPECT_TRUE(waitUntil([this] { return ended == requests; })) << ended;
    EXPECT_EQ(endedElsewhere, 0);
}

TEST_F(CompletionsTest, EndWithTheSession) {
    ScriptedServer server(ScriptedReply{.body = {}, .way = ScriptedReply::Way::Stall});
    postAll(server);
    ASSERT_TRUE(waitUntil([&] { return server.openConnections() > 100; })) << server.openConnections();
    session.reset();
    EXPECT_EQ(ended, requests);
    EXPECT_EQ(endedElsewhere, 0);
}

} // namespace
} // namespace dorvantel
