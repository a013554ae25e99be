// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/IntakeState.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

TEST(IntakeState, BeginsWithoutSheetErrorAndDataAndWithADocumentThatIsEmpty) {
    const IntakeState state;
    EXPECT_FALSE(state.sheetIsShowing());
    EXPECT_FALSE(state.dataExtracted());
    EXPECT_EQ(state.processingError(), std::nullopt);
    ASSERT_TRUE(state.pdfDocument());
    EXPECT_EQ(state.pdfDocument()->pageCount(), 0);
    EXPECT_TRUE(state.pdfDocument()->dataRepresentation().isEmpty());
}

TEST(IntakeState, BeginsWithMasculinoAndNothingElse) {
    const SheetValues values = IntakeState().values();
    EXPECT_EQ(values.gender, u"Masculino"_s);
    for (const QString& text :
         {values.name, values.profession, values.email, values.invitationMail, values.summarizedText}) {
        EXPECT_EQ(text, QString());
    }
    for (const CatalogueTokens& tokens : {values.techSkills, values.softSkills, values.languages}) {
        EXPECT_EQ(tokens, CatalogueTokens());
    }
}

} // namespace
} // namespace dorvantel
