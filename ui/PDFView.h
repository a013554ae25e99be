// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/PDFPageImages.h"
#include "ui/PDFPageLayout.h"

#include <QAbstractScrollArea>
#include <QSet>
#include <QTimer>

#include <memory>
#include <optional>

namespace dorvantel {

class PDFPageRenderer;

/// The pages of a document one below the other, scaled to fit the width of the view, whatever width that is. Scrolls
/// with the wheel, the arrow keys, Page Up, Page Down, Home and End.
///
/// Never waits for the pages: the ones in sight are drawn first, then the one below and the one above, one at a time,
/// and what nobody looks at any more is not drawn. A page not drawn yet is a blank sheet with its number; one that
/// cannot be drawn says so. The images of the pages take 160 MB at most, one of them 48 MB at most: a page that the
/// screen has more than 12 million pixels for is drawn with these. Lives on the UI thread.
class PDFView final : public QAbstractScrollArea {
    Q_OBJECT

public:
    static constexpr qint64 mostImagePixels = 12'000'000;
    static constexpr qint64 mostImageBytes = 160'000'000; ///< of all images together, four bytes a pixel

    enum class PageState { Waiting, Drawn, Unavailable };

    explicit PDFView(QWidget* parent = nullptr);
    ~PDFView() override;

    /// Shows another document of `pageCount` pages from its beginning. Nothing when there is no renderer.
    void setDocument(int pageCount, std::unique_ptr<PDFPageRenderer> renderer);

    int pageCount() const { return m_layout.pageCount(); }
    /// Whether the page can be seen as it is, from some scale on.
    PageState pageState(int page) const;
    /// The pages that are in sight, in whole or in part.
    PDFPageLayout::Span pagesInSight() const;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void openDocument();
    void takeSizes(const QList<QSizeF>& sizes);
    void takeImage(int page, const QImage& image);
    void layOut();
    QSize imageSizeOf(int page) const;
    QList<int> wantedPages() const;
    bool needsDrawing(int page) const;
    void drawNext();
    void paintPage(QPainter& painter, int page) const;

    std::unique_ptr<PDFPageRenderer> m_renderer;
    bool m_wasOpened = false; ///< whether the renderer was told to
    bool m_isOpen = false;    ///< whether it has
    QList<QSizeF> m_sizes;    ///< of the pages in points, all showable
    PDFPageLayout m_layout;
    PDFPageImages m_images{mostImageBytes};
    QSet<int> m_unavailable;
    std::optional<int> m_drawing; ///< the page that is being drawn
    QTimer m_patience;            ///< runs while it is in the way of one in sight
};

} // namespace dorvantel
