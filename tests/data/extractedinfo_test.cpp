// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/ExtractedInfoRepresentation.h"

#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"

#include <gmock/gmock.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::CapturedOutput;
using testing::ElementsAre;
using testing::IsEmpty;

const QString tooDeepLine = u"Could not serialize object to JSON because: "
                            "No se han podido escribir los datos porque tienen más de 512 niveles.\n"_s;

ExtractedInfoRepresentation fromAnswer(const QString& answer) {
    return {answer, u"Estimada Sra. Ferrer:"_s};
}

std::optional<QString> genderOf(const QString& mail) {
    return ExtractedInfoRepresentation(u"{}"_s, mail).gender;
}

// ----- the mail

TEST(ExtractedInfoGender, EstimadoFollowedByANameIsMasculine) {
    EXPECT_EQ(genderOf(u"Estimado Sr. López:"_s), u"Masculino"_s);
    EXPECT_EQ(genderOf(u"Estimado"_s), u"Masculino"_s);
}

TEST(ExtractedInfoGender, EstimadaIsFeminine) {
    EXPECT_EQ(genderOf(u"Estimada Sra. López:"_s), u"Femenino"_s);
}

TEST(ExtractedInfoGender, EstimadoWithBothEndingsLeavesItOpen) {
    EXPECT_EQ(genderOf(u"Estimado/a candidato:"_s), std::nullopt);
}

TEST(ExtractedInfoGender, OnlyTheVeryBeginningOfTheMailCounts) {
    EXPECT_EQ(genderOf(u" Estimado Sr. López:"_s), u"Femenino"_s);
    EXPECT_EQ(genderOf(u"Muy Estimado Sr. López:"_s), u"Femenino"_s);
    EXPECT_EQ(genderOf(u"estimado Sr. López:"_s), u"Femenino"_s);
    EXPECT_EQ(genderOf(u""_s), u"Femenino"_s);
}

TEST(ExtractedInfo, MailIsKeptAsItCame) {
    EXPECT_EQ(ExtractedInfoRepresentation(u"{}"_s, u" Hola\n"_s).invitationMail, u" Hola\n"_s);
}

// ----- answers that are no object

TEST(ExtractedInfo, AnswerThatIsNotJSONLogsTwoLinesAndKeepsTheDefaults) {
    CapturedOutput output;
    const ExtractedInfoRepresentation info(u"Lo siento,\nno puedo."_s, u"Estimado Sr. Ruiz:"_s);
    EXPECT_EQ(output.text(), u"*** Illegal JSON string\n\nJSON = Lo siento,\nno puedo.\n"_s);
    EXPECT_EQ(info.name, std::nullopt);
    EXPECT_EQ(info.profession, std::nullopt);
    EXPECT_EQ(info.email, std::nullopt);
    EXPECT_EQ(info.summarizedText, std::nullopt);
    EXPECT_EQ(info.invitationMail, u"Estimado Sr. Ruiz:"_s);
    EXPECT_EQ(info.gender, u"Masculino"_s);
    EXPECT_THAT(info.softSkills, IsEmpty());
    EXPECT_THAT(info.techSkills, IsEmpty());
    EXPECT_THAT(info.languages, ElementsAre(u"Español"_s));
}

TEST(ExtractedInfo, JSONThatIsNoObjectKeepsTheDefaultsAndLogsNothing) {
    for (const QString& answer :
         {u"[{\"nombre\":\"Ana\"}]"_s, u"\"{\\\"nombre\\\":\\\"Ana\\\"}\""_s, u"12"_s, u"true"_s, u"null"_s}) {
        CapturedOutput output;
        const ExtractedInfoRepresentation info = fromAnswer(answer);
        EXPECT_EQ(output.text(), u""_s);
        EXPECT_EQ(info.name, std::nullopt);
        EXPECT_THAT(info.languages, ElementsAre(u"Español"_s));
    }
}

// ----- texts

TEST(ExtractedInfo, NameIsCapitalizedWordByWord) {
    EXPECT_EQ(fromAnswer(u"{\"nombre\":\"maría josé LÓPEZ\"}"_s).name, u"María José López"_s);
}

TEST(ExtractedInfo, ProfessionAndSummaryAreUnchanged) {
    const auto info = fromAnswer(u"{\"profesion\":\" INGENIERA civil\",\"resumen\":\"Diez años.\\nY más \"}"_s);
    EXPECT_EQ(info.profession, u" INGENIERA civil"_s);
    EXPECT_EQ(info.summarizedText, u"Diez años.\nY más "_s);
}

