// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QPoint>
#include <QSize>
#include <QStringList>

namespace dorvantel {

/// Where the chips of a tag view come to lie, from its top left corner, in logical pixels.
struct TagLayout {
    QList<QPoint> places; ///< the top left corner of each chip, in the order of the chips
    int totalHeight = 0;  ///< from the top of the highest chip to the bottom of the lowest
};

/// Sets chips of the given sizes on lines that are `availableWidth` wide. A chip that does not fit on its line begins a
/// new one, one chip's height further down. The last chip sends the next one back to the beginning, and the last chip
/// is known by its title: a chip before it with the same title does so as well, and what follows lies over the first
/// lines. `titles` and `sizes` are equally long.
TagLayout layOutTags(const QStringList& titles, const QList<QSize>& sizes, int availableWidth);

} // namespace dorvantel
