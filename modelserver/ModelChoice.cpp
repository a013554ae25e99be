// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/ModelChoice.h"

#include "modelserver/ModelDetailView.h"
#include "modelserver/ModelPicker.h"

#include <QHBoxLayout>

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

ModelChoice::ModelChoice(const Texts& texts, QWidget* parent)
    : FormSection(parent)
    , m_noCandidates(
          new MarkedRow(u"info.circle"_s, colours::orange, secondaryLabel(texts.noCandidates, TextStyle::Caption)))
    , m_pickerRow(new QWidget)
    , m_picker(new ModelPicker(texts.pickerTitle)) {
    m_noCandidates->setObjectName(u"noCandidates"_s);
    m_picker->setObjectName(u"picker"_s);

    auto* row = new QHBoxLayout(m_pickerRow);
    row->setContentsMargins(0, 0, 0, 0);
    QLabel* title = textLabel(texts.pickerTitle, TextStyle::Body);
    title->setWordWrap(false);
    row->addWidget(title);
    row->addStretch(1);
    row->addWidget(m_picker);

    add(textLabel(texts.heading, TextStyle::Headline));
    add(secondaryLabel(texts.caption, TextStyle::Caption));
    add(m_noCandidates);
    add(m_pickerRow);
    m_pickerRow->hide();

    connect(m_picker, &ModelPicker::chosen, this, [this] {
        showDetails();
        Q_EMIT selectionChanged();
    });
}

void ModelChoice::setCandidates(const QList<OllamaModel>& candidates) {
    m_candidates = candidates;
    m_noCandidates->setVisible(candidates.isEmpty());
    m_pickerRow->setVisible(!candidates.isEmpty());
    m_picker->setModels(candidates);
    showDetails();
}

void ModelChoice::setSelection(const std::optional<QString>& name) {
    if (name == selection()) {
        return;
    }
    m_picker->setSelection(name);
    showDetails();
    Q_EMIT selectionChanged();
}

const std::optional<QString>& ModelChoice::selection() const {
    return m_picker->selection();
}

void ModelChoice::showDetails() {
    const auto chosen =
        std::ranges::find_if(m_candidates, [this](const OllamaModel& model) { return selection() == model.name; });
    if (m_details && chosen != m_candidates.end() && m_details->model() == *chosen) {
        return;
    }
    delete std::exchange(m_details, nullptr);
    if (chosen != m_candidates.end()) {
        m_details = new ModelDetailView(*chosen);
        m_details->setObjectName(u"details"_s);
        add(m_details);
    }
}

} // namespace dorvantel
