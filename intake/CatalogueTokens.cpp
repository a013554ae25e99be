// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/CatalogueTokens.h"

#include "platform/Text.h"

namespace dorvantel {

CatalogueTokens splitByCatalogue(const QStringList& values, const Model::Catalogue& catalogue, TokenKind kind) {
    const bool asWritten = kind == TokenKind::Technical;
    CatalogueTokens tokens;
    for (const QString& value : values) {
        if (const auto found = catalogue.constFind(caselessForm(value)); found != catalogue.cend()) {
            tokens.known.append(asWritten ? value : *found);
        } else {
            tokens.unknown.append(asWritten ? value : capitalized(value));
        }
    }
    return tokens;
}

} // namespace dorvantel
