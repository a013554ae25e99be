// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/PDFKitView.h"

#include "platform/PDFDocument.h"
#include "platform/PDFOpener.h"
#include "platform/PDFPageRenderer.h"
#include "ui/PDFView.h"

#include <QVBoxLayout>

namespace dorvantel {

PDFKitView::PDFKitView(std::shared_ptr<const PDFDocument> pdfDocument, const PDFOpener& pdfs, QWidget* parent)
    : QWidget(parent)
    , m_pdfDocument(std::move(pdfDocument))
    , m_pdfs(pdfs)
    , m_pdfView(new PDFView(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pdfView);
    setFocusProxy(m_pdfView);
    open();
}

PDFKitView::~PDFKitView() = default;

void PDFKitView::setPDFDocument(std::shared_ptr<const PDFDocument> pdfDocument) {
    if (m_pdfDocument != pdfDocument) {
        m_pdfDocument = std::move(pdfDocument);
        open();
    }
}

void PDFKitView::open() {
    const bool hasPages = m_pdfDocument && m_pdfDocument->pageCount() > 0;
    m_pdfView->setDocument(hasPages ? static_cast<int>(m_pdfDocument->pageCount()) : 0,
                           hasPages ? m_pdfs.makeRenderer(m_pdfDocument) : nullptr);
}

} // namespace dorvantel
