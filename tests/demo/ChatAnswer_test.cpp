// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/ChatAnswer.h"

#include "demo/CandidateGender.h"
#include "demo/Prompt.h"

#include "tests/support/Print.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <QElapsedTimer>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

const QString intro = u"Eres un profesional de recursos humanos y acabas de recibir el siguiente curriculum:\n"_s;
const QString need = u"\nNecesitas extraer la siguiente información del CV\nNombre del candidato\n"_s;
const QString signature = u"Marta Salinas, Senior Recruiter, Ostrel de México"_s;
const QString mailRequest = u"\nQuiero que generes un texto agradeciéndole al candidato su participación. La respuesta "
                            "debe empezar por \"Estimado Sr\" o \"Estimada Sra\" y firma con el nombre \""_s +
                            signature + u"\"."_s;

const QString nurse = u"Carmen Ortega Villalba\nEnfermera\ncarmen.ortega@example.com\nIdiomas\nInglés B2"_s;

TEST(Prompt, ExtractionHoldsTheCvBetweenItsFixedSentences) {
    const Prompt prompt = readPrompt(intro + nurse + need);
    EXPECT_EQ(prompt.kind, Prompt::Kind::Extraction);
    EXPECT_EQ(prompt.cvText, nurse);
}

TEST(Prompt, MailHoldsTheCvAndTheSignature) {
    const Prompt prompt = readPrompt(intro + nurse + mailRequest);
    EXPECT_EQ(prompt.kind, Prompt::Kind::Mail);
    EXPECT_EQ(prompt.cvText, nurse);
    EXPECT_EQ(prompt.signature, signature);
}

TEST(Prompt, AnEmptyCvIsAnEmptyText) {
    EXPECT_EQ(readPrompt(intro + need).cvText, QString());
    EXPECT_EQ(readPrompt(intro + mailRequest).cvText, QString());
}

TEST(Prompt, ACvThatQuotesThePromptIsNotCutShort) {
    const QString cv = u"Ana Ruiz"_s + need + u"más texto"_s;
    EXPECT_EQ(readPrompt(intro + cv + need).cvText, cv);
    EXPECT_EQ(readPrompt(intro + cv + mailRequest).kind, Prompt::Kind::Mail);
}

TEST(Prompt, AnythingElseIsNoCv) {
    EXPECT_EQ(readPrompt(u"¿Qué hora es?"_s).kind, Prompt::Kind::Other);
    EXPECT_EQ(readPrompt(QString()).kind, Prompt::Kind::Other);
}

TEST(ChatAnswer, ExtractionIsAJsonObjectWithTheSevenKeys) {
    const auto answer = nlohmann::ordered_json::parse(chatAnswer(intro + nurse + need).toStdString());
    EXPECT_EQ(answer["name"], "Carmen Ortega Villalba");
    EXPECT_EQ(answer["profession"], "Enfermera");
    EXPECT_EQ(answer["email"], "carmen.ortega@example.com");
    EXPECT_TRUE(answer["summarizedText"].is_string());
    EXPECT_TRUE(answer["softSkills"].is_array());
    EXPECT_TRUE(answer["techSkills"].is_array());
    EXPECT_EQ(answer["languages"], nlohmann::ordered_json({"Inglés"}));
    EXPECT_EQ(answer.size(), 7U);
}

TEST(ChatAnswer, ExtractionOfAnEmptyCvHoldsNothing) {
    EXPECT_EQ(chatAnswer(intro + need), u"{\"name\":\"\",\"profession\":\"\",\"email\":\"\",\"summarizedText\":\"\","
                                        "\"softSkills\":[],\"techSkills\":[],\"languages\":[]}"_s);
}

TEST(ChatAnswer, MailToAWomanBeginsAndEndsAsThePromptDemands) {
    const QString mail = chatAnswer(intro + nurse + mailRequest);
    EXPECT_TRUE(mail.startsWith(u"Estimada Sra. Ortega:\n"_s)) << mail.toStdString();
    EXPECT_TRUE(mail.endsWith(signature));
    EXPECT_FALSE(mail.contains(u"Estimado"_s));
}

TEST(ChatAnswer, MailToAManBeginsAsThePromptDemands) {
    const QString mail = chatAnswer(intro + u"Javier Montes Aguirre\nContable"_s + mailRequest);
    EXPECT_TRUE(mail.startsWith(u"Estimado Sr. Montes:\n"_s)) << mail.toStdString();
    EXPECT_FALSE(mail.contains(u"Estimada"_s));
}

