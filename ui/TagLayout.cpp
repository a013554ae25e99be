// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TagLayout.h"

#include <algorithm>
#include <cstdlib>

namespace dorvantel {

TagLayout layOutTags(const QStringList& titles, const QList<QSize>& sizes, int availableWidth) {
    TagLayout layout;
    // Alignment values: the further right or down, the smaller.
    int width = 0;
    int height = 0;
    for (qsizetype i = 0; i < sizes.size(); ++i) {
        const bool isLast = titles[i] == titles.last();
        if (std::abs(width - sizes[i].width()) > availableWidth) {
            width = 0;
            height -= sizes[i].height();
        }
        layout.places.append(QPoint(-width, -height));
        width = isLast ? 0 : width - sizes[i].width();
        height = isLast ? 0 : height;
    }
    if (layout.places.isEmpty()) {
        return layout;
    }
    // A first chip that is too wide for any line still leaves no empty line above it.
    const int top = std::ranges::min(layout.places, {}, &QPoint::y).y();
    for (qsizetype i = 0; i < sizes.size(); ++i) {
        layout.places[i].ry() -= top;
        layout.totalHeight = std::max(layout.totalHeight, layout.places[i].y() + sizes[i].height());
    }
    return layout;
}

} // namespace dorvantel
