// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Record.h"

#include <string>
#include <string_view>

namespace dorvantel::service {

// Answers are built from these appends straight into the block that goes out, because a list may be larger than memory.

/// Appends `"key":` and the text as a JSON string.
void appendJSONField(std::string& out, std::string_view key, std::string_view utf8);

/// Appends the bytes as JSON numbers with commas between them, without brackets.
void appendByteNumbers(std::string& out, std::string_view bytes);

/// Appends the shortest text that reads back as this number.
void appendNumber(std::string& out, float value);

/// The object that list and search answers carry for the CV data.
std::string cvDataJSON(const CVData& data);

/// `{"error": message}`, the one body that every error answer has.
std::string errorJSON(std::string_view message);

} // namespace dorvantel::service
