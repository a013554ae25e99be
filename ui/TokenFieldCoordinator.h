// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/TokenBinding.h"
#include "ui/TokenEditorDelegate.h"

#include <QSet>

namespace dorvantel {

/// The rules of the strict token field: only exact members of the catalogue become tokens. Needs no window.
class TokenFieldCoordinator final : public TokenEditorDelegate {
public:
    TokenFieldCoordinator(TokenBinding parent, const QStringList& validValuesArray);

    /// Every catalogue value that begins with the substring in any case, in catalogue order, chosen or not.
    QStringList completionsForSubstring(const QString& substring, const TokenObjects& field) const override;
    TokenObjects shouldAdd(const TokenObjects& proposed, qsizetype index, const TokenObjects& field) override;
    void textDidChange(const TokenObjects& field, FieldChange change) override;
    void textDidEndEditing(const TokenObjects& field) override;
    bool doCommand(TextCommand command) override;

private:
    QStringList valid(QStringList tokens) const;

    TokenBinding m_parent;
    QStringList m_validValuesArray;
    QStringList m_caselessValues; ///< in step with m_validValuesArray, so that typing need not fold the catalogue
    QSet<QString> m_validValuesSet;
    bool m_didPressDelete = false;
};

} // namespace dorvantel
