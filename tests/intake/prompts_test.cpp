// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/Prompts.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

TEST(ExtractionPrompt, IsWordForWordWhatTheModelIsSent) {
    EXPECT_EQ(buildExtractionPrompt(u"Juan Pérez\nIngeniero"_s),
              uR"(Eres un profesional de recursos humanos y acabas de recibir el siguiente curriculum:
Juan Pérez
Ingeniero
Necesitas extraer la siguiente información del CV
Nombre del candidato
Profesión del candidato
Correo electrónico del candidato
Resumen del CV
Habilidades personales del candidato (soft skills)
Habilidades técnicas del candidato (softskills)
Idiomas que habla el candidato (exclusivamente los idiomas, sin el nivel de dominio)
Esta información la debes entregar en formato JSON. Este es un ejemplo generado con otro curriculum para que uses el mismo formato:
{"name":"Lucía Ferrer Campos","profession":"Diseñadora gráfica","email":"lucia.ferrer.campos@example.com","summarizedText":"Lucía es una experta diseñadora especializada en marketing","softSkills":[],"techSkills": ["Photoshop","Illustrator","Figma","InDesign","Fotografía"],"languages": ["Español","Inglés","Alemán"]})"_s);
}

TEST(ExtractionPrompt, EmptyCVLeavesTheIntroductionFollowedByALineFeedAndTheRequest) {
    EXPECT_TRUE(buildExtractionPrompt({}).startsWith(
        u"Eres un profesional de recursos humanos y acabas de recibir el siguiente curriculum:\n"
        "\nNecesitas extraer la siguiente información del CV\nNombre del candidato\n"_s));
}

TEST(ExtractionPrompt, NeverAsksForTheGender) {
    EXPECT_FALSE(buildExtractionPrompt({}).contains(u"gender"_s));
    EXPECT_FALSE(buildExtractionPrompt({}).contains(u"sexo"_s));
}

TEST(ExtractionPrompt, CVTextIsNotInterpreted) {
    EXPECT_TRUE(
        buildExtractionPrompt(u"%1 \\n {\"name\"} %%"_s).contains(u"curriculum:\n%1 \\n {\"name\"} %%\nNece"_s));
}

TEST(InvitationMailPrompt, IsWordForWordWhatTheModelIsSent) {
    EXPECT_EQ(buildInvitationMailPrompt(u"Juan Pérez"_s),
              uR"(Eres un profesional de recursos humanos y acabas de recibir el siguiente curriculum:
Juan Pérez
Quiero que generes un texto agradeciéndole al candidato su participación en el proceso de selección en le que se le informe que próximamente se le invitará a una entrevista de trabajo. La respuesta debe ser formal y debe empezar por "Estimado Sr" o "Estimada Sra" dependiendo del sexo del candidato de la persona y firma con el nombre "Marta Salinas, Senior Recruiter, Ostrel de México".)"_s);
}

TEST(DisplayedPrompt, RetellsTheFieldsWithoutTheTechnicalSkills) {
    EXPECT_EQ(prompts::displayNeed.toString() + prompts::displayFields.toString(), uR"(
Necesitas extraer la siguiente información del CV
Nombre del candidato
Profesión del candidato
Correo electrónico del candidato
Resumen del CV
Habilidades personales del candidato (soft skills)
Idiomas que habla el candidato (exclusivamente los idiomas, sin el nivel de dominio)
Esta información la debes entregar en formato JSON. Este es un ejemplo generado con otro curriculum para que uses el mismo formato:
)"_s);
}

TEST(DisplayedPrompt, GendersDifferInTheirFirstLetter) {
    EXPECT_EQ(prompts::displayMale, uR"({"genero":"Masculino"})"_s);
    EXPECT_EQ(prompts::displayFemale, uR"({"genero":"femenino"})"_s);
}

TEST(DisplayedPrompt, MailIsWrappedAsIfItWereJSON) {
    EXPECT_EQ(prompts::displayMailOpen, uR"({"correo":")"_s);
    EXPECT_EQ(prompts::displayMailClose, uR"("})"_s);
}

TEST(ChatParameters, DataIsExtractedMoreStrictlyThanTheMailIsWritten) {
    EXPECT_EQ(extractionTemperature, 0.3);
    EXPECT_EQ(invitationMailTemperature, 0.7);
}

TEST(InferGender, EstimadaSraIsFeminine) {
    EXPECT_EQ(inferGender(u"Estimada Sra. López:"_s), u"Femenino"_s);
}

TEST(InferGender, EstimadoSrIsMasculine) {
    EXPECT_EQ(inferGender(u"Estimado Sr. López:"_s), u"Masculino"_s);
}

TEST(InferGender, EstimadoAnywhereIsMasculine) {
    EXPECT_EQ(inferGender(u"Asunto: entrevista\n\nEstimado Sr. López:"_s), u"Masculino"_s);
    EXPECT_EQ(inferGender(u"Estimado/a candidato:"_s), u"Masculino"_s);
}

TEST(InferGender, LowerCaseEmptyOrUnrelatedIsFeminine) {
    EXPECT_EQ(inferGender(u"estimado Sr. López:"_s), u"Femenino"_s);
    EXPECT_EQ(inferGender(u""_s), u"Femenino"_s);
    EXPECT_EQ(inferGender(u"Hola"_s), u"Femenino"_s);
}

} // namespace
} // namespace dorvantel
