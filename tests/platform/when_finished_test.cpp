// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/WhenFinished.h"

#include "tests/support/Wait.h"

#include <QCoreApplication>
#include <QPromise>
#include <QThread>

#include <memory>
#include <optional>
#include <thread>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using test::waitUntil;

struct WhenFinishedTest : testing::Test {
    QPromise<int> promise;
    std::unique_ptr<QObject> context = std::make_unique<QObject>();
    std::optional<int> received;

    WhenFinishedTest() { promise.start(); }

    void listen() {
        whenFinished(promise.future(), context.get(), [this](int value) { received = value; });
    }
};

TEST_F(WhenFinishedTest, ResultArrivesThroughTheEventLoop) {
    listen();
    promise.addResult(7);
    promise.finish();
    EXPECT_EQ(received, std::nullopt);
    ASSERT_TRUE(waitUntil([this] { return received.has_value(); }));
    EXPECT_EQ(received, 7);
}

TEST_F(WhenFinishedTest, FutureThatIsFinishedAlreadyStillAnswersThroughTheEventLoop) {
    promise.addResult(7);
    promise.finish();
    listen();
    EXPECT_EQ(received, std::nullopt);
    ASSERT_TRUE(waitUntil([this] { return received.has_value(); }));
    EXPECT_EQ(received, 7);
}

TEST_F(WhenFinishedTest, CancelledFutureCallsNothing) {
    listen();
    promise.future().cancel();
    promise.addResult(7);
    promise.finish();
    ASSERT_TRUE(waitUntil([this] { return context->children().isEmpty(); }));
    EXPECT_EQ(received, std::nullopt);
}

TEST_F(WhenFinishedTest, ContextMayGoBeforeTheFutureEnds) {
    listen();
    context.reset();
    promise.addResult(7);
    promise.finish();
    QCoreApplication::processEvents();
    EXPECT_EQ(received, std::nullopt);
}

TEST_F(WhenFinishedTest, HandlerMayDestroyItsContext) {
    whenFinished(promise.future(), context.get(), [this](int value) {
        context.reset();
        received = value;
    });
    promise.addResult(7);
    promise.finish();
    ASSERT_TRUE(waitUntil([this] { return received.has_value(); }));
}

TEST_F(WhenFinishedTest, ResultOfAnotherThreadArrivesOnTheThreadOfTheContext) {
    QThread* thread = nullptr;
    whenFinished(promise.future(), context.get(), [&](int value) {
        thread = QThread::currentThread();
        received = value;
    });
    std::jthread([this] {
        promise.addResult(7);
        promise.finish();
    }).join();
    ASSERT_TRUE(waitUntil([this] { return received.has_value(); }));
    EXPECT_EQ(thread, QThread::currentThread());
}

} // namespace
} // namespace dorvantel
