// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "app/DorvantelApp.h"
#include "app/tour/Companions.h"
#include "app/tour/MailCatcher.h"
#include "modelserver/AppSettings.h"
#include "tests/longrun/CvSupply.h"

#include <QTemporaryDir>

#include <memory>

class QListView;

namespace dorvantel::test {

/// The whole program in its window, on a records service, a stand-in model server and PDF readers that are processes of
/// their own, worked with drops, keys and clicks. What does not happen within a minute throws std::runtime_error that
/// says what it was.
class Recruiter {
public:
    /// What one step took.
    struct Step {
        double ms = 0;
        double workMs = 0; ///< how much of it the window's thread was working
    };

    /// `realCvs`: a folder with PDFs to take in beside the invented ones, or empty.
    explicit Recruiter(const QString& realCvs = {});

    /// Drops the next CV, looks at both pages of the sheet and stores the candidate: from the drop until it is listed.
    Step takeIn();

    /// Searches by a description, for which the five best come: from the press of the button until they are there. Then
    /// opens the first, previews its CV and writes the invitation.
    Step searchByDescription();
    /// Searches by a skill; the answer holds everybody who has it.
    void searchBySkill();
    /// Searches without a criterion; the answer holds everybody.
    void searchForEverybody();

    /// Looks at a candidate from all sides, one time at the first, one time at one in the middle, and deletes it: from
    /// the key until it is gone from the list.
    Step lookAtAndDelete();

    /// Leaves nothing on screen but the empty search, and waits until nothing is under way: the records service has
    /// stored and deleted everything and has a vector of everybody, and no PDF is being read.
    void rest();

    const Model& model() const { return window().model(); }
    qint64 recordsProcess() const { return m_companions.recordsProcessId(); }

private:
    ContentView& window() const { return m_program->window(); }
    QListView& list() const;
    QWidget& find(const QString& name) const;
    void press(const QString& name) const;
    void showTab(const QString& tags, int tab) const;
    void clickRow(int row) const;
    void showSearch() const;
    void correctSheet();
    Step pressSearch();
    void lookAtFirstResult() const;
    void waitForFirstPage(const QWidget& where) const;

    QTemporaryDir m_folder;
    Companions m_companions;
    MailCatcher m_mail;
    AppSettings m_settings;
    std::unique_ptr<DorvantelApp> m_program;
    CvSupply m_cvs;
    int m_takenIn = 0;
    int m_searches = 0;
    int m_deleted = 0;
    int m_repeatedSearches = 0;
};

} // namespace dorvantel::test
