// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QObject>

#include <functional>
#include <memory>

namespace dorvantel {

class PDFDocument;
class PDFPageRenderer;

/// Opens PDFs from bytes, and draws what was opened. Lives on the UI thread, is called there and completes there.
class PDFOpener {
public:
    using Completion = std::function<void(std::shared_ptr<PDFDocument>)>;

    virtual ~PDFOpener() = default;

    /// Returns at once and calls `completion` exactly once, never from inside this call: with the document, or with
    /// null for bytes that do not open (not a PDF, broken, protected by a password, too slow or too large to read).
    /// When `context` is destroyed first, the opening is given up and `completion` is never called.
    virtual void open(const QByteArray& bytes, QObject* context, Completion completion) = 0;

    /// Whoever draws the pages of `document`, which is not null and has pages. Independent of the opener from then on.
    virtual std::unique_ptr<PDFPageRenderer> makeRenderer(std::shared_ptr<const PDFDocument> document) const = 0;
};

} // namespace dorvantel
