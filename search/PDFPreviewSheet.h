// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <memory>

namespace dorvantel {

class PDFDocument;
class PDFOpener;

/// A candidate's CV over the search screen, from 600 × 700 points up. "Cerrar" and Escape close it.
class PDFPreviewSheet : public QDialog {
    Q_OBJECT

public:
    PDFPreviewSheet(const std::shared_ptr<const PDFDocument>& pdfDocument, const PDFOpener& pdfs, QWidget* parent);
};

} // namespace dorvantel
