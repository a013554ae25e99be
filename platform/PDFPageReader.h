// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>

#include <optional>

namespace dorvantel {

/// The text of every page of a PDF, in order, as `ordinaryPageText` gives it (empty for a page without text). Nothing
/// when the bytes do not open (not a PDF, broken, no pages, protected by a password), when there are more than 20 000
/// pages, or when the pages hold more than 32 million UTF-16 units of text.
///
/// The PDF library runs here, on bytes that cannot be trusted: it may never return, eat all memory or crash. Only a
/// process of its own with limits calls this.
std::optional<QStringList> readPageTexts(QByteArray bytes);

} // namespace dorvantel
