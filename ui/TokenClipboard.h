// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QMimeData>
#include <QString>
#include <QStringList>

#include <memory>

namespace dorvantel {

/// How texts become tokens and tokens texts. A comma, a line break and a tab end a token.

/// Where the last of those characters stands; -1 without one.
qsizetype lastTokenEnd(const QString& text);

/// The texts between them, without the blanks around them and without empty ones.
QStringList tokenTexts(const QString& text);

/// For the clipboard: the tokens themselves for other token fields, their texts for everyone else.
std::unique_ptr<QMimeData> mimeDataOfTokens(const QStringList& tokens);

/// The tokens that were copied, or what a text with at least one end of a token holds. Empty when the data is only a
/// piece of text, or no text at all.
QStringList tokensInMimeData(const QMimeData& data);

} // namespace dorvantel
