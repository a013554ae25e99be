// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace dorvantel {

/// A list of texts as it would stand in source text: `["a", "Español", "O\'Reilly"]`, `[]` without elements. Nothing in
/// an element can break its line. Any thread.
QString listLiteral(const QStringList& texts);

} // namespace dorvantel
