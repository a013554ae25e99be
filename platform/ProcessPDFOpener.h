// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PDFOpener.h"

#include <QString>

#include <chrono>

namespace dorvantel {

/// Opens every PDF in a short-lived process of its own with limits on time and memory, so that a PDF on which the PDF
/// library crashes, never ends or eats memory costs one PDF and not the program. The window stays alive meanwhile.
/// Several may be opened at once. An opening outlives the opener, but not its context.
class ProcessPDFOpener final : public PDFOpener {
public:
    /// `readerProgram` is the path of dorvantel-pdf-reader; `timeLimit` is from the call of `open` to the last byte of
    /// the page texts, and holds for each page that is drawn. When the program cannot be started, no PDF opens.
    explicit ProcessPDFOpener(QString readerProgram, std::chrono::milliseconds timeLimit = std::chrono::seconds(10));

    void open(const QByteArray& bytes, QObject* context, Completion completion) override;
    std::unique_ptr<PDFPageRenderer> makeRenderer(std::shared_ptr<const PDFDocument> document) const override;

private:
    QString m_readerProgram;
    std::chrono::milliseconds m_timeLimit;
};

/// Where dorvantel-pdf-reader is, seen from the folder of the running program (QCoreApplication::applicationDirPath):
/// beside it, as in a build, else as installed, which is ../libexec/dorvantel unless the build was configured
/// otherwise. Empty when it is in neither place.
QString findPDFReader(const QString& programFolder);

} // namespace dorvantel
