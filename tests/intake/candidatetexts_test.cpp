// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/CandidateTexts.h"

#include "data/DBRecordRepresentation.h"
#include "intake/Prompts.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using Look = TextRun::Look;

QString plain(const TextRuns& runs) {
    QString text;
    for (const TextRun& run : runs) {
        text += run.text;
    }
    return text;
}

QList<Look> looks(const TextRuns& runs) {
    QList<Look> looks;
    for (const TextRun& run : runs) {
        looks.append(run.look);
    }
    return looks;
}

const QString intro = u"Eres un profesional de recursos humanos y acabas de recibir el siguiente curriculum:\n"_s;

TEST(ShownExtractionPrompt, RetellsThePromptWithoutTheTechnicalSkills) {
    const TextRuns runs = shownExtractionPrompt(u"Ana\nContable"_s);
    EXPECT_EQ(looks(runs), (QList{Look::Bold, Look::Plain, Look::Bold, Look::Bold, Look::Bold}));
    ASSERT_EQ(runs.size(), 5U);
    EXPECT_EQ(runs[0].text, intro + u"\n"_s);
    EXPECT_EQ(runs[1].text, u"Ana\nContable\n"_s);
    EXPECT_EQ(runs[2].text, u"\nNecesitas extraer la siguiente información del CV\n"_s);
    EXPECT_EQ(runs[3].text,
              u"\nNombre del candidato\nProfesión del candidato\nCorreo electrónico del candidato\nResumen del CV\n"
              "Habilidades personales del candidato (soft skills)\n"
              "Idiomas que habla el candidato (exclusivamente los idiomas, sin el nivel de dominio)\n"
              "Esta información la debes entregar en formato JSON. Este es un ejemplo generado con otro curriculum "
              "para que uses el mismo formato:\n\n"_s);
    EXPECT_EQ(runs[4].text, prompts::example);
    EXPECT_FALSE(plain(runs).contains(u"Habilidades técnicas"_s));
}

TEST(ShownExtractionPrompt, WithoutCVSaysSoInTheSecondaryColour) {
    const TextRuns runs = shownExtractionPrompt(std::nullopt);
    EXPECT_EQ(runs[1], (TextRun{u"Contenido no disponible\n"_s, Look::Secondary}));
}

TEST(ShownExtractionPrompt, CVWithoutTextIsAnEmptyBlock) {
    EXPECT_EQ(shownExtractionPrompt(QString())[1], (TextRun{u"\n"_s, Look::Plain}));
}

TEST(ShownMailPrompt, IsIntroCVAndRequest) {
    const TextRuns runs = shownMailPrompt(u"Ana"_s);
    ASSERT_EQ(runs.size(), 3U);
    EXPECT_EQ(runs[0], (TextRun{intro + u"\n"_s, Look::Bold}));
    EXPECT_EQ(runs[1], (TextRun{u"Ana\n"_s, Look::Plain}));
    EXPECT_EQ(runs[2], (TextRun{prompts::mailRequest.toString(), Look::Bold}));
}

TEST(ShownMailPrompt, WithoutCVSaysSoInTheSecondaryColour) {
    EXPECT_EQ(shownMailPrompt(std::nullopt)[1], (TextRun{u"Contenido no disponible\n"_s, Look::Secondary}));
}

TEST(ShownMailAnswer, DoubleQuoteInTheMailIsShownUnescapedInsideTheBraces) {
    DBRecordRepresentation record;
    record.jsonCVData.gender = u"Masculino"_s;
    record.invitationMail = u"Estimado Sr. \"Paco\":\nGracias."_s;
    EXPECT_EQ(plain(shownMailAnswer(record)), u"{\"correo\":\"Estimado Sr. \"Paco\":\nGracias.\"}\n\n"
                                              "Valor inferido {\"genero\":\"Masculino\"}"_s);
}

TEST(ShownMailAnswer, FemeninoIsShownInLowerCase) {
    DBRecordRepresentation record;
    record.invitationMail = u"Hola"_s;
    record.jsonCVData.gender = u"Femenino"_s;
    const TextRuns runs = shownMailAnswer(record);
    EXPECT_EQ(plain(runs), u"{\"correo\":\"Hola\"}\n\nValor inferido {\"genero\":\"femenino\"}"_s);
    EXPECT_EQ(looks(runs), (QList{Look::Plain, Look::Plain, Look::Plain, Look::Bold, Look::Plain}));
    EXPECT_EQ(runs[3].text, u"Valor inferido"_s);
}

TEST(ShownMailAnswer, OnlyExactlyMasculinoIsMasculine) {
    DBRecordRepresentation record;
    for (const QString& gender : {u""_s, u"masculino"_s, u"Hombre"_s}) {
        record.jsonCVData.gender = gender;
        EXPECT_TRUE(plain(shownMailAnswer(record)).endsWith(u"{\"genero\":\"femenino\"}"_s)) << gender.toStdString();
    }
}

TEST(ShownMailAnswer, AbsentMailIsEmpty) {
    EXPECT_TRUE(plain(shownMailAnswer(DBRecordRepresentation())).startsWith(u"{\"correo\":\"\"}\n"_s));
}

TEST(ShownCVData, IsTheStoredDataIndented) {
    DBRecordRepresentation record;
    record.jsonCVData = {u"Hombre"_s, {u"Orden"_s}, {}, {}};
    EXPECT_EQ(shownCVData(record), u"{\n  \"gender\": \"Femenino\",\n  \"softSkills\": [\n    \"Orden\"\n  ],\n"
                                   "  \"techSkills\": [],\n  \"languages\": []\n}"_s);
}

} // namespace
} // namespace dorvantel
