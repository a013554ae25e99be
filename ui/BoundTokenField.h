// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/TokenBinding.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace dorvantel {

class TokenEditor;
class TokenEditorDelegate;

/// What both kinds of token field have in common: a token editor in step with the owner's list of tokens, decided for
/// by a coordinator. Lives on the UI thread.
class BoundTokenField : public QWidget {
    Q_OBJECT

public:
    ~BoundTokenField() override;

    /// The owner's list as it is now.
    const QStringList& tokens() const { return m_tokens; }

    /// The owner's list changed: the field shows `tokens` instead of whatever it shows. Not reported back. May be
    /// called from tokensChanged(); what is being typed then stays.
    void setTokens(const QStringList& tokens);

    /// What screen readers call the field.
    void setFieldName(const QString& name);

    /// The control shown, made once.
    TokenEditor* tokenField() const { return m_tokenField; }

Q_SIGNALS:
    /// The user's editing changed the owner's list.
    void tokensChanged(const QStringList& tokens);

protected:
    using MakeCoordinator = std::function<std::unique_ptr<TokenEditorDelegate>(TokenBinding)>;
    BoundTokenField(const QStringList& tokens, const MakeCoordinator& makeCoordinator, QWidget* parent);

private:
    void onListWritten();
    void onEdited();

    QStringList m_tokens;
    std::unique_ptr<TokenEditorDelegate> m_coordinator;
    TokenEditor* m_tokenField;
    bool m_updateIsDue = false;
};

} // namespace dorvantel
