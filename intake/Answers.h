// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace dorvantel {

/// What an extraction answer says about the candidate; empty where it says nothing.
struct ExtractedFields {
    QString name;
    QString profession;
    QString email;
    QString summarizedText;
    QStringList techSkills;
    QStringList softSkills;
    QStringList languages;

    bool operator==(const ExtractedFields&) const = default;
};

/// Reads the answer to the extraction prompt: the JSON object that was asked for, in code fences or not, and failing
/// that whatever `ExtractedInfoRepresentation` makes of it. Says on standard output which way it went; never fails.
ExtractedFields parseExtractionAnswer(const QString& answer);

/// Takes the mail out of the answer to the mail prompt, which is prose, or sometimes prose wrapped as the value of
/// "email" in something like JSON. Never fails.
QString parseMailAnswer(const QString& answer);

} // namespace dorvantel
