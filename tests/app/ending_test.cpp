// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/app/DorvantelAppFixture.h"

#include <QAction>
#include <QDialog>
#include <QListView>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <csignal>
#include <functional>

namespace dorvantel::test {

/// Notes that the application is told to end.
class QuitWatch final : public QObject {
public:
    QuitWatch() { qApp->installEventFilter(this); }
    bool seen() const { return m_seen; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        m_seen = m_seen || (watched == qApp && event->type() == QEvent::Quit);
        return false;
    }

private:
    bool m_seen = false;
};

/// The program in its event loop, which a test leaves as a user does: by closing the window.
struct EndingTest : DorvantelAppTest {
    bool ended = false;
    bool watched = false;
    QuitWatch quit;

    EndingTest() {
        settings.setOllamaURL(server.url());
        program.window().show();
    }

    /// Runs the program; `user` does its part as soon as the candidates are there. What is then under way is watched by
    /// `later` while the loop runs.
    void run(const std::function<void()>& user, const std::function<void()>& later = {}) {
        QTimer::singleShot(0, &program, [=, this] {
            ASSERT_TRUE(waitUntil([this] { return !program.window().model().dbRecords().empty(); }));
            user();
            if (later) {
                QTimer::singleShot(0, qApp, [=, this] {
                    later();
                    watched = true;
                });
            }
        });
        // A loop that does not end by itself fails the test instead of hanging it.
        QTimer::singleShot(15'000, &program, [] { QCoreApplication::exit(99); });
        EXPECT_EQ(QApplication::exec(), 0);
        EXPECT_TRUE(watched || !later);
        ended = true;
    }

    qsizetype arrived(const QByteArray& method) const {
        return std::ranges::count_if(server.requests(),
                                     [&](const ScriptedRequest& request) { return request.method == method; });
    }

    void confirmCandidate() {
        IntakeState& intake = program.window().intake();
        intake.setPDFDocument(std::make_shared<PDFDocument>(pdf, QStringList{u"x"_s}));
        intake.setSheetIsShowing(true);
        intake.setValues({.gender = u"Femenino"_s,
                          .name = u"Ana Ruiz"_s,
                          .profession = u"Contable"_s,
                          .email = u"ana@example.com"_s,
                          .invitationMail = u"Estimada Sra. Ruiz"_s,
                          .summarizedText = u"Lleva cuentas."_s,
                          .techSkills = {},
                          .softSkills = {},
                          .languages = {}});
        intake.setDataExtracted(true);
        auto* sheet = program.window().findChild<QDialog*>(u"validationSheet"_s);
        ASSERT_TRUE(sheet);
        QTest::mouseClick(sheet->findChild<QPushButton*>(u"ok"_s), Qt::LeftButton);
        EXPECT_FALSE(intake.sheetIsShowing());
    }

    void deleteFirstCandidate() {
        auto* list = program.window().findChild<QListView*>(u"candidateList"_s);
        list->setCurrentIndex(list->model()->index(2, 0));
        program.window().deleteCommand();
        auto* alert = program.window().findChild<QMessageBox*>(u"deleteAlert"_s);
        ASSERT_TRUE(alert);
        QTest::mouseClick(alert->defaultButton(), Qt::LeftButton);
    }

    /// The request of this kind reaches the service, the loop still runs, nothing is seen of the program; then the
    /// service answers.
    void expectRequestThenAnswer(const QByteArray& method) {
        EXPECT_TRUE(waitUntil([&] { return arrived(method) == 1; }));
        EXPECT_FALSE(ended);
        for (const QWidget* widget : QApplication::topLevelWidgets()) {
            EXPECT_FALSE(widget->isVisible()) << qPrintable(widget->objectName());
        }
        EXPECT_EQ(server.heldCount(), 1);
        EXPECT_FALSE(quit.seen());
        EXPECT_TRUE(server.release());
    }

    QByteArray pdf = "pdf";
};

TEST_F(EndingTest, ClosedWindowEndsTheProgram) {
    run([this] { program.window().close(); });
}

TEST_F(EndingTest, QuitEntryEndsTheProgram) {
    run([this] { program.window().findChild<QAction*>(u"quit"_s)->trigger(); });
}

TEST_F(EndingTest, ClosingTheMainWindowEndsTheProgramThoughSettingsAndAboutAreOpen) {
    run([this] {
        program.openSettings();
        program.showAbout();
        program.window().close();
    });
}

TEST_F(EndingTest, ClosingSettingsOrAboutEndsNothing) {
    run([this] {
        program.openSettings();
        program.showAbout();
        program.window().findChild<QMessageBox*>(u"about"_s)->close();
        topLevel(u"settings"_s)->close();
        QTimer::singleShot(0, &program, [this] {
            EXPECT_TRUE(program.window().isVisible());
            program.window().close();
        });
    });
}

TEST_F(EndingTest, WindowClosedRightAfterOKStillStoresTheCandidate) {
    run(
        [this] {
            confirmCandidate();
            program.window().close();
        },
        [this] { expectRequestThenAnswer("POST"); });
    EXPECT_TRUE(server.requests().last().body.contains("\"ana@example.com\""));
    EXPECT_TRUE(output.lines().contains(u"✅ Successfully inserted resume for ana@example.com"_s));
}

TEST_F(EndingTest, WindowClosedWhileALargeRecordIsEncodedStillStoresIt) {
    pdf = QByteArray(8 * 1024 * 1024, 'x');
    run(
        [this] {
            confirmCandidate();
            program.window().findChild<QAction*>(u"quit"_s)->trigger();
        },
        [this] { expectRequestThenAnswer("POST"); });
    EXPECT_GT(server.requests().last().body.size(), pdf.size());
}

TEST_F(EndingTest, WindowClosedRightAfterADeletionStillDeletes) {
    run(
        [this] {
            deleteFirstCandidate();
            program.window().close();
        },
        [this] { expectRequestThenAnswer("DELETE"); });
    EXPECT_EQ(server.requests().last().target, "/curriculums/blas@example.com");
    EXPECT_EQ(output.lines().last(), u"Resume deleted successfully from database"_s);
}

TEST_F(EndingTest, ServiceThatCutsTheConnectionEndsTheWait) {
    insertReply.way = ScriptedReply::Way::Cut;
    run(
        [this] {
            confirmCandidate();
            program.window().close();
        },
        [this] { expectRequestThenAnswer("POST"); });
    EXPECT_TRUE(output.text().contains(u"❌ Network Error in insertResume: "_s));
}

TEST_F(EndingTest, WindowThatStaysOutlivesTheAnswer) {
    bool closed = false;
    run([&] {
        confirmCandidate();
        EXPECT_TRUE(waitUntil([this] { return server.heldCount() == 1; }));
        server.release();
        deleteFirstCandidate();
        EXPECT_TRUE(waitUntil([this] { return arrived("DELETE") == 1; }));
        server.release();
        program.openSettings();
        EXPECT_TRUE(program.window().isVisible());
        QTimer::singleShot(0, &program, [&] { closed = program.window().close(); });
    });
    EXPECT_TRUE(closed);
}

TEST_F(EndingTest, SignalOfTheSystemEndsTheProgramInOrder) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        QProcess process;
        process.setChildProcessModifier([signal] { std::signal(signal, SIG_DFL); }); // also where it is ignored here
        process.start(QStringLiteral(DORVANTEL_BIN_DIR "/dorvantel"), {});
        // Its first line is about the records: by then its event loop runs.
        ASSERT_TRUE(waitUntil([&] { return process.bytesAvailable() > 0; }, 30'000));
        kill(static_cast<pid_t>(process.processId()), signal);
        EXPECT_TRUE(waitUntil([&] { return process.state() == QProcess::NotRunning; }, 30'000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << signal;
        EXPECT_EQ(process.exitCode(), 0) << signal;
    }
}

TEST_F(EndingTest, SignalRightAfterOKStillStoresTheCandidate) {
    run(
        [this] {
            confirmCandidate();
            raise(SIGTERM);
        },
        [this] {
            EXPECT_TRUE(waitUntil([] { return !topLevel(u"main"_s); }));
            expectRequestThenAnswer("POST");
        });
}

TEST_F(EndingTest, SignalThatWasIgnoredStaysIgnored) {
    QProcess process;
    process.setChildProcessModifier([] { std::signal(SIGHUP, SIG_IGN); });
    process.start(QStringLiteral(DORVANTEL_BIN_DIR "/dorvantel"), {});
    ASSERT_TRUE(waitUntil([&] { return process.bytesAvailable() > 0; }, 30'000));
    QFile status(u"/proc/%1/status"_s.arg(process.processId()));
    ASSERT_TRUE(status.open(QIODevice::ReadOnly));
    const QByteArray all = status.readAll();
    const qsizetype line = all.indexOf("SigIgn:");
    ASSERT_GE(line, 0);
    const quint64 ignored = all.mid(line + 7).trimmed().left(16).toULongLong(nullptr, 16);
    EXPECT_TRUE(ignored & (quint64{1} << (SIGHUP - 1)));
    process.terminate();
    EXPECT_TRUE(waitUntil([&] { return process.state() == QProcess::NotRunning; }, 30'000));
    EXPECT_EQ(process.exitCode(), 0);
}

TEST_F(EndingTest, WindowMayCloseWithAQuestionOpen) {
    run([this] {
        auto* list = program.window().findChild<QListView*>(u"candidateList"_s);
        list->setCurrentIndex(list->model()->index(2, 0));
        program.window().deleteCommand();
        EXPECT_TRUE(topLevel(u"deleteAlert"_s));
        program.window().close();
    });
    EXPECT_EQ(arrived("DELETE"), 0);
}

TEST_F(EndingTest, WindowMayCloseWithTheErrorOfAnIntakeOpen) {
    run([this] {
        program.window().intake().setSheetIsShowing(true);
        program.window().intake().setProcessingError(u"x"_s);
        EXPECT_TRUE(topLevel(u"errorAlert"_s));
        program.window().close();
    });
}

TEST_F(EndingTest, WindowMayCloseWhileTheBytesOfACVAreRead) {
    run([this] {
        program.window().openCV(file(u"cv.pdf"_s, QByteArray(8 * 1024 * 1024, 'x')));
        program.window().close();
    });
}

TEST_F(EndingTest, IntakeThatRunsIsGivenUpWithTheWindow) {
    run([this] {
        program.window().openCV(file(u"cv.pdf"_s, "%PDF-1.4 no CV"));
        EXPECT_TRUE(waitUntil([this] { return program.window().intake().sheetIsShowing(); }));
        EXPECT_TRUE(program.window().close());
    });
}

TEST_F(EndingTest, NothingAppearsAfterTheWindowIsClosedThoughTheLoopRuns) {
    run(
        [this] {
            confirmCandidate();
            program.window().openCV(file(u"cv.pdf"_s, "%PDF-1.4 no CV"));
            program.window().close();
        },
        [this] {
            QThreadPool::globalInstance()->waitForDone();
            expectRequestThenAnswer("POST");
        });
}

} // namespace dorvantel::test