TEST(ExtractedInfo, EmailIsLowerCasedUnderAnyOfItsThreeKeys) {
    for (const QString& key : {u"email"_s, u"correo"_s, u"correo_electronico"_s}) {
        EXPECT_EQ(fromAnswer(u"{\"%1\":\"Ana.Ruiz@Example.COM\"}"_s.arg(key)).email, u"ana.ruiz@example.com"_s);
    }
}

TEST(ExtractedInfo, EmailComesBeforeItsSpanishKeysWhereverItStands) {
    EXPECT_EQ(fromAnswer(u"{\"email\":\"a@example.com\",\"correo\":\"b@example.com\"}"_s).email, u"a@example.com"_s);
    EXPECT_EQ(fromAnswer(u"{\"correo\":\"b@example.com\",\"email\":null}"_s).email, u"b@example.com"_s);
}

TEST(ExtractedInfo, LongerSpanishKeyOfTheEmailComesBeforeTheShorterOne) {
    EXPECT_EQ(fromAnswer(u"{\"correo_electronico\":\"a@example.com\",\"correo\":\"b@example.com\"}"_s).email,
              u"a@example.com"_s);
}

TEST(ExtractedInfo, NullCountsAsNotThere) {
    const auto info = fromAnswer(u"{\"nombre\":null,\"profesion\":null,\"email\":null,\"resumen\":null,"
                                 "\"habilidades_personales\":null,\"habilidades_tecnicas\":null,\"idiomas\":null}"_s);
    EXPECT_EQ(info.name, std::nullopt);
    EXPECT_EQ(info.profession, std::nullopt);
    EXPECT_EQ(info.email, std::nullopt);
    EXPECT_EQ(info.summarizedText, std::nullopt);
    EXPECT_THAT(info.softSkills, IsEmpty());
    EXPECT_THAT(info.techSkills, IsEmpty());
    EXPECT_THAT(info.languages, ElementsAre(u"Español"_s));
}

TEST(ExtractedInfo, ValuesThatAreNoTextsAreTakenAsTheirJSONText) {
    const auto info =
        fromAnswer(u"{\"nombre\":{\"De\": \"pila\"},\"profesion\":[\"a\", 1],\"resumen\":12.5,\"email\":true}"_s);
    EXPECT_EQ(info.name, u"{\"De\":\"Pila\"}"_s);
    EXPECT_EQ(info.profession, u"[\"a\",1]"_s);
    EXPECT_EQ(info.summarizedText, u"12.5"_s);
    EXPECT_EQ(info.email, u"true"_s);
}

TEST(ExtractedInfo, ValueThatCannotBeRenderedIsLoggedAndUnknown) {
    CapturedOutput output;
    const auto info =
        fromAnswer(u"{\"profesion\":"_s + QString(600, u'[') + QString(600, u']') + u",\"resumen\":\"Sí\"}"_s);
    EXPECT_EQ(output.text(), tooDeepLine);
    EXPECT_EQ(info.profession, u"unknown"_s);
    EXPECT_EQ(info.summarizedText, u"Sí"_s);
}

TEST(ExtractedInfo, OtherKeysAndOtherSpellingsOfTheKeysAreIgnored) {
    const auto info = fromAnswer(
        u"{\"name\":\"Ana\",\"Nombre\":\"Ana\",\"profesión\":\"X\",\"techSkills\":[\"X\"],\"Idiomas\":[\"Inglés\"]}"_s);
    EXPECT_EQ(info.name, std::nullopt);
    EXPECT_EQ(info.profession, std::nullopt);
    EXPECT_THAT(info.techSkills, IsEmpty());
    EXPECT_THAT(info.languages, ElementsAre(u"Español"_s));
}

// ----- lists

TEST(ExtractedInfoLists, EveryElementOfAnArrayIsAppendedAsWritten) {
    const auto info = fromAnswer(
        u"{\"habilidades_personales\":[\"Rigor\",\"rigor\",\"\"],\"habilidades_tecnicas\":[\"SAP FI\",\" x \"]}"_s);
    EXPECT_THAT(info.softSkills, ElementsAre(u"Rigor"_s, u"rigor"_s, u""_s));
    EXPECT_THAT(info.techSkills, ElementsAre(u"SAP FI"_s, u" x "_s));
}

