// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace dorvantel::service {

/// `text` without what tells whose it is, so that a vector made of it says the same of everybody with the same career:
///
/// - the candidate's name: two or more of its words together in any case, one alone where it is written as a name (not
///   in lower case, unless the whole text is). Accents do not count. Small words such as "de la" go only together with
///   the word of the name that they belong to; initials, titles and the article go with the name ("la Sra. M. García");
/// - every e-mail and web address, the latter without a scheme only where it is made of the name, as are accounts
///   ("site.example/ana", "@ana", "ana_garcia"), and the part of the candidate's own e-mail before the @ where it is
///   made of the name.
///
/// A word of the name that stands in lower case by itself ("torres de telecomunicación" of somebody called Torres) is
/// taken for the ordinary word and stays. The time is that of the text's length. All texts are UTF-8. Any thread.
std::string withoutNameAndEmail(std::string_view text, std::string_view name, std::string_view email);

} // namespace dorvantel::service
