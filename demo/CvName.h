// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/CvText.h"

#include <QString>

namespace dorvantel {

struct FoundName {
    QString name;          ///< as a name is written: "José Doroteo Arango"; empty when none was found
    std::size_t lines = 0; ///< how many lines of the CV it takes, from `firstLine`
    std::size_t firstLine = 0;
};

/// The first e-mail address of the text, in lower case; empty when there is none.
QString emailIn(const QString& cvText);

/// The candidate's name: the likeliest of the first lines by its place, its words and its likeness to the e-mail
/// address; else made from the address ("ana.ruiz@…"). A heading, a profession or a place is never taken for one.
FoundName nameIn(const CvText& cv, const QString& email);

/// "MARÍA DE LA FUENTE, PhD" as a name is written: "María de la Fuente".
QString writtenAsName(const QString& text);

} // namespace dorvantel
