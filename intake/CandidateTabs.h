// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QStringView>

#include <array>
#include <span>

namespace dorvantel {

// From which side a candidate is looked at. The value of a case is its place in the list of tabs below it.

/// A stored candidate.
enum class mainTagTypes { pdf, text, extraer, correo };
enum class extractTagTypes { prompt, json };
enum class correoTagTypes { prompt, json };

/// A candidate that is being validated.
enum class valuetypesTagTypes { extracted, generated };

struct CandidateTab {
    QStringView rawValue;
    QStringView label;
};

inline constexpr std::array<CandidateTab, 4> mainTabs{
    {{u"pdf", u"PDF"}, {u"text", u"Texto"}, {u"extraer", u"Extraer"}, {u"correo", u"Correo"}}};
inline constexpr std::array<CandidateTab, 2> extractTabs{{{u"prompt", u"Prompt"}, {u"json", u"JSON"}}};
inline constexpr std::array<CandidateTab, 2> correoTabs{{{u"prompt", u"Prompt"}, {u"json", u"JSON"}}};
inline constexpr std::array<CandidateTab, 2> valuetypesTabs{
    {{u"extracted", u"Datos extraídos"}, {u"generated", u"Datos generados"}}};

inline QStringList tabLabels(std::span<const CandidateTab> tabs) {
    QStringList labels;
    for (const CandidateTab& tab : tabs) {
        labels.append(tab.label.toString());
    }
    return labels;
}

} // namespace dorvantel
