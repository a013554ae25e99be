// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/CandidateTabs.h"

#include "tests/support/Print.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

template <std::size_t Count>
QStringList named(const std::array<CandidateTab, Count>& tabs) {
    QStringList names;
    for (const CandidateTab& tab : tabs) {
        names.append(tab.rawValue.toString() + u' ' + tab.label.toString());
    }
    return names;
}

TEST(CandidateTabs, RawValuesAndLabelsAreInCaseOrder) {
    EXPECT_EQ(named(mainTabs), (QStringList{u"pdf PDF"_s, u"text Texto"_s, u"extraer Extraer"_s, u"correo Correo"_s}));
    EXPECT_EQ(named(extractTabs), (QStringList{u"prompt Prompt"_s, u"json JSON"_s}));
    EXPECT_EQ(named(correoTabs), (QStringList{u"prompt Prompt"_s, u"json JSON"_s}));
    EXPECT_EQ(named(valuetypesTabs), (QStringList{u"extracted Datos extraídos"_s, u"generated Datos generados"_s}));
}

TEST(CandidateTabs, LabelsAreThoseOfTheTabsInTheirOrder) {
    EXPECT_EQ(tabLabels(mainTabs), (QStringList{u"PDF"_s, u"Texto"_s, u"Extraer"_s, u"Correo"_s}));
}

TEST(CandidateTabs, ValueOfACaseIsItsPlace) {
    EXPECT_EQ(mainTabs[static_cast<std::size_t>(mainTagTypes::pdf)].rawValue, u"pdf");
    EXPECT_EQ(mainTabs[static_cast<std::size_t>(mainTagTypes::text)].rawValue, u"text");
    EXPECT_EQ(mainTabs[static_cast<std::size_t>(mainTagTypes::extraer)].rawValue, u"extraer");
    EXPECT_EQ(mainTabs[static_cast<std::size_t>(mainTagTypes::correo)].rawValue, u"correo");
    EXPECT_EQ(extractTabs[static_cast<std::size_t>(extractTagTypes::prompt)].rawValue, u"prompt");
    EXPECT_EQ(correoTabs[static_cast<std::size_t>(correoTagTypes::prompt)].rawValue, u"prompt");
    EXPECT_EQ(valuetypesTabs[static_cast<std::size_t>(valuetypesTagTypes::extracted)].rawValue, u"extracted");
    EXPECT_EQ(valuetypesTabs[static_cast<std::size_t>(valuetypesTagTypes::generated)].rawValue, u"generated");
    EXPECT_EQ(extractTabs[static_cast<std::size_t>(extractTagTypes::json)].rawValue, u"json");
    EXPECT_EQ(correoTabs[static_cast<std::size_t>(correoTagTypes::json)].rawValue, u"json");
}

} // namespace
} // namespace dorvantel
