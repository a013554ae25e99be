// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/PDFPageServer.h"

#include "platform/PDFRenderFrames.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfDocument>

#include <type_traits>

namespace dorvantel {

namespace {

bool read(std::FILE* file, void* data, std::size_t size) {
    return std::fread(data, 1, size, file) == size;
}

bool write(std::FILE* file, const void* data, std::size_t size) {
    return std::fwrite(data, 1, size, file) == size;
}

template <typename Frame>
bool readFrame(std::FILE* file, Frame& frame) {
    static_assert(std::is_trivially_copyable_v<Frame>);
    return read(file, &frame, sizeof frame);
}

template <typename Frame>
bool writeFrame(std::FILE* file, const Frame& frame) {
    static_assert(std::is_trivially_copyable_v<Frame>);
    return write(file, &frame, sizeof frame);
}

bool writePageSizes(std::FILE* output, const QPdfDocument& document) {
    bool isWritten = writeFrame(output, RenderOpened{RenderOpened::signature});
    for (int page = 0; page < document.pageCount(); ++page) {
        const QSizeF size = document.pagePointSize(page);
        isWritten = isWritten && writeFrame(output, RenderPageSize{static_cast<float>(size.width()),
                                                                   static_cast<float>(size.height())});
    }
    return isWritten && std::fflush(output) == 0;
}

/// The page on white paper; null when it cannot be drawn.
QImage draw(QPdfDocument& document, const RenderRequest& request) {
    const QSize size(static_cast<int>(request.width), static_cast<int>(request.height));
    QPdfDocumentRenderOptions options;
    // Stamps, and text typed over the page. The library does not draw the fields of forms.
    options.setRenderFlags(QPdfDocumentRenderOptions::RenderFlag::Annotations);
    const QImage page = document.render(static_cast<int>(request.page), size, options);
    if (page.size() != size) {
        return {};
    }
    QImage paper(size, QImage::Format_RGB32);
    if (!paper.isNull()) {
        paper.fill(Qt::white);
        QPainter(&paper).drawImage(0, 0, page);
    }
    return paper;
}

bool writeAnswer(std::FILE* output, const RenderRequest& request, const QImage& image) {
    return writeFrame(output, RenderAnswer{request, image.isNull() ? 0U : 1U}) &&
           write(output, image.constBits(), static_cast<std::size_t>(image.sizeInBytes())) && std::fflush(output) == 0;
}

} // namespace

bool servePages(std::FILE* input, std::FILE* output, const std::function<void()>& beforeEachPage) {
    RenderDocument announced{};
    if (!readFrame(input, announced)) {
        return false;
    }
    QByteArray bytes(static_cast<qsizetype>(announced.bytes), Qt::Uninitialized);
    if (!read(input, bytes.data(), announced.bytes)) {
        return false;
    }
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QPdfDocument document;
    document.load(&buffer);
    // Not by its status: a file whose page tree is damaged ends as "Error" although its pages can be drawn.
    if (document.error() != QPdfDocument::Error::None || document.pageCount() < 1 ||
        static_cast<std::uint32_t>(document.pageCount()) != announced.pages || !writePageSizes(output, document)) {
        return false;
    }
    RenderRequest request{};
    while (readFrame(input, request)) {
        beforeEachPage();
        if (!writeAnswer(output, request, draw(document, request))) {
            return false;
        }
    }
    return true;
}

} // namespace dorvantel
