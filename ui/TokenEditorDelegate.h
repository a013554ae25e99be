// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/TokenObjects.h"

#include <QList>
#include <QString>

namespace dorvantel {

/// What the keyboard asks of the text of a token editor.
enum class TextCommand { DeleteBackward, DeleteForward, InsertNewline, InsertTab };

/// What a step of the user's editing did to a token editor. Deleting letters is typing.
enum class FieldChange { Typing, Deletion };

/// What an entry of a token's menu does to the editor.
enum class TokenAction { RemoveToken };

struct TokenMenuItem {
    QString title;
    TokenAction action;

    bool operator==(const TokenMenuItem&) const = default;
};

/// The decisions of a token editor, asked for on the UI thread while the user works. `field` is what the editor holds
/// at that moment: its tokens, without the text that is still being typed.
class TokenEditorDelegate {
public:
    virtual ~TokenEditorDelegate() = default;

    /// What to offer under the text being typed, best first.
    virtual QStringList completionsForSubstring(const QString& /*substring*/, const TokenObjects& /*field*/) const {
        return {};
    }

    /// Asked before typed, completed or pasted texts become tokens at `index`; the answer is what is really added.
    virtual TokenObjects shouldAdd(const TokenObjects& proposed, qsizetype /*index*/, const TokenObjects& /*field*/) {
        return proposed;
    }

    virtual bool hasMenuForToken(const QString& /*token*/) const { return false; }
    virtual QList<TokenMenuItem> menuForToken(const QString& /*token*/) const { return {}; }

    /// The user changed the text or the tokens; not called for values that the program sets.
    virtual void textDidChange(const TokenObjects& /*field*/, FieldChange /*change*/) {}

    /// The keyboard focus left the editor, and what was typed has been tokenised.
    virtual void textDidEndEditing(const TokenObjects& /*field*/) {}

    /// True when the command was handled and the editor shall do nothing.
    virtual bool doCommand(TextCommand /*command*/) { return false; }
};

} // namespace dorvantel
