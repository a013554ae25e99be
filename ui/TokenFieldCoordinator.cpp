// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TokenFieldCoordinator.h"

#include "platform/Text.h"

namespace dorvantel {

namespace {

/// Exact but for how an accent is written: composed and separate are the same text.
QString exactForm(const QString& token) {
    return token.normalized(QString::NormalizationForm_C);
}

} // namespace

TokenFieldCoordinator::TokenFieldCoordinator(TokenBinding parent, const QStringList& validValuesArray)
    : m_parent(std::move(parent))
    , m_validValuesArray(validValuesArray) {
    m_caselessValues.reserve(validValuesArray.size());
    m_validValuesSet.reserve(validValuesArray.size());
    for (const QString& value : validValuesArray) {
        m_caselessValues.append(caselessForm(value));
        m_validValuesSet.insert(exactForm(value));
    }
}

QStringList TokenFieldCoordinator::completionsForSubstring(const QString& substring, const TokenObjects&) const {
    const QString prefix = caselessForm(substring);
    QStringList completions;
    for (qsizetype i = 0; i < m_caselessValues.size(); ++i) {
        if (m_caselessValues[i].startsWith(prefix)) {
            completions.append(m_validValuesArray[i]);
        }
    }
    return completions;
}

TokenObjects TokenFieldCoordinator::shouldAdd(const TokenObjects& proposed, qsizetype, const TokenObjects&) {
    const QStringList kept = valid(allStrings(proposed).value_or(QStringList()));
    m_parent.append(kept);
    return tokenObjects(kept);
}

void TokenFieldCoordinator::textDidChange(const TokenObjects& field, FieldChange) {
    if (m_didPressDelete) {
        m_parent.set(valid(requiredStrings(field)));
        m_didPressDelete = false;
    }
}

void TokenFieldCoordinator::textDidEndEditing(const TokenObjects& field) {
    m_parent.set(stringsAmong(field));
}

bool TokenFieldCoordinator::doCommand(TextCommand command) {
    if (command == TextCommand::DeleteBackward) {
        m_didPressDelete = true;
    }
    return false;
}

QStringList TokenFieldCoordinator::valid(QStringList tokens) const {
    tokens.removeIf([this](const QString& token) { return !m_validValuesSet.contains(exactForm(token)); });
    return tokens;
}

} // namespace dorvantel
