// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/HttpSession.h"

#include "tests/support/Print.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"

#include <memory>
#include <optional>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::ScriptedReply;
using test::ScriptedServer;
using test::waitUntil;

struct NetworkHttpSessionTest : testing::Test {
    NetworkHttpSession session;
    std::unique_ptr<QObject> context = std::make_unique<QObject>();
    std::optional<HttpOutcome> outcome;

    void get(const QString& url) {
        HttpRequest request;
        request.url = QUrl(url);
        session.send(request, context.get(), [this](HttpOutcome received) { outcome = std::move(received); });
    }
};

TEST_F(NetworkHttpSessionTest, PathThatBeginsWithTwoSlashesKeepsThem) {
    ScriptedServer server(ScriptedReply{});
    for (const QString& target : {u"//api/tags"_s, u"///api/tags"_s, u"/api//tags"_s, u"//a%20b?c=d//e"_s, u"/a"_s}) {
        outcome.reset();
        get(server.url() + target);
        ASSERT_TRUE(waitUntil([this] { return outcome.has_value(); }));
        EXPECT_EQ(QString::fromLatin1(server.requests().last().target), target);
    }
}

TEST_F(NetworkHttpSessionTest, CompletionIsNotCalledWhenTheContextGoesFirst) {
    ScriptedServer server(ScriptedReply{.body = {}, .way = ScriptedReply::Way::Stall});
    get(server.url());
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 1; }));
    context.reset();
    EXPECT_TRUE(waitUntil([&] { return server.openConnections() == 0; }));
    EXPECT_FALSE(outcome.has_value());
}

} // namespace
} // namespace dorvantel
