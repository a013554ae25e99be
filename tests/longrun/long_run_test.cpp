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

/// Sends what the program says on standard output to a file while it lives; a long run says a lot.
class SaidElsewhere {
public:
    explicit SaidElsewhere(const char* file)
        : m_output(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)) {
        const int elsewhere = open(file, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        dup2(elsewhere, STDOUT_FILENO);
        close(elsewhere);
    }
    ~SaidElsewhere() {
        std::fflush(stdout);
        dup2(m_output, STDOUT_FILENO);
        close(m_output);
    }
    SaidElsewhere(const SaidElsewhere&) = delete;
    SaidElsewhere& operator=(const SaidElsewhere&) = delete;

private:
    int m_output;
};

QList<Sample> run(const Length& length, const QString& realCvs, const char* log) {
    keepNoFreeMemory();
    prepareApplication(*qApp);
    const SaidElsewhere said(log);
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
    if (isSanitized) {
        GTEST_SKIP() << "The sanitizers' own allocators tell neither what is in use nor what was given back";
    }
    // In so few rounds the service's cache still fills with its store: only leaks of whole PDFs would stand out there.
    Bounds bounds{
        .heapPerRound = 4 * kibibyte, .servicePerRound = 192 * kibibyte, .descriptors = 3, .threads = 3, .objects = 6};
    EXPECT_EQ(complaints(run({.rounds = 60, .deletions = 20, .roundsPerSample = 5}, {}, "/dev/null"), bounds), "");
}

TEST(LongRun, FullOneLeavesNothingBehindAndDoesNotSlowDown) {
    const QByteArray log = qgetenv("DORVANTEL_LONG_RUN_LOG");
    if (log.isEmpty()) {
        GTEST_SKIP() << "DORVANTEL_LONG_RUN_LOG names no file for what the program says; scripts/long-run.sh does";
    }
    const Bounds bounds{.heapPerRound = kibibyte / 2,
                        .servicePerRound = 6 * kibibyte,
                        .descriptors = 3,
                        .threads = 3,
                        .objects = 6,
                        .slowness = 1.5,
                        .perCandidateMs = 0.002};
    const QString data = qEnvironmentVariable("DORVANTEL_TEST_DATA");
    const QString realCvs = data.isEmpty() ? QString() : data + u"/cv"_s;
    EXPECT_EQ(
        complaints(run({.rounds = 2000, .deletions = 500, .roundsPerSample = 100}, realCvs, log.constData()), bounds),
        "");
}

} // namespace dorvantel::test
