// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/PDFPageImages.h"

#include <ranges>

namespace dorvantel {

void PDFPageImages::insert(int page, const QImage& image) {
    remove(page);
    m_images.insert(page, image);
    m_order.prepend(page);
    m_bytes += image.sizeInBytes();
    while (m_bytes > m_mostBytes) {
        remove(m_order.last());
    }
}

void PDFPageImages::use(const QList<int>& pages) {
    for (const int page : pages | std::views::reverse) {
        if (m_order.removeOne(page)) {
            m_order.prepend(page);
        }
    }
}

void PDFPageImages::clear() {
    m_images.clear();
    m_order.clear();
    m_bytes = 0;
}

void PDFPageImages::remove(int page) {
    m_bytes -= m_images.take(page).sizeInBytes();
    m_order.removeOne(page);
}

} // namespace dorvantel
