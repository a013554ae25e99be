// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QVariantList>

#include <optional>

namespace dorvantel {

/// What a token field holds and what it is offered: one object per token. The objects of this program's fields are
/// texts; anything else is a programming error, which stops the program where texts are required.
using TokenObjects = QVariantList;

TokenObjects tokenObjects(const QStringList& tokens);

/// All of them as texts, or nothing when one of them is no text.
std::optional<QStringList> allStrings(const TokenObjects& objects);

/// All of them as texts; stops the program when one of them is no text.
QStringList requiredStrings(const TokenObjects& objects);

/// Those of them that are texts.
QStringList stringsAmong(const TokenObjects& objects);

} // namespace dorvantel
