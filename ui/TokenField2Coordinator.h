// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/TokenBinding.h"
#include "ui/TokenEditorDelegate.h"

#include <QHash>

namespace dorvantel {

/// The rules of the lenient token field: case does not matter, the catalogue's spelling is what is stored, a value is
/// there once. Needs no window.
class TokenField2Coordinator final : public TokenEditorDelegate {
public:
    TokenField2Coordinator(TokenBinding parent, const QStringList& validValuesArray);

    /// The catalogue values that begin with the substring in any case and are not in the field yet, in no order.
    QStringList completionsForSubstring(const QString& substring, const TokenObjects& field) const override;
    TokenObjects shouldAdd(const TokenObjects& proposed, qsizetype index, const TokenObjects& field) override;
    bool hasMenuForToken(const QString& token) const override;
    QList<TokenMenuItem> menuForToken(const QString& token) const override;
    void textDidChange(const TokenObjects& field, FieldChange change) override;

private:
    TokenBinding m_parent;
    QHash<QString, QString> m_validValues; ///< from the caseless form to the catalogue's spelling
};

} // namespace dorvantel
