// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QHashFunctions>
#include <QString>

namespace dorvantel {

/// One chip of a tag view. A plain value, compared by its fields.
struct TagViewItem {
    QString title;
    bool isSelected = false;

    bool operator==(const TagViewItem&) const = default;
};

inline std::size_t qHash(const TagViewItem& item, std::size_t seed = 0) {
    return qHashMulti(seed, item.title, item.isSelected);
}

} // namespace dorvantel
