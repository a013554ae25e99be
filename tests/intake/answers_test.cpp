// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/Answers.h"

#include "platform/JsonDocument.h"

#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"

#include <gmock/gmock.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::CapturedOutput;

const QString complete =
    uR"({"name":"ana RUIZ","profession":"Contable","email":"Ana@Example.com","summarizedText":"Diez años",)"
    uR"("softSkills":["Rigor","Rigor"],"techSkills":["SAP","excel"],"languages":["Español","inglés"]})"_s;

ExtractedFields completeFields() {
    return {.name = u"ana RUIZ"_s,
            .profession = u"Contable"_s,
            .email = u"Ana@Example.com"_s,
            .summarizedText = u"Diez años"_s,
            .techSkills = {u"SAP"_s, u"excel"_s},
            .softSkills = {u"Rigor"_s, u"Rigor"_s},
            .languages = {u"Español"_s, u"inglés"_s}};
}

/// What remains when nothing of an answer could be used.
ExtractedFields nothingButSpanish() {
    ExtractedFields fields;
    fields.languages = {u"Español"_s};
    return fields;
}

/// Parses `answer` and expects exactly `lines` on standard output.
ExtractedFields parsed(const QString& answer, const QStringList& lines) {
    CapturedOutput output;
    ExtractedFields fields = parseExtractionAnswer(answer);
    EXPECT_EQ(output.lines(), lines) << answer.toStdString();
    return fields;
}

const QString validLine = u"Data extraction response (valid JSON): "_s;
const QString fallbackLine = u"Falling back to ExtractedInfoRepresentation parsing"_s;

// ----- the extraction answer, read directly

TEST(ParseExtractionAnswer, CleanAnswerIsLoggedAndTakenAsItIs) {
    EXPECT_EQ(parsed(complete, {validLine + complete}), completeFields());
}

TEST(ParseExtractionAnswer, LoggedTextIsTheTrimmedOne) {
    EXPECT_EQ(parsed(u"\n\n "_s + complete + u"\r\n"_s, {validLine + complete}), completeFields());
}

TEST(ParseExtractionAnswer, LineBreaksInsideTheAnswerAreLoggedAsTheyAre) {
    CapturedOutput output;
    parseExtractionAnswer(u"{\n  \"name\": \"Ana\"\n}\n"_s);
    EXPECT_EQ(output.text(), validLine + u"{\n  \"name\": \"Ana\"\n}\n"_s);
}

TEST(ParseExtractionAnswer, FencedAnswerIsReadWithoutAnyLine) {
    EXPECT_EQ(parsed(u"```json\n"_s + complete + u"\n```"_s, {}), completeFields());
}

TEST(ParseExtractionAnswer, FenceWithoutATagIsReadWithoutAnyLine) {
    EXPECT_EQ(parsed(u" ```"_s + complete + u"``` \n"_s, {}), completeFields());
}

TEST(ParseExtractionAnswer, FenceInsideATaggedFenceIsTakenOffToo) {
    EXPECT_EQ(parsed(u"```json```"_s + complete, {}), completeFields());
}

TEST(ParseExtractionAnswer, FenceAtOneEndOnlyIsTakenOff) {
    EXPECT_EQ(parsed(u"```json\n"_s + complete, {}), completeFields());
    EXPECT_EQ(parsed(complete + u"\n```"_s, {}), completeFields());
}

TEST(ParseExtractionAnswer, NumberAmongSkillsEmptiesThatListOnly) {
    ExtractedFields expected = completeFields();
    expected.techSkills.clear();
    QString answer = complete;
    answer.replace(u"[\"SAP\",\"excel\"]"_s, u"[\"SAP\",7]"_s);
    EXPECT_EQ(parsed(answer, {validLine + answer}), expected);
}

TEST(ParseExtractionAnswer, EachWrongTypeCountsAsMissingWhileTheOthersStay) {
    const QString answer = uR"({"name":1,"profession":null,"email":["a"],"summarizedText":{"a":1},)"
                           uR"("softSkills":"Rigor","techSkills":{"a":"b"},"languages":[["Español"]]})"_s;
    EXPECT_EQ(parsed(answer, {validLine + answer}), ExtractedFields());
}

TEST(ParseExtractionAnswer, EmptyObjectGivesEmptyFieldsWithoutTheFallback) {
    EXPECT_EQ(parsed(u"{}"_s, {validLine + u"{}"_s}), ExtractedFields());
}

TEST(ParseExtractionAnswer, OtherKeysAreIgnored) {
    const QString answer = uR"({"name":"Ana","gender":"Masculino","invitationMail":"Hola","nombre":"Luis"})"_s;
    ExtractedFields expected;
    expected.name = u"Ana"_s;
    EXPECT_EQ(parsed(answer, {validLine + answer}), expected);
}

// ----- the extraction answer, read leniently

TEST(ParseExtractionAnswer, ArrayGoesToTheFallbackWithoutAParseError) {
    EXPECT_EQ(parsed(u"[1]"_s, {validLine + u"[1]"_s, fallbackLine}), nothingButSpanish());
}

TEST(ParseExtractionAnswer, OtherValuesThatAreNoObjectGoToTheFallbackToo) {
    for (const QString& answer : {u"null"_s, u"12"_s, u"\"{}\""_s}) {
        EXPECT_EQ(parsed(answer, {validLine + answer, fallbackLine}), nothingButSpanish());
    }
}

