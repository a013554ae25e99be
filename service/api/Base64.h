// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dorvantel::service {

// The standard alphabet, padded, without line breaks. A PDF takes this way in and out with every insert, and several
// times as fast as through Qt's.

/// Nothing when the text is no base64.
std::optional<std::string> decodedBase64(std::string_view text);

void appendBase64(std::string& out, std::string_view bytes);

} // namespace dorvantel::service
