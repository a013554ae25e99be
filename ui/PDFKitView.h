// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <memory>

namespace dorvantel {

class PDFDocument;
class PDFOpener;
class PDFView;

/// Shows a document from its first page to its last, scaled to fit the width of the view, whatever width that is. The
/// empty document shows nothing. Lives on the UI thread and never waits for the pages, which `pdfs` has drawn.
class PDFKitView final : public QWidget {
    Q_OBJECT

public:
    PDFKitView(std::shared_ptr<const PDFDocument> pdfDocument, const PDFOpener& pdfs, QWidget* parent = nullptr);
    ~PDFKitView() override;

    const std::shared_ptr<const PDFDocument>& pdfDocument() const { return m_pdfDocument; }

    /// Shows another document from its beginning. The document that is shown already stays as it is scrolled.
    void setPDFDocument(std::shared_ptr<const PDFDocument> pdfDocument);

    /// The control that shows the pages, made once.
    PDFView* pdfView() const { return m_pdfView; }

private:
    void open();

    std::shared_ptr<const PDFDocument> m_pdfDocument;
    const PDFOpener& m_pdfs;
    PDFView* m_pdfView;
};

} // namespace dorvantel
