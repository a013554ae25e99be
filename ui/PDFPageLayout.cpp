// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/PDFPageLayout.h"

#include <algorithm>
#include <cmath>

namespace dorvantel {

namespace {

constexpr double mostProportion = 50;
// Positions are ints; a document of thousands of pages that are all as long as can be must not overflow them.
constexpr int mostHeight = 1'000'000'000;

int heightFor(QSizeF page, int width, qsizetype pageCount) {
    const double height = std::clamp(width * page.height() / page.width(), 1.0, double(mostHeight));
    return std::min(qRound(height), static_cast<int>(mostHeight / pageCount));
}

} // namespace

bool isShowablePageSize(QSizeF points) {
    return std::isfinite(points.width()) && std::isfinite(points.height()) && points.width() > 0 &&
           points.height() > 0 && points.height() <= points.width() * mostProportion &&
           points.width() <= points.height() * mostProportion;
}

PDFPageLayout::PDFPageLayout(const QList<QSizeF>& pageSizes, int viewWidth)
    : m_pageWidth(std::max(viewWidth - 2 * gap, 1)) {
    m_bottoms.reserve(pageSizes.size());
    int bottom = 0;
    for (const QSizeF& size : pageSizes) {
        bottom += gap + heightFor(size, m_pageWidth, pageSizes.size());
        m_bottoms.append(bottom);
    }
}

int PDFPageLayout::height() const {
    return m_bottoms.isEmpty() ? 0 : m_bottoms.last() + gap;
}

QRect PDFPageLayout::page(int index) const {
    const int top = slotTop(index) + gap;
    return {gap, top, m_pageWidth, m_bottoms[index] - top};
}

PDFPageLayout::Span PDFPageLayout::pagesWithin(int top, int bottom) const {
    const auto first = std::ranges::upper_bound(m_bottoms, top);
    auto end = first;
    while (end != m_bottoms.end() && page(static_cast<int>(end - m_bottoms.begin())).top() < bottom) {
        ++end;
    }
    return {static_cast<int>(first - m_bottoms.begin()), static_cast<int>(end - m_bottoms.begin())};
}

PDFPageLayout::Place PDFPageLayout::placeAt(int y) const {
    if (m_bottoms.isEmpty()) {
        return {};
    }
    const auto found = std::ranges::upper_bound(m_bottoms, y);
    const int index = std::min(static_cast<int>(found - m_bottoms.begin()), pageCount() - 1);
    const int top = slotTop(index);
    return {index, static_cast<double>(y - top) / (m_bottoms[index] - top)};
}

int PDFPageLayout::positionOf(Place place) const {
    if (place.page >= pageCount()) {
        return 0;
    }
    const int top = slotTop(place.page);
    return top + qRound(place.share * (m_bottoms[place.page] - top));
}

QSize imageSize(QSize shown, double devicePixelRatio, qint64 mostPixels) {
    const double width = std::max(std::round(shown.width() * devicePixelRatio), 1.0);
    const double height = std::max(std::round(shown.height() * devicePixelRatio), 1.0);
    const double scale = std::min(std::sqrt(static_cast<double>(mostPixels) / (width * height)), 1.0);
    return {std::max(static_cast<int>(width * scale), 1), std::max(static_cast<int>(height * scale), 1)};
}

} // namespace dorvantel
