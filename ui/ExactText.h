// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QPlainTextEdit>
#include <QTextDocument>

namespace dorvantel {

/// What stands in an editor, character for character. Its plain text would turn no-break spaces into blanks and line
/// separators into line breaks, and so change what nobody touched.
inline QString exactText(const QPlainTextEdit& editor) {
    return editor.document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
}

} // namespace dorvantel
