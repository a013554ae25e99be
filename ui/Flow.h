// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QRect>

namespace dorvantel {

/// Where things of given widths come to lie when they are set like words on lines of one height.
struct Flow {
    QList<QRect> places; ///< in the order of the widths
    int lines = 0;
    int height = 0; ///< of all lines with the spaces between them
};

/// Sets things on lines `width` wide and `lineHeight` high with `space` between them in both directions. What does not
/// fit goes to the next line; what is wider than a line is cut to it. The last thing takes what is left of its line.
Flow flow(const QList<int>& widths, int width, int lineHeight, int space);

} // namespace dorvantel
