// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace dorvantel {

/// What a CV says that a search can ask for. A plain value; its object form on a wire has exactly these four keys.
struct JSONCVData {
    QString gender; ///< "Masculino" or "Femenino" as intake sets it; any text is accepted
    QStringList softSkills;
    QStringList techSkills;
    QStringList languages; ///< without the level, for example "Español"

    /// The text that an insert carries in `DBRecord::jsonCVData`. The records service stores it and queries it by
    /// path, so its bytes are a contract: gender first and normalised, no blanks but one after each comma of a list.
    /// Elements are escaped as a list is shown for debugging, not as JSON demands: `\'`, `\0` and `\u{…}` occur.
    QString jsonString() const;

    /// Gender, the soft skills twice (they weigh double) and the languages, as one line of words.
    QString description() const;

    bool operator==(const JSONCVData&) const = default;
};

/// The one test for the masculine gender; every other value counts as feminine.
bool isMasculine(const QString& gender);

} // namespace dorvantel
