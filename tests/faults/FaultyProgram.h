// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "app/DorvantelApp.h"
#include "modelserver/AppSettings.h"
#include "tests/faults/FaultTable.h"
#include "tests/faults/WatchedOutput.h"

#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

class QListView;
class QMessageBox;
class QPushButton;

namespace dorvantel {
class LazyRowList;
}

namespace dorvantel::test {

/// What the program asks of its two services.
enum class Ask { List, PDF, Insert, Delete, Search, Extraction, Mail, Embed, Tags, Show };

/// The whole program over a server that is both its services and answers everything well, but for the one kind of
/// request that a test chooses. Of most failures only the log tells, so every step looks at the lines since the last
/// one.
class FaultyProgram : public testing::Test {
protected:
    FaultyProgram();
    ~FaultyProgram() override;

    /// Starts the program.
    void open();
    /// Starts the program and waits for the list.
    void start();
    ContentView& window() { return program->window(); }

    /// From now on, requests of this kind meet the fault.
    void misbehave(Ask ask, const Fault& chosen);
    void behave();
    /// What a client makes of the fault, in a window: what is silent ends because the server hangs up.
    Reading reading() const;

    /// Waits for so many lines, hanging up on a client that waits in silence, and compares all of them.
    void expectLines(const QStringList& expected);
    bool waitFor(const std::function<bool()>& condition);

    /// Forgets the lines so far.
    void watch();

    // What a recruiter does

    void selectCandidate(int index);
    void openSearch();
    void pressSearch();
    void dropCV();
    void press(QWidget& parent, const QString& buttonName);
    QWidget* sheet();
    QMessageBox* alert(const QString& name);
    LazyRowList* results();

    /// Searches and expects the answer.
    void expectSearchWorks(const QString& freeText = {});

    static ScriptedReply healthyReply(Ask ask);

    bool stallsEverything = false;
    const Fault* fault = nullptr;
    Ask faulty = Ask::List;
    QTemporaryDir folder;
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(QStringLiteral("a.conf")), QSettings::IniFormat)};
    ScriptedServer elsewhere{ScriptedReply{}};
    ScriptedServer server{[this](const ScriptedRequest& request) { return answer(request); }};
    std::unique_ptr<WatchedOutput> output;
    std::unique_ptr<DorvantelApp> program;

private:
    ScriptedReply answer(const ScriptedRequest& request);

    bool m_isWaitedFor = false; ///< a client waits for an answer that does not come
};

/// Those of the table that a window may meet otherwise than a client. Of the silent ones, one does for all, and a body
/// that has to come up to the program's own limits is left to the clients.
std::vector<Fault> faultsOfWindows();

} // namespace dorvantel::test
