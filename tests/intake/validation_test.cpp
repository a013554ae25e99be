// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/Validation.h"

#include "tests/support/Print.h"

#include <gmock/gmock.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

SheetValues filledIn() {
    return {.gender = u"Femenino"_s,
            .name = u"Lucía Ferrer"_s,
            .profession = u"Diseñadora"_s,
            .email = u"lucia@example.com"_s,
            .invitationMail = u"Estimada Sra. Ferrer:"_s,
            .summarizedText = u"Diez años de oficio"_s,
            .techSkills = {.known = {u"Figma"_s}, .unknown = {u"figma"_s, u"Affinity"_s}},
            .softSkills = {.known = {u"Rigor"_s}, .unknown = {u"Calma"_s}},
            .languages = {.known = {u"Español"_s}, .unknown = {u"Gallego"_s}}};
}

TEST(ValidatedRecord, TakesEverythingFromTheSheet) {
    const DBRecordPointer record = validatedRecord(filledIn(), "%PDF"_ba);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->name, u"Lucía Ferrer"_s);
    EXPECT_EQ(record->profession, u"Diseñadora"_s);
    EXPECT_EQ(record->email, u"lucia@example.com"_s);
    EXPECT_EQ(record->summarizedText, u"Diez años de oficio"_s);
    EXPECT_EQ(record->invitationMail, u"Estimada Sra. Ferrer:"_s);
    EXPECT_EQ(record->file, "%PDF"_ba);
    EXPECT_TRUE(record->pdfLoadCallbacks.empty());
}

TEST(ValidatedRecord, NameIsTrimmedAndCapitalised) {
    SheetValues values = filledIn();
    values.name = u"  maría josé LÓPEZ "_s;
    EXPECT_EQ(validatedRecord(values, {})->name, u"María José López"_s);
}

TEST(ValidatedRecord, EmailIsTrimmedAndLowerCased) {
    SheetValues values = filledIn();
    values.email = u" \tLucia.FERRER@Example.Com\n"_s;
    EXPECT_EQ(validatedRecord(values, {})->email, u"lucia.ferrer@example.com"_s);
}

TEST(ValidatedRecord, ProfessionSummaryAndMailStayAsTyped) {
    SheetValues values = filledIn();
    values.profession = u" diseñadora  "_s;
    values.summarizedText = u"\nDiez años \n"_s;
    values.invitationMail = u" Estimada\n\n"_s;
    const DBRecordPointer record = validatedRecord(values, {});
    EXPECT_EQ(record->profession, u" diseñadora  "_s);
    EXPECT_EQ(record->summarizedText, u"\nDiez años \n"_s);
    EXPECT_EQ(record->invitationMail, u" Estimada\n\n"_s);
}

TEST(ValidatedRecord, ListsAreTheKnownValuesFollowedByTheNewOnesUnsortedAndWithRepetitions) {
    const DBRecordPointer record = validatedRecord(filledIn(), {});
    EXPECT_THAT(record->jsonCVData.techSkills, ElementsAre(u"Figma"_s, u"figma"_s, u"Affinity"_s));
    EXPECT_THAT(record->jsonCVData.softSkills, ElementsAre(u"Rigor"_s, u"Calma"_s));
    EXPECT_THAT(record->jsonCVData.languages, ElementsAre(u"Español"_s, u"Gallego"_s));
}

TEST(ValidatedRecord, GenderIsTakenAsItIs) {
    for (const QString& gender : {u"Masculino"_s, u"Femenino"_s, u"otro"_s, u""_s}) {
        SheetValues values = filledIn();
        values.gender = gender;
        EXPECT_EQ(validatedRecord(values, {})->jsonCVData.gender, gender);
    }
}

TEST(ValidatedRecord, EmptyListsAreNoObstacle) {
    SheetValues values = filledIn();
    values.techSkills = values.softSkills = values.languages = {};
    EXPECT_TRUE(validatedRecord(values, {}));
}

TEST(ValidatedRecord, WithoutAPDFThereIsNoFile) {
    EXPECT_EQ(validatedRecord(filledIn(), {})->file, std::nullopt);
}

TEST(ValidatedRecord, EveryRecordHasAnIdentityOfItsOwn) {
    EXPECT_NE(validatedRecord(filledIn(), {})->id, validatedRecord(filledIn(), {})->id);
}

TEST(ValidatedRecord, AnyRequiredFieldThatIsEmptyOrBlankIsRefused) {
    for (QString SheetValues::* field : {&SheetValues::name, &SheetValues::profession, &SheetValues::email,
                                         &SheetValues::summarizedText, &SheetValues::invitationMail}) {
        for (const QString& text : {u""_s, u"   "_s, u"\n\t\r\n"_s, u"\u00A0\u2028"_s}) {
            SheetValues values = filledIn();
            values.*field = text;
            EXPECT_EQ(validatedRecord(values, "%PDF"_ba), nullptr);
        }
    }
}

TEST(ValidatedRecord, IsReadyToBeInserted) {
    EXPECT_EQ(validatedRecord(filledIn(), {})->toDBRecord().jsonCVData,
              uR"({"gender":"Femenino","softSkills":["Rigor", "Calma"],"techSkills":["Figma", "figma", "Affinity"],)"
              uR"("languages":["Español", "Gallego"]})"_s);
}

TEST(NameWarning, ShowsWhenTheNameIsEmptyWhateverTheOtherFieldsHold) {
    SheetValues values = filledIn();
    values.name.clear();
    EXPECT_TRUE(showsNameWarning(values));
}

TEST(NameWarning, IsHiddenOnceANameIsTypedEvenWhenTheOtherFieldsAreEmpty) {
    SheetValues values;
    values.name = u"A"_s;
    EXPECT_FALSE(showsNameWarning(values));
}

TEST(NameWarning, BlankNameIsNotEmpty) {
    SheetValues values;
    values.name = u" "_s;
    EXPECT_FALSE(showsNameWarning(values));
}

} // namespace
} // namespace dorvantel
