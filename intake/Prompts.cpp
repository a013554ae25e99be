// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/Prompts.h"

#include <initializer_list>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace prompts {

constexpr QStringView intro = u"Eres un profesional de recursos humanos y acabas de recibir el siguiente curriculum:\n";
constexpr QStringView need = u"Necesitas extraer la siguiente información del CV\n";
constexpr QStringView name = u"Nombre del candidato\n";
constexpr QStringView profession = u"Profesión del candidato\n";
constexpr QStringView email = u"Correo electrónico del candidato\n";
constexpr QStringView summary = u"Resumen del CV\n";
constexpr QStringView soft = u"Habilidades personales del candidato (soft skills)\n";
constexpr QStringView tech = u"Habilidades técnicas del candidato (softskills)\n";
constexpr QStringView languages =
    u"Idiomas que habla el candidato (exclusivamente los idiomas, sin el nivel de dominio)\n";
constexpr QStringView format = u"Esta información la debes entregar en formato JSON. Este es un ejemplo generado con "
                               u"otro curriculum para que uses "
                               "el mismo formato:\n";
constexpr QStringView example =
    u"{\"name\":\"Lucía Ferrer Campos\",\"profession\":\"Diseñadora gráfica\","
    "\"email\":\"lucia.ferrer.campos@example.com\","
    "\"summarizedText\":\"Lucía es una experta diseñadora especializada en marketing\",\"softSkills\":[],"
    "\"techSkills\": [\"Photoshop\",\"Illustrator\",\"Figma\",\"InDesign\",\"Fotografía\"],"
    "\"languages\": [\"Español\",\"Inglés\",\"Alemán\"]}";
constexpr QStringView mailRequest =
    u"Quiero que generes un texto agradeciéndole al candidato su participación en el proceso de selección en le que se "
    "le informe que próximamente se le invitará a una entrevista de trabajo. La respuesta debe ser formal y debe "
    "empezar por \"Estimado Sr\" o \"Estimada Sra\" dependiendo del sexo del candidato de la persona y firma "
    "con el nombre \"Marta Salinas, Senior Recruiter, Ostrel de México\".";

constexpr QStringView displayNeed = u"\nNecesitas extraer la siguiente información del CV";
constexpr QStringView displayFields =
    u"\nNombre del candidato\nProfesión del candidato\nCorreo electrónico del candidato\nResumen del CV\n"
    "Habilidades personales del candidato (soft skills)\n"
    "Idiomas que habla el candidato (exclusivamente los idiomas, sin el nivel de dominio)\n"
    "Esta información la debes entregar en formato JSON. Este es un ejemplo generado con otro curriculum para que uses "
    "el mismo formato:\n";
constexpr QStringView displayMale = u"{\"genero\":\"Masculino\"}";
constexpr QStringView displayFemale = u"{\"genero\":\"femenino\"}";
constexpr QStringView displayMailOpen = u"{\"correo\":\"";
constexpr QStringView displayMailClose = u"\"}";

} // namespace prompts

namespace {

QString concatenated(std::initializer_list<QStringView> pieces) {
    QString text;
    for (const QStringView piece : pieces) {
        text += piece;
    }
    return text;
}

} // namespace

QString buildExtractionPrompt(const QString& cvText) {
    using namespace prompts;
    return concatenated(
        {intro, cvText, u"\n", need, name, profession, email, summary, soft, tech, languages, format, example});
}

QString buildInvitationMailPrompt(const QString& cvText) {
    return concatenated({prompts::intro, cvText, u"\n", prompts::mailRequest});
}

QString inferGender(const QString& mailText) {
    return mailText.contains("Estimado"_L1) ? u"Masculino"_s : u"Femenino"_s;
}

} // namespace dorvantel
