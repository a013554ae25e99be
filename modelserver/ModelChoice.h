// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "modelserver/SettingsRows.h"
#include "modelserver/WireTypes.h"

#include <optional>

namespace dorvantel {

class ModelDetailView;
class ModelPicker;

/// The section of a page that asks which of the server's models to use for one purpose. Offers a picker with the
/// details of the chosen model, or says that there is nothing to pick. A selection that is not among the candidates
/// stays selected, without details, until the user chooses another.
class ModelChoice : public FormSection {
    Q_OBJECT

public:
    struct Texts {
        QString heading;
        QString caption;
        QString pickerTitle;
        QString noCandidates;
    };
    explicit ModelChoice(const Texts& texts, QWidget* parent = nullptr);

    void setCandidates(const QList<OllamaModel>& candidates);
    void setSelection(const std::optional<QString>& name);
    const std::optional<QString>& selection() const;

Q_SIGNALS:
    void selectionChanged();

private:
    void showDetails();

    QList<OllamaModel> m_candidates;
    MarkedRow* m_noCandidates;
    QWidget* m_pickerRow;
    ModelPicker* m_picker;
    ModelDetailView* m_details = nullptr;
};

} // namespace dorvantel
