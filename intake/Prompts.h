// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

namespace dorvantel {

/// The pieces of what the language model is asked. Their wording was tuned against models and is kept to the letter,
/// slips included: "(softskills)" in `tech` and "en le que" in `mailRequest` are no typing errors of this file.
namespace prompts {

extern const QStringView intro;
extern const QStringView need;
extern const QStringView name;
extern const QStringView profession;
extern const QStringView email;
extern const QStringView summary;
extern const QStringView soft;
extern const QStringView tech;
extern const QStringView languages;
extern const QStringView format;
extern const QStringView example; ///< one line of JSON, without a line feed at its end
extern const QStringView mailRequest;

// What only the candidate's detail view shows: it retells the extraction prompt without the technical skills, and
// wraps the gender and the mail as if they had been answered as JSON.
extern const QStringView displayNeed;
extern const QStringView displayFields;
extern const QStringView displayMale;
extern const QStringView displayFemale; ///< with a small "f", unlike `displayMale`
extern const QStringView displayMailOpen;
extern const QStringView displayMailClose;

} // namespace prompts

/// How freely the model may word its answers: little where data is extracted, more where a mail is written. Each
/// prompt is sent as the one user message of a chat, with the configured model and no other option.
inline constexpr double extractionTemperature = 0.3;
inline constexpr double invitationMailTemperature = 0.7;

QString buildExtractionPrompt(const QString& cvText);
QString buildInvitationMailPrompt(const QString& cvText);

/// "Masculino" when the mail says "Estimado" anywhere, otherwise "Femenino".
QString inferGender(const QString& mailText);

} // namespace dorvantel
