// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/BoundTokenField.h"

#include "ui/TokenEditor.h"

#include <QVBoxLayout>

namespace dorvantel {

BoundTokenField::BoundTokenField(const QStringList& tokens, const MakeCoordinator& makeCoordinator, QWidget* parent)
    : QWidget(parent)
    , m_tokens(tokens)
    , m_coordinator(makeCoordinator(TokenBinding(m_tokens, [this] { onListWritten(); })))
    , m_tokenField(new TokenEditor(*m_coordinator, this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_tokenField);
    setFocusProxy(m_tokenField);
    m_tokenField->setObjectValue(tokenObjects(m_tokens));
    QObject::connect(m_tokenField, &TokenEditor::edited, this, &BoundTokenField::onEdited);
}

BoundTokenField::~BoundTokenField() {
    // Before the coordinator, which decides for it.
    delete m_tokenField;
}

void BoundTokenField::setTokens(const QStringList& tokens) {
    m_tokens = tokens;
    if (!m_updateIsDue) {
        m_tokenField->setObjectValue(tokenObjects(m_tokens));
    }
}

void BoundTokenField::setFieldName(const QString& name) {
    setAccessibleName(name);
    m_tokenField->setFieldName(name);
}

void BoundTokenField::onListWritten() {
    // The editor is in the middle of a step; what it shows is brought in line with the list when the step is done.
    m_updateIsDue = true;
    Q_EMIT tokensChanged(m_tokens);
}

void BoundTokenField::onEdited() {
    if (m_updateIsDue) {
        m_updateIsDue = false;
        m_tokenField->setTokens(tokenObjects(m_tokens));
    }
}

} // namespace dorvantel
