// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Log.h"

#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"

#include <QSet>
#include <QtDebug>

#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::CapturedOutput;

TEST(LogLine, EachIsOnePlainLineOfUtf8InItsOrder) {
    CapturedOutput output;
    logLine(u"❌ Network Error: señal perdida"_s);
    logLine(u"   Context: 😀"_s);
    logLine(QString());
    EXPECT_EQ(output.text(), u"❌ Network Error: señal perdida\n   Context: 😀\n\n"_s);
}

TEST(LogLine, LineFeedsInsideAreKept) {
    CapturedOutput output;
    logLine(u"*** Illegal JSON string\n"_s);
    EXPECT_EQ(output.text(), u"*** Illegal JSON string\n\n"_s);
}

TEST(LogLine, MessagesOfTheToolkitGoToStandardErrorInstead) {
    CapturedOutput output;
    testing::internal::CaptureStderr();
    qWarning("from the toolkit");
    logLine(u"from the program"_s);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "from the toolkit\n");
    EXPECT_EQ(output.text(), u"from the program\n"_s);
}

TEST(LogLine, LinesOfSeveralThreadsNeverMix) {
    constexpr int threads = 4;
    constexpr int linesOfEach = 500;
    CapturedOutput output;
    {
        std::vector<std::jthread> writers;
        for (int i = 0; i < threads; ++i) {
            writers.emplace_back([i] {
                for (int line = 0; line < linesOfEach; ++line) {
                    logLine(QString::number(i).repeated(200));
                }
            });
        }
    }
    const QStringList lines = output.lines();
    EXPECT_EQ(lines.size(), threads * linesOfEach);
    EXPECT_EQ(QSet<QString>(lines.cbegin(), lines.cend()).size(), threads);
}

} // namespace
} // namespace dorvantel
