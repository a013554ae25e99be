// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "intake/CandidateTabs.h"

#include <QDialog>

class QStackedWidget;

namespace dorvantel {

class IntakeState;
class Model;
class RecordsService;

/// The sheet over the main window in which the recruiter checks and corrects what was read from a CV. Shows a progress
/// view until the state says that the data has been extracted, then the data in two pages. Edits the state directly and
/// holds no copy. OK makes the record, puts it into the list and sends it to the records service; Cancel, Escape and
/// the window's close button leave the sheet, also from the progress view. Made by the main window for each CV; lives
/// until the state says that it no longer shows.
class ValidationSheetView : public QDialog {
    Q_OBJECT

public:
    ValidationSheetView(IntakeState& state, Model& model, RecordsService& service, QWidget* parent);

    /// The page that is shown, or will be.
    valuetypesTagTypes valuetype() const { return m_valuetype; }

    /// What Escape and the close button do.
    void reject() override;

private:
    void showData();
    QWidget* makeDataView();
    void leave();
    void insertValidatedRecord();

    IntakeState& m_state;
    Model& m_model;
    RecordsService& m_service;
    QStackedWidget* m_content;
    valuetypesTagTypes m_valuetype = valuetypesTagTypes::extracted;
};

} // namespace dorvantel
