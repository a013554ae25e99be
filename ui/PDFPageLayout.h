// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QRect>
#include <QSize>
#include <QSizeF>

namespace dorvantel {

/// A4, for pages whose size is not known or makes no sense, in points.
inline constexpr QSizeF usualPageSize{595, 842};

/// Whether a page of this size can be shown: a true size, not more than 50 times as long as it is wide or as wide as
/// long.
bool isShowablePageSize(QSizeF points);

/// The pages of a document one below the other, each as wide as the view allows. Lengths are in logical pixels.
class PDFPageLayout {
public:
    /// Pages from `first` to before `end`.
    struct Span {
        int first = 0;
        int end = 0;
        bool contains(int page) const { return page >= first && page < end; }
        bool operator==(const Span&) const = default;
    };

    /// A place in the document whatever its scale: a page with the gap above it, and how far down in it from 0 to 1.
    struct Place {
        int page = 0;
        double share = 0;
    };

    static constexpr int gap = 8; ///< around every page

    PDFPageLayout() = default; ///< no pages
    /// Every size is showable.
    PDFPageLayout(const QList<QSizeF>& pageSizes, int viewWidth);

    int pageCount() const { return static_cast<int>(m_bottoms.size()); }
    int height() const; ///< of all pages with the gaps around them; 0 without pages
    QRect page(int index) const;

    /// The pages that lie in the part of the document from `top` to before `bottom`, in whole or in part.
    Span pagesWithin(int top, int bottom) const;

    Place placeAt(int y) const;
    int positionOf(Place place) const;

private:
    int slotTop(int index) const { return index == 0 ? 0 : m_bottoms[index - 1]; }

    int m_pageWidth = 0;
    QList<int> m_bottoms; ///< of each page, without the gap below
};

/// How large an image of a page is that takes `shown` logical pixels on a screen of this pixel ratio: exactly as many
/// pixels as the screen has for it, unless these are more than `mostPixels`. Then it is smaller, in proportion.
QSize imageSize(QSize shown, double devicePixelRatio, qint64 mostPixels);

} // namespace dorvantel