TEST(ExtractedInfoLists, NullElementsAreDroppedAndOthersTakenAsTheirJSONText) {
    const auto info = fromAnswer(u"{\"habilidades_tecnicas\":[null,\"Qt\",5,true,{\"n\":\"C++\"},[\"a\",null]]}"_s);
    EXPECT_THAT(info.techSkills, ElementsAre(u"Qt"_s, u"5"_s, u"true"_s, u"{\"n\":\"C++\"}"_s, u"[\"a\",null]"_s));
}

TEST(ExtractedInfoLists, ElementThatCannotBeRenderedIsUnknownAndTheOthersStay) {
    CapturedOutput output;
    const auto info =
        fromAnswer(u"{\"habilidades_tecnicas\":[\"Qt\","_s + QString(600, u'[') + QString(600, u']') + u",\"C\"]}"_s);
    EXPECT_EQ(output.text(), tooDeepLine);
    EXPECT_THAT(info.techSkills, ElementsAre(u"Qt"_s, u"unknown"_s, u"C"_s));
}

TEST(ExtractedInfoLists, LanguagesAreCapitalizedAndFollowTheSpanishOne) {
    EXPECT_THAT(fromAnswer(u"{\"idiomas\":[\"INGLÉS\",\"chino mandarín\"]}"_s).languages,
                ElementsAre(u"Español"_s, u"Inglés"_s, u"Chino Mandarín"_s));
}

TEST(ExtractedInfoLists, SpanishInAnyCaseIsNotAddedAgain) {
    EXPECT_THAT(fromAnswer(u"{\"idiomas\":[\"español\",\"Español\",\"ESPAÑOL\",\"Español (nativo)\"]}"_s).languages,
                ElementsAre(u"Español"_s, u"Español (Nativo)"_s));
}

TEST(ExtractedInfoLists, AccentWrittenApartIsTheSameLanguageAndTheSameSkill) {
    EXPECT_THAT(fromAnswer(u"{\"idiomas\":[\"espan\u0303ol\"]}"_s).languages, ElementsAre(u"Español"_s));
    EXPECT_THAT(fromAnswer(u"{\"habilidades_tecnicas\":\"Gestión, GESTIO\u0301N\"}"_s).techSkills,
                ElementsAre(u"Gestión"_s));
}

TEST(ExtractedInfoLists, AnswerWithoutLanguagesKeepsTheDefault) {
    EXPECT_THAT(fromAnswer(u"{\"nombre\":\"Ana\"}"_s).languages, ElementsAre(u"Español"_s));
    EXPECT_THAT(fromAnswer(u"{\"idiomas\":[]}"_s).languages, ElementsAre(u"Español"_s));
}

TEST(ExtractedInfoLists, ArrayWrittenAsATextIsReadAgainWithoutRepetitions) {
    const auto info = fromAnswer(u"{\"habilidades_tecnicas\":\"[\\\"Qt\\\", \\\"QT\\\", null, 7, \\\"C++\\\"]\","
                                 "\"idiomas\":\"[\\\"español\\\",\\\"inglés\\\",\\\"INGLÉS\\\"]\"}"_s);
    EXPECT_THAT(info.techSkills, ElementsAre(u"Qt"_s, u"7"_s, u"C++"_s));
    EXPECT_THAT(info.languages, ElementsAre(u"Español"_s, u"Inglés"_s));
}

TEST(ExtractedInfoLists, ArrayWrittenAsATextIsTrimmedAndWithoutEmptyValues) {
    EXPECT_THAT(fromAnswer(u"{\"habilidades_tecnicas\":\"[\\\" Java\\\", \\\"\\\", \\\" \\\"]\"}"_s).techSkills,
                ElementsAre(u"Java"_s));
}

TEST(ExtractedInfoLists, TextIsSplitAtCommasSemicolonsAndLineBreaks) {
    EXPECT_THAT(fromAnswer(u"{\"habilidades_tecnicas\":\"Qt, C++;CMake\\nGit\\r\\nSQL Server ,, \"}"_s).techSkills,
                ElementsAre(u"Qt"_s, u"C++"_s, u"CMake"_s, u"Git"_s, u"SQL Server"_s));
}

TEST(ExtractedInfoLists, TextIsSplitAtBullets) {
    EXPECT_THAT(fromAnswer(u"{\"habilidades_personales\":\"- Motivación\\n- Auto-control\\n * Calma\"}"_s).softSkills,
                ElementsAre(u"Motivación"_s, u"Auto-control"_s, u"Calma"_s));
    EXPECT_THAT(fromAnswer(u"{\"habilidades_tecnicas\":\"• Socorrismo • DEA · RCP\\n▪ UVI*\"}"_s).techSkills,
                ElementsAre(u"Socorrismo"_s, u"DEA"_s, u"RCP"_s, u"UVI*"_s));
}

