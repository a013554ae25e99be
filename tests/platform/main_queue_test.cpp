// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/MainQueue.h"

#include "tests/support/Print.h"
#include "tests/support/Wait.h"

#include <QStringList>
#include <QThread>

#include <memory>
#include <thread>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::waitUntil;

TEST(RunOnMainQueue, ReturnsAtOnceAndRunsInTheOrderOfTheCalls) {
    QObject context;
    QStringList done;
    runOnMainQueue(&context, [&done] { done.append(u"first"_s); });
    runOnMainQueue(&context, [&done] { done.append(u"second"_s); });
    EXPECT_EQ(done, QStringList());
    ASSERT_TRUE(waitUntil([&done] { return done.size() == 2; }));
    EXPECT_EQ(done, (QStringList{u"first"_s, u"second"_s}));
}

TEST(RunOnMainQueue, WorkOfAnotherThreadRunsOnTheThreadOfTheContext) {
    QObject context;
    const QThread* ranOn = nullptr;
    std::jthread([&] { runOnMainQueue(&context, [&ranOn] { ranOn = QThread::currentThread(); }); }).join();
    EXPECT_EQ(ranOn, nullptr);
    ASSERT_TRUE(waitUntil([&ranOn] { return ranOn != nullptr; }));
    EXPECT_EQ(ranOn, QThread::currentThread());
}

TEST(RunOnMainQueue, WorkForWhoIsGoneIsDropped) {
    QObject here;
    auto gone = std::make_unique<QObject>();
    QStringList done;
    runOnMainQueue(gone.get(), [&done] { done.append(u"gone"_s); });
    gone.reset();
    runOnMainQueue(&here, [&done] { done.append(u"here"_s); });
    ASSERT_TRUE(waitUntil([&done] { return !done.isEmpty(); }));
    EXPECT_EQ(done, QStringList{u"here"_s});
}

} // namespace
} // namespace dorvantel
