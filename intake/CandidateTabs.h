// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <array>

namespace dorvantel {

// From which side a stored candidate is looked at. The value of a case is its place in the list of tabs below it.

enum class mainTagTypes { pdf, text, extraer, correo };
enum class extractTagTypes { prompt, json };
enum class correoTagTypes { prompt, json };

struct CandidateTab {
    QStringView rawValue;
    QStringView label;
};

inline constexpr std::array<CandidateTab, 4> mainTabs{
    {{u"pdf", u"PDF"}, {u"text", u"Texto"}, {u"extraer", u"Extraer"}, {u"correo", u"Correo"}}};
inline constexpr std::array<CandidateTab, 2> extractTabs{{{u"prompt", u"Prompt"}, {u"json", u"JSON"}}};
inline constexpr std::array<CandidateTab, 2> correoTabs{{{u"prompt", u"Prompt"}, {u"json", u"JSON"}}};

} // namespace dorvantel
