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
}

TEST(CandidateTabs, ValueOfACaseIsItsPlace) {
    EXPECT_EQ(mainTabs[static_cast<std::size_t>(mainTagTypes::pdf)].rawValue, u"pdf");
    EXPECT_EQ(mainTabs[static_cast<std::size_t>(mainTagTypes::text)].rawValue, u"text");
    EXPECT_EQ(mainTabs[static_cast<std::size_t>(mainTagTypes::extraer)].rawValue, u"extraer");
    EXPECT_EQ(mainTabs[static_cast<std::size_t>(mainTagTypes::correo)].rawValue, u"correo");
    EXPECT_EQ(extractTabs[static_cast<std::size_t>(extractTagTypes::json)].rawValue, u"json");
    EXPECT_EQ(correoTabs[static_cast<std::size_t>(correoTagTypes::json)].rawValue, u"json");
}

} // namespace
} // namespace dorvantel
