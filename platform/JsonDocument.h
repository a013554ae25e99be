// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <nlohmann/json.hpp>

#include <expected>

namespace dorvantel {

// JSON whose shape nobody knows beforehand, as a language model writes it. For small texts; bodies with a known shape
// have decoders of their own. Nothing here throws, and any nesting is survived.

/// Whether `text` is one JSON value of any kind.
bool isJson(const QString& text);

/// The value that `text` holds, or the parser's message on one line. Of a repeated key the last value counts.
std::expected<nlohmann::json, QString> parseJson(const QString& text);

/// The value as compact JSON text, or a sentence for people: it cannot be written when it is nested deeper than 512
/// levels.
std::expected<QString, QString> compactJsonText(const nlohmann::json& value);

} // namespace dorvantel
