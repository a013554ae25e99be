// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TokenField2Coordinator.h"

#include "platform/Text.h"

#include <QSet>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

QSet<QString> caselessForms(const TokenObjects& field) {
    QSet<QString> forms;
    for (const QString& token : requiredStrings(field)) {
        forms.insert(caselessForm(token));
    }
    return forms;
}

} // namespace

TokenField2Coordinator::TokenField2Coordinator(TokenBinding parent, const QStringList& validValuesArray)
    : m_parent(std::move(parent)) {
    m_validValues.reserve(validValuesArray.size());
    for (const QString& value : validValuesArray) {
        m_validValues.insert(caselessForm(value), value);
    }
}

QStringList TokenField2Coordinator::completionsForSubstring(const QString& substring, const TokenObjects& field) const {
    const QSet<QString> present = caselessForms(field);
    const QString prefix = caselessForm(substring);
    QStringList completions;
    for (auto entry = m_validValues.cbegin(); entry != m_validValues.cend(); ++entry) {
        if (entry.key().startsWith(prefix) && !present.contains(entry.key())) {
            completions.append(entry.value());
        }
    }
    return completions;
}

TokenObjects TokenField2Coordinator::shouldAdd(const TokenObjects& proposed, qsizetype, const TokenObjects& field) {
    const std::optional<QStringList> strings = allStrings(proposed);
    if (!strings) {
        return {};
    }
    // Collected once: a value proposed twice in one go is added twice.
    const QSet<QString> present = caselessForms(field);
    QStringList accepted;
    for (const QString& string : *strings) {
        if (m_validValues.isEmpty()) {
            accepted.append(string);
            continue;
        }
        const QString form = caselessForm(string);
        const auto entry = m_validValues.constFind(form);
        if (entry != m_validValues.cend() && !present.contains(form)) {
            accepted.append(*entry);
        }
    }
    for (const QString& token : accepted) {
        m_parent.append({token});
    }
    return tokenObjects(accepted);
}

bool TokenField2Coordinator::hasMenuForToken(const QString&) const {
    return true;
}

QList<TokenMenuItem> TokenField2Coordinator::menuForToken(const QString&) const {
    return {{u"Eliminar token"_s, TokenAction::RemoveToken}};
}

void TokenField2Coordinator::textDidChange(const TokenObjects& field, FieldChange change) {
    // Additions were written when they were accepted; only a deletion has news. A field whose token was taken by its
    // menu holds fewer too, and a letter typed there must not decide what becomes of the list.
    if (change == FieldChange::Deletion && field.size() < m_parent.tokens().size()) {
        m_parent.set(requiredStrings(field));
    }
}

} // namespace dorvantel
