// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT

// What a recruiter meets when a server misbehaves: the alert or the lines of the log, and a window in which the next
// thing works, because the server answers again.
#include "data/DBRecordRepresentation.h"
#include "search/LazyRowList.h"
#include "tests/faults/ExpectedLines.h"
#include "tests/faults/FaultyProgram.h"
#include "tests/support/Print.h"
#include "tests/support/Typing.h"
#include "tests/support/Wait.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

/// What follows "= " at the end of what a client should write, and the lines before it.
QString takeEnd(QStringList& lines) {
    return lines.takeLast().mid(2);
}

} // namespace

class Window : public FaultyProgram {
protected:
    /// Takes the alert away and leaves the sheet.
    void dismiss(const QString& expectedText) {
        ASSERT_TRUE(waitFor([this] { return alert(u"errorAlert"_s) != nullptr; }));
        EXPECT_EQ(alert(u"errorAlert"_s)->windowTitle(), u"Error procesando currículum"_s);
        EXPECT_EQ(alert(u"errorAlert"_s)->text(), expectedText);
        QTest::mouseClick(alert(u"errorAlert"_s)->buttons()[0], Qt::LeftButton);
        leaveSheet();
    }
    void leaveSheet() {
        QTest::keyClick(sheet(), Qt::Key_Escape);
        EXPECT_FALSE(sheet());
    }
    void waitForData() {
        ASSERT_TRUE(waitFor([this] { return window().intake().dataExtracted(); }));
    }
    void type(const QString& fieldName, const QString& text) {
        auto* field = sheet()->findChild<QLineEdit*>(fieldName);
        ASSERT_TRUE(field);
        field->selectAll();
        typeText(*field, text);
    }

    /// Drops a CV whose answer of this kind is faulty, and then one whose answers are healthy.
    void dropUnderEveryFault(Ask ask) {
        start();
        for (const Fault& each : faultsOfWindows()) {
            SCOPED_TRACE(each.name);
            if (ask == Ask::Mail && !each.reply) {
                continue; // who has just answered does not refuse
            }
            misbehave(ask, each);
            dropCV();
            QStringList expected = expectedOfModel(reading());
            if (const QString text = takeEnd(expected); text == u"value"_s) {
                waitForData();
                leaveSheet();
            } else {
                expectLines({u"Ollama Error: "_s + text});
                dismiss(u"Error con Ollama: "_s + text);
            }
            behave();
            dropCV();
            waitForData();
            EXPECT_EQ(sheet()->findChild<QLineEdit*>(u"name"_s)->text(), u"Ana"_s);
            leaveSheet();
        }
    }
};

TEST_F(Window, WhoseListDoesNotComeCanSearch) {
    const std::vector<Fault> all = faultsOfWindows();
    for (const Fault& each : all) {
        SCOPED_TRACE(each.name);
        misbehave(Ask::List, each);
        start();
        QStringList expected = expectedOfList(reading(), healthyReply(Ask::List).body.size());
        const QString end = takeEnd(expected);
        if (end != u"value"_s) {
            expected += {u"❌ Failed to load resumes from API"_s, u"❌ Error type: "_s + end};
        }
        expectLines(expected);
        EXPECT_EQ(window().model().dbRecords().empty(), end != u"value"_s);
        behave();
        openSearch();
        expectSearchWorks();
    }
}

TEST_F(Window, WaitingForEverythingCanBeUsedAndLeftEverywhere) {
    stallsEverything = true;
    open();
    openSearch();
    pressSearch();
    for (int cv = 0; cv < 2; ++cv) {
        dropCV();
        EXPECT_FALSE(window().intake().dataExtracted());
        leaveSheet();
    }
    program->openSettings();
    program->settingsView()->setCurrentIndex(1);
    const auto isAsked = [this](const QByteArray& target) {
        return std::ranges::any_of(server.requests(),
                                   [&](const ScriptedRequest& each) { return each.target == target; });
    };
    for (const char* target : {"/curriculums", "/curriculums/search", "/api/tags"}) {
        EXPECT_TRUE(waitUntil([&] { return isAsked(target); })) << target;
    }
    program->settingsView()->close();
    EXPECT_EQ(output->lines(), QStringList());

    stallsEverything = false;
    server.hangUp();
    EXPECT_TRUE(waitUntil([this] { return output->lines().contains(u"Failure! No records returned"_s); }));
    expectSearchWorks();
    dropCV();
    waitForData();
}

