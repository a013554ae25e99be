// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/DBRecordRepresentation.h"
#include "intake/CatalogueTokens.h"

#include <QString>

#include <optional>

namespace dorvantel {

/// What the validation sheet shows and edits. A plain value.
struct SheetValues {
    QString gender = QStringLiteral("Masculino");
    QString name;
    QString profession;
    QString email;
    QString invitationMail;
    QString summarizedText;
    CatalogueTokens techSkills;
    CatalogueTokens softSkills;
    CatalogueTokens languages;

    bool operator==(const SheetValues&) const = default;
};

/// The warning mark of a row of the first page. All three rows ask for the name: that is how it is meant.
inline bool showsNameWarning(const SheetValues& values) {
    return values.name.isEmpty();
}

/// The record that OK stores, with a fresh identity and `file` as its PDF; null when the name, the profession, the
/// e-mail, the summary or the mail is empty or blank.
DBRecordPointer validatedRecord(const SheetValues& values, std::optional<QByteArray> file);

} // namespace dorvantel
