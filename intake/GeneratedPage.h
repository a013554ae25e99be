// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace dorvantel {

class FormGrid;
class IntakeState;

/// The sheet's page "Datos generados": the summary and the invitation mail. Edits the state directly; made anew when a
/// new extraction replaces the values.
class GeneratedPage : public QWidget {
    Q_OBJECT

public:
    explicit GeneratedPage(IntakeState& state, QWidget* parent = nullptr);

private:
    void addEditor(FormGrid& grid, const QString& label, const QString& objectName, QString& text);
};

} // namespace dorvantel
