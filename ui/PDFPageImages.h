// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QImage>
#include <QList>

namespace dorvantel {

/// The images of a document's pages that were drawn, as many as fit into a number of bytes. Those that were used
/// longest ago go first.
class PDFPageImages {
public:
    explicit PDFPageImages(qint64 mostBytes)
        : m_mostBytes(mostBytes) {}

    /// Takes the place of the page's earlier image. An image that is too large by itself is not kept.
    void insert(int page, const QImage& image);

    /// The null image when there is none.
    QImage image(int page) const { return m_images.value(page); }

    /// These pages are used now, the first one most of all.
    void use(const QList<int>& pages);

    void clear();
    qint64 bytes() const { return m_bytes; }

private:
    void remove(int page);

    qint64 m_mostBytes;
    qint64 m_bytes = 0;
    QHash<int, QImage> m_images;
    QList<int> m_order; ///< the pages of m_images, the one used last first
};

} // namespace dorvantel
