// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/Flow.h"

#include <algorithm>

namespace dorvantel {

Flow flow(const QList<int>& widths, int width, int lineHeight, int space) {
    Flow flow;
    if (widths.isEmpty()) {
        return flow;
    }
    flow.lines = 1;
    int x = 0;
    int y = 0;
    for (const int wanted : widths) {
        const int taken = std::min(wanted, width);
        if (x > 0 && x + taken > width) {
            x = 0;
            y += lineHeight + space;
            ++flow.lines;
        }
        flow.places.append(QRect(x, y, taken, lineHeight));
        x += taken + space;
    }
    QRect& last = flow.places.last();
    last.setWidth(std::max(last.width(), width - last.x()));
    flow.height = y + lineHeight;
    return flow;
}

} // namespace dorvantel
