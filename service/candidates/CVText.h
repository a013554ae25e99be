// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Record.h"

#include <expected>
#include <string>
#include <string_view>

namespace dorvantel::service {

/// Reads the CV data of an insert. The client builds that text by hand, with the escapes of a list that is shown for
/// debugging: beside JSON's own, `\'`, `\0` and `\u{1F600}` occur inside strings. They are read as they were meant, so
/// that no skill is lost; ordinary JSON is read as well. The four keys are required, others are ignored. The error is a
/// sentence that quotes nothing of the text.
std::expected<CVData, std::string> readCVText(std::string_view text);

/// The same text with only the escapes that JSON knows. The error names the byte offset of what cannot be read.
std::expected<std::string, std::string> strictJSON(std::string_view text);

} // namespace dorvantel::service