TEST(ParseExtractionAnswer, ProseIsLoggedStepByStepInOrder) {
    CapturedOutput output;
    EXPECT_EQ(parseExtractionAnswer(u" No puedo. \n"_s), nothingButSpanish());
    EXPECT_EQ(output.text(), u"Direct JSON parsing failed: "_s + parseJson(u"No puedo."_s).error() +
                                 u"\n"
                                 "Falling back to ExtractedInfoRepresentation parsing\n"
                                 "*** Illegal JSON string\n"
                                 "\n"
                                 "JSON = No puedo.\n"_s);
}

TEST(ParseExtractionAnswer, FallbackIsGivenTheTextWithoutFences) {
    CapturedOutput output;
    EXPECT_EQ(parseExtractionAnswer(u"```json\n{\"name\":\n```"_s), nothingButSpanish());
    EXPECT_TRUE(output.text().endsWith(u"*** Illegal JSON string\n\nJSON = {\"name\":\n"_s));
}

TEST(ParseExtractionAnswer, EmptyAnswerGoesThroughToEmptyFields) {
    for (const QString& answer : {u""_s, u" \n\t"_s, u"```json"_s, u"``````"_s}) {
        CapturedOutput output;
        EXPECT_EQ(parseExtractionAnswer(answer), nothingButSpanish());
        EXPECT_TRUE(output.text().endsWith(u"JSON = \n"_s));
    }
}

TEST(ParseExtractionAnswer, EndlessNestingIsSurvived) {
    const CapturedOutput output;
    EXPECT_EQ(parseExtractionAnswer(QString(200'000, u'[')), nothingButSpanish());
    EXPECT_EQ(parseExtractionAnswer(u"{\"name\":"_s + QString(200'000, u'[') + QString(200'000, u']') + u"}"_s),
              ExtractedFields());
}

// ----- the mail answer

TEST(ParseMailAnswer, ProseIsTrimmed) {
    EXPECT_EQ(parseMailAnswer(u"\n Estimada Sra. López:\n\nGracias. \n"_s), u"Estimada Sra. López:\n\nGracias."_s);
}

TEST(ParseMailAnswer, ProseIsFreedOfFences) {
    EXPECT_EQ(parseMailAnswer(u"```json\nEstimado Sr. Ruiz:\n```\n"_s), u"Estimado Sr. Ruiz:"_s);
    EXPECT_EQ(parseMailAnswer(u"```\nEstimado Sr. Ruiz:\n```"_s), u"Estimado Sr. Ruiz:"_s);
}

TEST(ParseMailAnswer, JSONWithAnEmailGivesItsText) {
    EXPECT_EQ(parseMailAnswer(u" {\"email\":\" Estimado Sr. Ruiz:\\nGracias \"}\n"_s),
              u" Estimado Sr. Ruiz:\nGracias "_s);
    EXPECT_EQ(parseMailAnswer(u"{\"email\":\"\"}"_s), u""_s);
}

TEST(ParseMailAnswer, JSONWithoutAnEmailTextIsReturnedUntrimmed) {
    for (const QString& answer : {u" {\"correo\":\"Estimado\"}\n"_s, u" {\"email\":[\"Estimado\"]}\n"_s,
                                  u" [\"email\"]\n"_s, u" \"Estimado Sr. Ruiz:\"\n"_s, u" 7 "_s, u" null "_s}) {
        EXPECT_EQ(parseMailAnswer(answer), answer);
    }
}

TEST(ParseMailAnswer, FencedJSONIsUnwrappedByHandAndNotUnescaped) {
    EXPECT_EQ(parseMailAnswer(u"```json\n{\"email\":\"Estimado Sr. Ruiz: \\\"hola\\\"\\n...\"}\n```"_s),
              u"Estimado Sr. Ruiz: \\\"hola\\\"\\n..."_s);
}

TEST(ParseMailAnswer, RawLineBreaksInTheValueAreKept) {
    EXPECT_EQ(parseMailAnswer(u"{\"email\": \"Estimado Sr. Ruiz:\n\nGracias.\"}"_s),
              u"Estimado Sr. Ruiz:\n\nGracias."_s);
}

TEST(ParseMailAnswer, MissingClosingQuoteCutsNothingButTheQuotesThatAreThere) {
    EXPECT_EQ(parseMailAnswer(u"{\"email\":\"Estimado Sr. Ruiz"_s), u""_s);
    EXPECT_EQ(parseMailAnswer(u"{\"email\":\"Estimado \"Ruiz"_s), u"Estimado "_s);
}

TEST(ParseMailAnswer, FewerThanThreeQuotesLeaveNothing) {
    EXPECT_EQ(parseMailAnswer(u"Su \"email\" es correcto"_s), u""_s);
}

TEST(ParseMailAnswer, WordEmailWithoutQuotesIsOrdinaryProse) {
    EXPECT_EQ(parseMailAnswer(u"Estimado \"Sr.\" Ruiz: su email"_s), u"Estimado \"Sr.\" Ruiz: su email"_s);
}

TEST(ParseMailAnswer, EmptyAnswerIsAnEmptyMail) {
    EXPECT_EQ(parseMailAnswer(u""_s), u""_s);
    EXPECT_EQ(parseMailAnswer(u" \n"_s), u""_s);
}

TEST(ParseMailAnswer, LogsNothing) {
    CapturedOutput output;
    parseMailAnswer(u"Estimado"_s);
    parseMailAnswer(u"{}"_s);
    EXPECT_EQ(output.text(), u""_s);
}

} // namespace
} // namespace dorvantel