TEST_F(Window, WhoseExtractionFailsShowsTheAlertAndReadsTheNextCV) {
    dropUnderEveryFault(Ask::Extraction);
}

TEST_F(Window, WhoseMailFailsShowsTheAlertAndReadsTheNextCV) {
    dropUnderEveryFault(Ask::Mail);
}

TEST_F(Window, WhoseInsertFailsKeepsWhatWasTypedAndStoresTheNextCandidate) {
    start();
    const QString baseUrl = server.url() + u"/curriculums"_s;
    const QString email = u"maria@example.com"_s;
    const QString success = u"Resume inserted successfully with PDF data"_s;
    for (const Fault& each : faultsOfWindows()) {
        SCOPED_TRACE(each.name);
        behave();
        dropCV();
        waitForData();
        type(u"name"_s, u"María Ruiz"_s);
        type(u"profession"_s, u"Auditora de cuentas"_s);
        type(u"email"_s, email);
        misbehave(Ask::Insert, each);
        press(*sheet(), u"ok"_s);
        EXPECT_FALSE(sheet());
        QStringList expected = expectedOfInsert(reading(), email, baseUrl);
        const QString end = takeEnd(expected);
        if (end == u"value"_s) {
            expected += success;
        } else {
            expected += {u"Failure! Record could not be inserted"_s,
                         end == u"decodingProblem"_s ? u"Decoding error"_s : u"Response problem"_s};
        }
        expectLines(expected);
        const DBRecordPointer kept = window().model().dbRecords().back();
        EXPECT_EQ(kept->name, u"María Ruiz"_s);
        EXPECT_EQ(kept->profession, u"Auditora de cuentas"_s);
        EXPECT_EQ(kept->email, email);
        EXPECT_TRUE(kept->file && kept->file->startsWith("%PDF-"));

        behave();
        dropCV();
        waitForData();
        watch();
        press(*sheet(), u"ok"_s);
        expectLines(expectedOfInsert(healthy(), u"ana@example.com"_s, baseUrl).first(2) + QStringList{success});
    }
}

TEST_F(Window, WhoseDeletionFailsHasNoRowOfItAndDeletesTheNextCandidate) {
    start();
    const auto deleteFirst = [this] {
        const DBRecordPointer first = window().model().dbRecords().front();
        selectCandidate(0);
        ASSERT_TRUE(waitFor([&] { return first->file.has_value(); })); // its PDF is under way as soon as it is selected
        watch();
        window().findChild<QAction*>(u"deleteCandidate"_s)->trigger();
        QTest::mouseClick(alert(u"deleteAlert"_s)->buttons()[0], Qt::LeftButton);
        EXPECT_NE(window().model().dbRecords().front(), first);
    };
    for (const Fault& each : faultsOfWindows()) {
        SCOPED_TRACE(each.name);
        if (!each.deletion) {
            continue;
        }
        const DBRecordPointer first = window().model().dbRecords().front();
        selectCandidate(0);
        ASSERT_TRUE(waitFor([&] { return first->file.has_value(); }));
        misbehave(Ask::Delete, each);
        deleteFirst();
        expectLines(expectedOfDelete(reading()));
        behave();
        deleteFirst();
        expectLines(expectedOfDelete(healthy()));
    }
}

TEST_F(Window, WhoseSearchFailsKeepsTheResultsAndSearchesAgain) {
    start();
    openSearch();
    expectSearchWorks();
    for (const Fault& each : faultsOfWindows()) {
        SCOPED_TRACE(each.name);
        misbehave(Ask::Search, each);
        if (reading().kind == Reading::Kind::Healthy) {
            expectSearchWorks();
            continue;
        }
        pressSearch();
        expectLines({u"Failure! No records returned"_s});
        EXPECT_EQ(results()->count(), 1);
        behave();
        expectSearchWorks();
    }
}

