// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/Vocabulary.h"

#include <QString>
#include <QStringList>

namespace dorvantel {

/// What the stand-in finds in a CV. A plain value; what was not found is empty.
struct CvFacts {
    QString name;
    QString profession;
    QString email;
    QString summary;
    NameGender gender = NameGender::Unknown;
    QStringList softSkills;
    QStringList techSkills;
    QStringList languages;
};

/// Reads a CV's text by rules and word lists, no model involved. Any text will do, however long or broken: cleaned
/// (without commas, brackets and foreign letters) or as it was written. Any thread.
CvFacts readCv(const QString& cvText);

/// The first `most` values as Spanish lists them: "Excel, SAP e Inglés".
QString enumeration(const QStringList& values, qsizetype most);

} // namespace dorvantel
