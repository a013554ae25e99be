// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/PDFKitView.h"

#include "platform/PDFDocument.h"

#include <QBuffer>
#include <QPdfDocument>
#include <QPdfView>
#include <QScrollBar>
#include <QVBoxLayout>

namespace dorvantel {

using namespace Qt::StringLiterals;

/// The library reads from the buffer for as long as the document is open.
struct PDFKitView::OpenDocument {
    QBuffer buffer;
    QPdfDocument document{nullptr};
};

PDFKitView::PDFKitView(std::shared_ptr<const PDFDocument> pdfDocument, QWidget* parent)
    : QWidget(parent)
    , m_pdfDocument(std::move(pdfDocument))
    , m_pdfView(new QPdfView(this)) {
    m_pdfView->setPageMode(QPdfView::PageMode::MultiPage);
    m_pdfView->setZoomMode(QPdfView::ZoomMode::FitToWidth);
    m_pdfView->setFrameShape(QFrame::NoFrame);
    // A scroll bar that came and went with the height of the pages would change their width, and so their height.
    m_pdfView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_pdfView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pdfView->setAccessibleName(u"PDF"_s);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pdfView);
    setFocusProxy(m_pdfView);
    open();
}

PDFKitView::~PDFKitView() {
    // Its thread may be drawing a page of the open document.
    delete m_pdfView;
}

void PDFKitView::setPDFDocument(std::shared_ptr<const PDFDocument> pdfDocument) {
    if (m_pdfDocument != pdfDocument) {
        m_pdfDocument = std::move(pdfDocument);
        open();
    }
}

void PDFKitView::open() {
    std::unique_ptr<OpenDocument> opened;
    if (m_pdfDocument && !m_pdfDocument->dataRepresentation().isEmpty()) {
        opened = std::make_unique<OpenDocument>();
        opened->buffer.setData(m_pdfDocument->dataRepresentation());
        opened->buffer.open(QIODevice::ReadOnly);
        opened->document.load(&opened->buffer);
    }
    m_pdfView->setDocument(opened ? &opened->document : nullptr);
    m_open = std::move(opened);
    m_pdfView->verticalScrollBar()->setValue(0);
}

} // namespace dorvantel
