// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <expected>

namespace dorvantel {

/// Without the spaces and tabs at both ends; line breaks stay.
QString withoutOuterBlanks(const QString& text);

/// The address of a model server as it is to be stored, or the sentence that tells the user what is wrong with it.
/// The scheme is compared letter by letter: "HTTP://" is refused.
std::expected<QString, QString> checkedServerAddress(const QString& typed);

} // namespace dorvantel
