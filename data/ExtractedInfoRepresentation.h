// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace dorvantel {

/// What a language model found in one CV, before anyone checked it: every field may be missing. The languages begin
/// with "Español", which the answer can only add to.
struct ExtractedInfoRepresentation {
    std::optional<QString> name;
    std::optional<QString> profession;
    std::optional<QString> email;
    std::optional<QString> summarizedText;
    std::optional<QString> invitationMail;
    std::optional<QString> gender; ///< from the mail's salutation; absent when that leaves it open
    QStringList softSkills;
    QStringList techSkills;
    QStringList languages;

    /// Takes from `answer` whatever can be taken; an answer that is not JSON is logged and gives the defaults. The
    /// answer's keys are Spanish: "nombre", "profesion", "email" (before "correo_electronico", before "correo"),
    /// "resumen", "habilidades_personales", "habilidades_tecnicas", "idiomas"; other members are ignored. null counts
    /// as not there; numbers, objects and the like are taken as their JSON text. A list may also come as a text, with
    /// its values in a JSON array or between commas, semicolons, line breaks or bullets. Never throws.
    ExtractedInfoRepresentation(const QString& answer, const QString& mail);

    /// One line per field, for logs; without the gender, and without escaping.
    QString description() const;
};

} // namespace dorvantel
