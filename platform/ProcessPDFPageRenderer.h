// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PDFPageRenderer.h"
#include "platform/PDFRenderFrames.h"

#include <QProcess>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

namespace dorvantel {

class PDFDocument;

/// Draws the pages in a process of its own with limits on time and memory, so that a page on which the PDF library
/// crashes, never ends or eats memory costs that page and not the window. The process lives as long as the renderer,
/// and is started anew for the next page when a page has cost it its life. The pixels come through a pipe, a piece per
/// event, so that large pages do not hold up the window either.
class ProcessPDFPageRenderer final : public PDFPageRenderer {
    Q_OBJECT

public:
    /// `readerProgram` is the path of dorvantel-pdf-reader; `timeLimit` is for opening the document, and for each page
    /// from the call of `render` to its last pixel. When the program cannot be started, the document does not open.
    ProcessPDFPageRenderer(QString readerProgram, std::shared_ptr<const PDFDocument> document,
                           std::chrono::milliseconds timeLimit = std::chrono::seconds(10));
    ~ProcessPDFPageRenderer() override;

    void open() override;
    void render(int page, QSize pixels) override;
    void giveUp() override;

private:
    void start();
    void sendRequest();
    void end();
    void fail();
    void read();
    void readPageSizes();
    bool readAnswer();
    void readPixels();
    void report(const QImage& image);

    QString m_readerProgram;
    std::shared_ptr<const PDFDocument> m_document;
    QTimer m_limit;
    std::unique_ptr<QProcess> m_process;    ///< none when the last one ended and no page was asked for since
    bool m_isOpening = false;               ///< whether somebody waits for `opened`
    bool m_isReady = false;                 ///< whether the process has opened the document
    std::optional<RenderRequest> m_request; ///< the page that is to be reported
    QImage m_image;                         ///< as far as it has come; null until the answer's head is there
    qsizetype m_received = 0;               ///< bytes of it
};

} // namespace dorvantel
