// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QList>
#include <QObject>
#include <QSize>
#include <QSizeF>

namespace dorvantel {

/// Draws the pages of one document, one page at a time, somewhere that is not the UI thread. Lives on the UI thread, is
/// called there and reports there, never from inside a call. No call waits, and neither does the destructor: what is
/// being drawn then is given up. A slot of its signals may call it, but not destroy it.
class PDFPageRenderer : public QObject {
    Q_OBJECT

public:
    /// Opens the document, once, and reports with `opened`.
    virtual void open() = 0;

    /// Draws a page (0 is the first) as large as `pixels`, white where nothing is, and reports with `rendered`. Only
    /// after the document was opened, and not before the page before was reported or given up.
    virtual void render(int page, QSize pixels) = 0;

    /// Gives up the page that is being drawn, if any: it is not reported any more.
    virtual void giveUp() = 0;

Q_SIGNALS:
    /// The size of every page in points, as a reader sees the page. None when the document could not be opened.
    void opened(const QList<QSizeF>& pageSizes);

    /// The page as an opaque image of exactly the size asked for, or the null image when it could not be drawn: it
    /// takes too long, or too much memory, or breaks what draws it.
    void rendered(int page, const QImage& image);
};

} // namespace dorvantel
