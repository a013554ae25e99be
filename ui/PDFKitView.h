// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <memory>

class QPdfView;

namespace dorvantel {

class PDFDocument;

/// Shows a document from its first page to its last, scaled to fit the width of the view, whatever width that is. Pages
/// are drawn on a thread of their own. The empty document shows nothing. Lives on the UI thread.
class PDFKitView final : public QWidget {
    Q_OBJECT

public:
    explicit PDFKitView(std::shared_ptr<const PDFDocument> pdfDocument, QWidget* parent = nullptr);
    ~PDFKitView() override;

    const std::shared_ptr<const PDFDocument>& pdfDocument() const { return m_pdfDocument; }

    /// Shows another document from its beginning. The document that is shown already stays as it is scrolled.
    void setPDFDocument(std::shared_ptr<const PDFDocument> pdfDocument);

    /// The control that shows the pages, made once.
    QPdfView* pdfView() const { return m_pdfView; }

private:
    struct OpenDocument;
    void open();

    std::shared_ptr<const PDFDocument> m_pdfDocument;
    std::unique_ptr<OpenDocument> m_open; ///< what the view reads the pages from
    QPdfView* m_pdfView;
};

} // namespace dorvantel
