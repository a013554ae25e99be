// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/support/Print.h"

#include <gmock/gmock.h>
#include <httplib.h>

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using testing::HasSubstr;

constexpr int patience = 20'000; // milliseconds; a limit for broken runs only

struct Ended {
    int status;
    std::string output;
    std::string errors;
};

Ended run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral(DORVANTEL_BIN_DIR "/") + program, arguments);
    EXPECT_TRUE(process.waitForFinished(patience));
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

// The program on a free port, from its ready line on.
class Program {
public:
    explicit Program(const QStringList& more = {}) {
        process.start(QStringLiteral(DORVANTEL_BIN_DIR "/dorvantel-demo-model"),
                      QStringList{u"--listen"_s, u"127.0.0.1:0"_s} + more);
        while (!process.canReadLine() && process.waitForReadyRead(patience)) {
        }
        readyLine = QString::fromUtf8(process.readLine()).trimmed();
        static const QRegularExpression pattern(u"http://127\\.0\\.0\\.1:(\\d+)"_s);
        port = pattern.match(readyLine).captured(1).toInt();
    }
    ~Program() {
        if (process.state() != QProcess::NotRunning) {
            process.kill();
            process.waitForFinished(patience);
        }
    }
    QProcess process;
    QString readyLine;
    int port = 0;
};

TEST(DemoProgram, TellsItsPortAndWhatItIsWhenReady) {
    Program program;
    EXPECT_EQ(
        program.readyLine,
        u"dorvantel-demo-model: listening on http://127.0.0.1:%1 (a stand-in, no language model)"_s.arg(program.port));
    httplib::Client client("127.0.0.1", program.port);
    EXPECT_TRUE(client.Get("/api/tags"));
}

TEST(DemoProgram, EndsInOrderOnSigterm) {
    Program program;
    program.process.terminate();
    ASSERT_TRUE(program.process.waitForFinished(patience));
    EXPECT_EQ(program.process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.process.exitCode(), 0);
}

TEST(DemoProgram, EndsWhileAnAnswerStalls) {
    const QTemporaryDir folder;
    QFile script(folder.filePath(u"s.json"_s));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write(R"({"GET /":{"stall":true}})");
    script.close();
    Program program({u"--script"_s, script.fileName()});
    httplib::Client client("127.0.0.1", program.port);
    client.set_read_timeout(0, 100'000);
    EXPECT_FALSE(client.Get("/"));
    program.process.terminate();
    ASSERT_TRUE(program.process.waitForFinished(patience));
    EXPECT_EQ(program.process.exitCode(), 0);
}

TEST(DemoProgram, APortInUseIsAStatusOfItsOwn) {
    Program first;
    const Ended second = run(u"dorvantel-demo-model"_s, {u"--listen"_s, u"127.0.0.1:%1"_s.arg(first.port)});
    EXPECT_EQ(second.status, 3);
    EXPECT_EQ(second.errors, "dorvantel-demo-model: cannot listen on 127.0.0.1:" + std::to_string(first.port) +
                                 ": the port is in use\n");
}

TEST(DemoProgram, HelpAndVersionSayThatItIsNoLanguageModel) {
    const Ended help = run(u"dorvantel-demo-model"_s, {u"--help"_s});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, HasSubstr("no language model"));
    EXPECT_THAT(help.output, HasSubstr("--listen"));
    EXPECT_THAT(help.output, HasSubstr("--script"));
    const Ended version = run(u"dorvantel-demo-model"_s, {u"--version"_s});
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.output, HasSubstr("no language model"));
}

TEST(DemoProgram, WrongUseAndWrongScriptsAreTold) {
    EXPECT_EQ(run(u"dorvantel-demo-model"_s, {u"--liste"_s}).status, 2);
    EXPECT_EQ(run(u"dorvantel-demo-model"_s, {u"--listen"_s, u"11434"_s}).errors,
              "dorvantel-demo-model: --listen wants HOST:PORT\n");
    EXPECT_EQ(run(u"dorvantel-demo-model"_s, {u"--listen"_s, u"localhost:99999"_s}).status, 2);
    EXPECT_EQ(run(u"dorvantel-demo-model"_s, {u"more"_s}).status, 2);
    EXPECT_EQ(run(u"dorvantel-demo-model"_s, {u"--script"_s, u"/nonexistent.json"_s}).status, 4);
}

TEST(FillSamplesProgram, TellsItsUseAndItsFailures) {
    EXPECT_EQ(run(u"dorvantel-fill-samples"_s, {}).status, 2);
    const Ended help = run(u"dorvantel-fill-samples"_s, {u"--help"_s});
    EXPECT_EQ(help.status, 0);
    const Ended failed = run(u"dorvantel-fill-samples"_s, {u"http://127.0.0.1:1/curriculums"_s});
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.errors, HasSubstr("dorvantel-fill-samples: the list of records: "));
}

} // namespace
} // namespace dorvantel
