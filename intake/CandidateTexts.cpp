// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/CandidateTexts.h"

#include "data/DBRecordRepresentation.h"
#include "intake/JSONFormatter.h"
#include "intake/Prompts.h"

namespace dorvantel {

using namespace Qt::StringLiterals;
using Look = TextRun::Look;

namespace {

TextRun cvBlock(const std::optional<QString>& cvText) {
    return cvText ? TextRun{*cvText, Look::Plain} : TextRun{u"Contenido no disponible"_s, Look::Secondary};
}

/// Each block begins on a line of its own.
TextRuns blocks(std::initializer_list<TextRun> list) {
    TextRuns runs(list);
    for (std::size_t i = 0; i + 1 < runs.size(); ++i) {
        runs[i].text += u'\n';
    }
    return runs;
}

} // namespace

TextRuns shownExtractionPrompt(const std::optional<QString>& cvText) {
    return blocks({{prompts::intro.toString(), Look::Bold},
                   cvBlock(cvText),
                   {prompts::displayNeed.toString(), Look::Bold},
                   {prompts::displayFields.toString(), Look::Bold},
                   {prompts::example.toString(), Look::Bold}});
}

TextRuns shownMailPrompt(const std::optional<QString>& cvText) {
    return blocks(
        {{prompts::intro.toString(), Look::Bold}, cvBlock(cvText), {prompts::mailRequest.toString(), Look::Bold}});
}

TextRuns shownMailAnswer(const DBRecordRepresentation& record) {
    const bool masculine = isMasculine(record.jsonCVData.gender);
    const QStringView gender = masculine ? prompts::displayMale : prompts::displayFemale;
    return {{prompts::displayMailOpen.toString(), Look::Plain},
            {record.invitationMail.value_or(QString()), Look::Plain},
            {prompts::displayMailClose.toString() + u"\n\n"_s, Look::Plain},
            {u"Valor inferido"_s, Look::Bold},
            {u" "_s + gender.toString(), Look::Plain}};
}

QString shownCVData(const DBRecordRepresentation& record) {
    return JSONFormatter(2).format(record.jsonCVData.jsonString());
}

} // namespace dorvantel
