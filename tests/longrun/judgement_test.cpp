// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/longrun/Judgement.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <functional>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

constexpr Bounds bounds{.memoryShare = 0.05,
                        .heapPerRound = 100,
                        .servicePerRound = 1000,
                        .descriptors = 3,
                        .threads = 2,
                        .objects = 8,
                        .slowness = 1.5};

/// Twelve samples, ten rounds apart, of a program that stays as it is while what it gathers grows.
QList<Sample> flatRun() {
    QList<Sample> samples;
    for (int i = 1; i <= 12; ++i) {
        const Spent spent{.median = 20, .quick = 15, .work = 10};
        const qint64 held = 50'000 * i;
        samples.append({.rounds = 10 * i,
                        .candidates = 8 * i,
                        .memory = 10'000'000 + held,
                        .heap = 5'000'000 + held,
                        .held = held,
                        .filled = held,
                        .objects = 300,
                        .widgets = 100,
                        .descriptors = 20,
                        .threads = 4,
                        .serviceMemory = 9'000'000,
                        .serviceDescriptors = 15,
                        .serviceThreads = 7,
                        .intake = spent,
                        .search = spent,
                        .deletion = spent});
    }
    return samples;
}

/// What is said of the flat run when something of it changes, round by round.
QString saidOf(const std::function<void(Sample&)>& change) {
    QList<Sample> samples = flatRun();
    for (Sample& sample : samples) {
        change(sample);
    }
    return complaintsAbout(samples, bounds).join(u'\n');
}

} // namespace

TEST(LongRunJudgement, FlatRunIsWell) {
    EXPECT_EQ(complaintsAbout(flatRun(), bounds), QStringList());
}

TEST(LongRunJudgement, WidgetLeakedEveryTenthRoundIsSeen) {
    EXPECT_EQ(saidOf([](Sample& s) { s.widgets += s.rounds / 10; }), u"Widgets: 109 at the end, 105 before."_s);
}

TEST(LongRunJudgement, ObjectLeakedEveryThirdRoundIsSeen) {
    EXPECT_EQ(saidOf([](Sample& s) { s.objects += s.rounds / 3; }), u"Objects: 330 at the end, 316 before."_s);
}

TEST(LongRunJudgement, DescriptorLeakedEveryTenthRoundIsSeen) {
    EXPECT_EQ(saidOf([](Sample& s) { s.descriptors += s.rounds / 10; }),
              u"Descriptors of the program: 29 at the end, 25 before."_s);
    EXPECT_EQ(saidOf([](Sample& s) { s.serviceDescriptors += s.rounds / 10; }),
              u"Descriptors of the records service: 24 at the end, 20 before."_s);
}

TEST(LongRunJudgement, ThreadLeakedEveryTenthRoundIsSeen) {
    EXPECT_EQ(saidOf([](Sample& s) { s.threads += s.rounds / 10; }),
              u"Threads of the program: 13 at the end, 9 before."_s);
    EXPECT_EQ(saidOf([](Sample& s) { s.serviceThreads += s.rounds / 10; }),
              u"Threads of the records service: 16 at the end, 12 before."_s);
}

TEST(LongRunJudgement, ConnectionsThatComeAndGoAreNoLeak) {
    EXPECT_EQ(saidOf([](Sample& s) { s.descriptors += s.rounds % 20 == 0 ? 6 : 0; }), QString());
}

TEST(LongRunJudgement, FewBytesOfHeapWithEveryRoundAreSeen) {
    EXPECT_EQ(saidOf([](Sample& s) { s.heap += 101 * s.rounds; }),
              u"Heap of the program: 101 bytes more with every round."_s);
    EXPECT_EQ(saidOf([](Sample& s) { s.heap += 100 * s.rounds; }), QString());
}

TEST(LongRunJudgement, MemoryThatGrewByMoreThanItsShareIsSeen) {
    EXPECT_EQ(saidOf([](Sample& s) { s.memory += s.rounds > 40 ? 501'000 : 0; }),
              u"Memory of the program: 10255 KiB at the end, 9766 KiB after warming up."_s);
    EXPECT_EQ(saidOf([](Sample& s) { s.memory += s.rounds > 40 ? 499'000 : 0; }), QString());
}

TEST(LongRunJudgement, HeapThatGrewOnceByMoreThanItsShareIsSeen) {
    EXPECT_EQ(saidOf([](Sample& s) { s.heap += s.rounds > 40 ? 251'000 : 0; }),
              u"Heap of the program: 5128 KiB at the end, 4883 KiB after warming up."_s);
}

TEST(LongRunJudgement, WhatIsGatheredMayGrow) {
    EXPECT_EQ(saidOf([](Sample& s) {
                  s.held += 100'000 * s.rounds;
                  s.filled += 100'000 * s.rounds;
                  s.heap += 100'000 * s.rounds;
                  s.memory += 100'000 * s.rounds;
              }),
              QString());
}

TEST(LongRunJudgement, ServiceThatGrowsFasterThanItsCandidatesIsSeen) {
    EXPECT_EQ(saidOf([](Sample& s) { s.serviceMemory += 1001 * s.rounds; }),
              u"Memory of the records service: 1001 bytes more with every round."_s);
}

TEST(LongRunJudgement, StepsThatTakeLongerAreSeen) {
    EXPECT_EQ(saidOf([](Sample& s) { s.intake.quick += s.rounds > 90 ? 8 : 0; }),
              u"An intake: 23.0 ms in the last quarter, 15.0 ms in the first."_s);
    EXPECT_EQ(saidOf([](Sample& s) { s.search.work += s.rounds > 90 ? 6 : 0; }),
              u"A search, work of the window's thread: 16.0 ms in the last quarter, 10.0 ms in the first."_s);
    EXPECT_EQ(saidOf([](Sample& s) { s.deletion.quick += s.rounds > 90 ? 8 : 0; }),
              u"A deletion: 23.0 ms in the last quarter, 15.0 ms in the first."_s);
    EXPECT_EQ(saidOf([](Sample& s) { s.deletion.quick += s.rounds > 90 ? 7 : 0; }), QString());
}

TEST(LongRunJudgement, StepsMayTakeAMomentForEachCandidate) {
    QList<Sample> samples = flatRun();
    for (Sample& sample : samples) {
        sample.candidates *= 1000; // 72 thousand more in the last quarter than in the first
        sample.deletion.work += sample.rounds > 90 ? 5.0 + 7.1 : 0;
    }
    Bounds patient = bounds;
    EXPECT_EQ(
        complaintsAbout(samples, patient),
        QStringList(u"A deletion, work of the window's thread: 22.1 ms in the last quarter, 10.0 ms in the first."_s));
    patient.perCandidateMs = 0.0001;
    EXPECT_EQ(complaintsAbout(samples, patient), QStringList());
}

TEST(LongRunJudgement, TimesDoNotCountUnlessAskedFor) {
    QList<Sample> samples = flatRun();
    samples.last().intake.quick = samples.last().search.work = 1e6;
    Bounds untimed = bounds;
    untimed.slowness = 0;
    EXPECT_EQ(complaintsAbout(samples, untimed), QStringList());
}

TEST(LongRunJudgement, MomentaryNeedIsNoLeak) {
    QList<Sample> samples = flatRun();
    samples[10].heap += 1'000'000;
    samples[10].widgets += 50;
    EXPECT_EQ(complaintsAbout(samples, bounds), QStringList());
}

TEST(LongRunJudgement, RunWithTooFewSamplesIsNotJudged) {
    EXPECT_THROW(complaintsAbout(flatRun().first(7), bounds), std::invalid_argument);
}

} // namespace dorvantel::test