TEST_F(Window, WhoseEmbeddingFailsKeepsTheResultsAndSearchesAgain) {
    start();
    openSearch();
    expectSearchWorks(u"contable"_s);
    for (const Fault& each : faultsOfWindows()) {
        SCOPED_TRACE(each.name);
        misbehave(Ask::Embed, each);
        QStringList expected = expectedOfModel(reading());
        if (const QString text = takeEnd(expected); text == u"value"_s) {
            expectSearchWorks(u"contable"_s);
        } else {
            const qsizetype before = server.requests().size();
            pressSearch();
            expectLines({u"❌ Error generating embedding: "_s + text});
            EXPECT_EQ(server.requests().size(), before + (each.reply ? 1 : 0)) << "only the model server is asked";
            EXPECT_EQ(results()->count(), 1);
        }
        behave();
        expectSearchWorks(u"contable"_s);
    }
}

TEST_F(Window, WhoseResultHasNoCVShowsItAtTheNextPress) {
    start();
    openSearch();
    const auto preview = [this] { return window().findChild<QDialog*>(u"pdfPreview"_s); };
    for (const Fault& each : faultsOfWindows()) {
        SCOPED_TRACE(each.name);
        expectSearchWorks();
        misbehave(Ask::PDF, each);
        press(window(), u"cv"_s);
        QStringList expected = expectedOfPDF(reading(), u"ana@example.com"_s);
        if (const QString end = takeEnd(expected); end != u"value"_s) {
            expectLines(expected + QStringList{u"❌ Error loading PDF: "_s + end});
            EXPECT_FALSE(preview());
            behave();
            press(window(), u"cv"_s);
        }
        ASSERT_TRUE(waitFor([&] { return preview() != nullptr; }));
        press(*preview(), u"close"_s);
        behave();
        EXPECT_TRUE(waitFor([&] { return preview() == nullptr; }));
    }
}

TEST_F(Window, WhoseCandidateHasNoPDFSaysSoAndShowsItTheNextTime) {
    start();
    const auto saysSo = [this] {
        for (const QLabel* label : window().findChildren<QLabel*>()) {
            if (label->isVisible() && label->text() == u"PDF no disponible"_s) {
                return true;
            }
        }
        return false;
    };
    int index = 0;
    for (const Fault& each : faultsOfWindows()) {
        SCOPED_TRACE(each.name);
        const DBRecordPointer candidate = window().model().dbRecords()[static_cast<std::size_t>(index)];
        misbehave(Ask::PDF, each);
        selectCandidate(index);
        QStringList expected = expectedOfPDF(reading(), candidate->email);
        if (const QString end = takeEnd(expected); end != u"value"_s) {
            expected += {u"❌ Failed to load PDF for "_s + candidate->email + u": "_s + end,
                         u"⚠️ No PDF available for "_s + candidate->email};
            expectLines(expected);
            EXPECT_TRUE(saysSo());
            behave();
            openSearch();
            selectCandidate(index);
        }
        EXPECT_TRUE(waitFor([&] { return candidate->file.has_value(); }));
        EXPECT_TRUE(waitFor([&] { return !saysSo(); }));
        behave();
        ++index;
    }
}

TEST_F(Window, WhoseModelListDoesNotComeSaysSoAndLoadsItTheNextTime) {
    start();
    for (const Fault& each : faultsOfWindows()) {
        SCOPED_TRACE(each.name);
        misbehave(Ask::Tags, each);
        program->openSettings();
        program->settingsView()->setCurrentIndex(1);
        auto* error = program->settingsView()->findChild<QWidget*>(u"modelError"_s);
        auto* loading = program->settingsView()->findChild<QWidget*>(u"loading"_s);
        ASSERT_TRUE(error && loading);
        QStringList expected = expectedOfTags(reading());
        const QString text = takeEnd(expected);
        ASSERT_TRUE(waitFor([&] { return loading->isHidden(); }));
        EXPECT_EQ(error->isHidden(), text == u"value"_s);
        if (text != u"value"_s) {
            EXPECT_EQ(error->findChild<QLabel*>()->text(), text);
        }
        behave();
        press(*program->settingsView(), u"refresh"_s);
        ASSERT_TRUE(waitFor([&] { return loading->isHidden(); }));
        EXPECT_TRUE(error->isHidden());
        program->settingsView()->close();
    }
}

} // namespace dorvantel::test
