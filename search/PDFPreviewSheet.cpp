// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/PDFPreviewSheet.h"

#include "ui/PDFKitView.h"
#include "ui/Style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace dorvantel {

using namespace Qt::StringLiterals;

PDFPreviewSheet::PDFPreviewSheet(const std::shared_ptr<const PDFDocument>& pdfDocument, const PDFOpener& pdfs,
                                 QWidget* parent)
    : QDialog(parent) {
    setObjectName(u"pdfPreview"_s);
    setWindowTitle(u"Vista previa del CV"_s);
    setWindowModality(Qt::WindowModal);
    setMinimumSize(600, 700);

    auto* title = new QLabel(u"Vista previa del CV"_s);
    title->setFont(textFont(TextStyle::Headline));
    auto* close = new QPushButton(u"Cerrar"_s);
    close->setObjectName(u"close"_s);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);

    auto* header = new QHBoxLayout;
    header->setContentsMargins(spacing::standard, spacing::gridRow, spacing::standard, spacing::gridRow);
    header->addWidget(title);
    header->addStretch();
    header->addWidget(close);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(header);
    column->addWidget(new PDFKitView(pdfDocument, pdfs), 1);
}

} // namespace dorvantel
