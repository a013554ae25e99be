// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/Application.h"
#include "platform/Sanitizers.h"
#include "tests/longrun/LongRun.h"
#include "tests/longrun/Recruiter.h"
#include "tests/longrun/Usage.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

/// Sends what the program says on standard output nowhere while it lives; a long run says a lot.
class Silence {
public:
    Silence()
        : m_output(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)) {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }
    ~Silence() {
        std::fflush(stdout);
        dup2(m_output, STDOUT_FILENO);
        close(m_output);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    int m_output;
};

QList<Sample> run(const Length& length, const QString& realCvs) {
    prepareApplication(*qApp);
    const Silence silence;
    const ObjectCount objects;
    Recruiter recruiter(realCvs);
    return runLong(recruiter, length, stderr);
}

std::string complaints(const QList<Sample>& samples, const Bounds& bounds) {
    return complaintsAbout(samples, bounds).join(u'\n').toStdString();
}

constexpr qint64 kibibyte = 1024;

} // namespace

TEST(LongRun, ShortOneLeavesNothingBehind) {
    Bounds bounds{
        .heapPerRound = 2 * kibibyte, .servicePerRound = 64 * kibibyte, .descriptors = 3, .threads = 3, .objects = 8};
    if (isSanitized) {
        bounds.memoryShare = 10; // it keeps what was given back for a while, and its own records
    }
    EXPECT_EQ(complaints(run({.rounds = 60, .deletions = 20, .roundsPerSample = 5}, {}), bounds), "");
}

TEST(LongRun, FullOneLeavesNothingBehindAndDoesNotSlowDown) {
    if (!qEnvironmentVariableIsSet("DORVANTEL_LONG_RUN")) {
        GTEST_SKIP() << "DORVANTEL_LONG_RUN is not set; scripts/long-run.sh does it";
    }
    const Bounds bounds{.heapPerRound = kibibyte / 4,
                        .servicePerRound = 8 * kibibyte,
                        .descriptors = 3,
                        .threads = 3,
                        .objects = 8,
                        .slowness = 1.5};
    const QString data = qEnvironmentVariable("DORVANTEL_TEST_DATA");
    const QString realCvs = data.isEmpty() ? QString() : data + u"/cv"_s;
    EXPECT_EQ(complaints(run({.rounds = 2000, .deletions = 500, .roundsPerSample = 100}, realCvs), bounds), "");
}

} // namespace dorvantel::test
