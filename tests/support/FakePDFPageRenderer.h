// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PDFPageRenderer.h"

#include <optional>

namespace dorvantel::test {

/// Draws nothing by itself: each page waits until the test answers it with a colour, or as one that cannot be drawn.
class FakePDFPageRenderer final : public PDFPageRenderer {
public:
    struct Request {
        int page = 0;
        QSize pixels;
    };

    void open() override { ++openings; }
    void render(int page, QSize pixels) override {
        request = {page, pixels};
        pages.append(page);
    }
    void giveUp() override {
        request.reset();
        ++givenUp;
    }

    void succeedOpening(const QList<QSizeF>& pageSizes) { Q_EMIT opened(pageSizes); }
    void failOpening() { Q_EMIT opened({}); }
    void succeed(const QColor& colour) {
        const Request answered = *std::exchange(request, std::nullopt);
        QImage image(answered.pixels, QImage::Format_RGB32);
        image.fill(colour);
        Q_EMIT rendered(answered.page, image);
    }
    void fail() { Q_EMIT rendered(std::exchange(request, std::nullopt)->page, QImage()); }

    int openings = 0;
    std::optional<Request> request; ///< the one that waits for its answer
    QList<int> pages;               ///< of all requests so far
    int givenUp = 0;
};

} // namespace dorvantel::test
