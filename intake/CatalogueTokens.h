// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/Model.h"

#include <QStringList>

namespace dorvantel {

/// The values of one kind as the sheet shows them: those that the catalogue knows, and the new ones.
struct CatalogueTokens {
    QStringList known;
    QStringList unknown;

    QStringList all() const { return known + unknown; }
    bool operator==(const CatalogueTokens&) const = default;
};

enum class TokenKind {
    Technical, ///< kept as the model wrote them, known or not: "iOS" and "jQuery" would not survive capitalisation
    Spoken,    ///< soft skills and languages: known ones in the catalogue's spelling, new ones capitalised
};

/// Sorts `values` by whether their caseless form is a key of `catalogue`, in order and with repetitions.
CatalogueTokens splitByCatalogue(const QStringList& values, const Model::Catalogue& catalogue, TokenKind kind);

} // namespace dorvantel