TEST(ExtractedInfoLists, RaisedDotInsideAWordIsNoBullet) {
    EXPECT_THAT(fromAnswer(u"{\"habilidades_personales\":\"Intel·ligència emocional · Calma\"}"_s).softSkills,
                ElementsAre(u"Intel·ligència emocional"_s, u"Calma"_s));
}

TEST(ExtractedInfoLists, TextWithASingleValueIsThatValue) {
    EXPECT_THAT(fromAnswer(u"{\"habilidades_tecnicas\":\" AutoCAD 3D \"}"_s).techSkills, ElementsAre(u"AutoCAD 3D"_s));
    EXPECT_THAT(fromAnswer(u"{\"habilidades_tecnicas\":\" \\n\"}"_s).techSkills, IsEmpty());
}

TEST(ExtractedInfoLists, SplitTextIsFreedOfRepetitionsInAnyCase) {
    const auto info = fromAnswer(u"{\"habilidades_tecnicas\":\"Excel, EXCEL, excel\","
                                 "\"idiomas\":\"español, inglés; Inglés\"}"_s);
    EXPECT_THAT(info.techSkills, ElementsAre(u"Excel"_s));
    EXPECT_THAT(info.languages, ElementsAre(u"Español"_s, u"Inglés"_s));
}

TEST(ExtractedInfoLists, ArrayInAForeignNotationLosesItsBracketsAndQuotes) {
    EXPECT_THAT(fromAnswer(u"{\"idiomas\":\"['Español', 'inglés', \\\"Francés\\\"]\"}"_s).languages,
                ElementsAre(u"Español"_s, u"Inglés"_s, u"Francés"_s));
    EXPECT_THAT(fromAnswer(u"{\"habilidades_tecnicas\":\"[\"}"_s).techSkills, IsEmpty());
}

TEST(ExtractedInfoLists, SingleValueThatIsNoTextIsAListOfOne) {
    EXPECT_THAT(fromAnswer(u"{\"habilidades_tecnicas\":{\"a\":1,\"b\":2}}"_s).techSkills,
                ElementsAre(u"{\"a\":1,\"b\":2}"_s));
}

// ----- description

TEST(ExtractedInfoDescription, HasOneLinePerFieldWithoutTheGender) {
    const ExtractedInfoRepresentation info(
        u"{\"nombre\":\"Ana Ruiz\",\"profesion\":\"Contable\",\"email\":\"ana@example.com\",\"resumen\":\"Dice "
        u"\\\"sí\\\"\","
        "\"habilidades_personales\":[\"A\",\"B\"],\"habilidades_tecnicas\":[\"X\"],\"idiomas\":[\"Inglés\"]}"_s,
        u"Estimada Sra. Ruiz:"_s);
    EXPECT_EQ(info.description(), u"name: \"Ana Ruiz\"\n"
                                  "profession: \"Contable\"\n"
                                  "email: \"ana@example.com\"\n"
                                  "summarizedText: \"Dice \"sí\"\"\n"
                                  "invitationMail: \"Estimada Sra. Ruiz:\"\n"
                                  "softSkills: [\"A\",\"B\"]\n"
                                  "techSkills: [\"X\"]\n"
                                  "languages: [\"Español\",\"Inglés\"]\n"_s);
}

TEST(ExtractedInfoDescription, ElementsAreWrittenAsTheyAre) {
    ExtractedInfoRepresentation info(u"{\"habilidades_personales\":[\"A\",\"B\"]}"_s, u""_s);
    info.techSkills = {u"el \"mejor\""_s, u"a,b\n"_s};
    EXPECT_TRUE(info.description().endsWith(
        u"softSkills: [\"A\",\"B\"]\ntechSkills: [\"el \"mejor\"\",\"a,b\n\"]\nlanguages: [\"Español\"]\n"_s));
}

TEST(ExtractedInfoDescription, AbsentFieldsReadNil) {
    ExtractedInfoRepresentation info(u"{}"_s, u""_s);
    info.invitationMail.reset();
    info.languages.clear();
    EXPECT_EQ(info.description(), u"name: nil\n"
                                  "profession: nil\n"
                                  "email: nil\n"
                                  "summarizedText: \"nil\"\n"
                                  "invitationMail: \"nil\"\n"
                                  "softSkills: []\n"
                                  "techSkills: []\n"
                                  "languages: []\n"_s);
}

} // namespace
} // namespace dorvantel