TEST(ChatAnswer, MailWithoutANameNamesBoth) {
    EXPECT_TRUE(chatAnswer(intro + mailRequest).startsWith(u"Estimado Sr./Estimada Sra.:\n"_s));
}

TEST(ChatAnswer, AnythingElseIsToldThatNoLanguageModelIsAtWork) {
    EXPECT_TRUE(chatAnswer(u"¿Qué hora es?"_s).startsWith(u"Este servidor no es un modelo de lenguaje"_s));
}

TEST(ChatAnswer, TheSamePromptAlwaysGetsTheSameAnswer) {
    const QString prompt = intro + nurse + mailRequest;
    EXPECT_EQ(chatAnswer(prompt), chatAnswer(prompt));
}

TEST(ChatAnswer, ACvOfTwoPagesTakesMilliseconds) {
    const QString cv =
        (nurse + u"\nTriaje y curas de heridas en el hospital de la ciudad con todo el equipo.\n"_s).repeated(45);
    chatAnswer(intro + cv + need);
    QElapsedTimer timer;
    timer.start();
    chatAnswer(intro + cv + need);
    EXPECT_LT(timer.elapsed(), 500) << "far above the usual 2 ms, since the machine may be busy";
}

TEST(Surname, IsTheFirstOfTwo) {
    EXPECT_EQ(surnameOf(u"Lucía Ferrer Campos"_s), u"Ferrer"_s);
    EXPECT_EQ(surnameOf(u"John Doe"_s), u"Doe"_s);
    EXPECT_EQ(surnameOf(u"Jane Q. Fullstacker"_s), u"Fullstacker"_s);
}

TEST(Surname, StandsBehindAllFirstNames) {
    EXPECT_EQ(surnameOf(u"José Luis Pérez Gil"_s), u"Pérez"_s);
    EXPECT_EQ(surnameOf(u"María del Carmen Ruiz Sanz"_s), u"Ruiz"_s);
    EXPECT_EQ(surnameOf(u"Ana Martín"_s), u"Martín"_s);
}

TEST(Surname, KeepsItsParticles) {
    EXPECT_EQ(surnameOf(u"Ana María de la Fuente"_s), u"de la Fuente"_s);
    EXPECT_EQ(surnameOf(u"Pedro del Río Arce"_s), u"del Río"_s);
}

/// Of a candidate whose CV says nothing about it.
NameGender genderOfName(const QString& name) {
    return genderOfCandidate(name, FoldedText({}));
}

TEST(Gender, ComesFromTheFirstName) {
    EXPECT_EQ(genderOfName(u"María José López"_s), NameGender::Feminine);
    EXPECT_EQ(genderOfName(u"José María López"_s), NameGender::Masculine);
    EXPECT_EQ(genderOfName(u"ANDRÉS Villar"_s), NameGender::Masculine);
    EXPECT_EQ(genderOfName(u"Carmen Ortega"_s), NameGender::Feminine);
    EXPECT_EQ(genderOfName(u"Guadalupe Ríos"_s), NameGender::Feminine);
    EXPECT_EQ(genderOfName(u"Emily Stone"_s), NameGender::Feminine);
}

TEST(Gender, OfAnUnlistedNameComesFromItsEnding) {
    EXPECT_EQ(genderOfName(u"Eufrasinda Roca"_s), NameGender::Feminine);
    EXPECT_EQ(genderOfName(u"Wistremundo Roca"_s), NameGender::Masculine);
    EXPECT_EQ(genderOfName(QString()), NameGender::Unknown);
}

TEST(Gender, ASurnameThatIsAFirstNameDoesNotDecide) {
    EXPECT_EQ(genderOfName(u"Eufrasinda Martín"_s), NameGender::Feminine);
}

TEST(Gender, TheCvDecidesWhereTheNameIsUnlisted) {
    EXPECT_EQ(genderOfCandidate(u"Xiomar Roca"_s, FoldedText(u"Casada, dos hijos"_s)), NameGender::Feminine);
    EXPECT_EQ(genderOfCandidate(u"Xiomar Roca"_s, FoldedText(u"Enfermera en Lugo"_s)), NameGender::Feminine);
    EXPECT_EQ(genderOfCandidate(u"Xiomar Roca"_s, FoldedText(u"Enfermero en Lugo"_s)), NameGender::Masculine);
}

} // namespace
} // namespace dorvantel
