// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "intake/Validation.h"
#include "platform/PDFDocument.h"

#include <QObject>

#include <memory>
#include <optional>

namespace dorvantel {

/// What intake is doing and what it found: the state that the main window owns, the pipeline fills and the validation
/// sheet shows and edits. Lives on the UI thread.
class IntakeState : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The values on the sheet. They keep what the last extraction or the recruiter left until the next extraction.
    const SheetValues& values() const { return m_values; }
    SheetValues& editValues() { return m_values; } ///< for the sheet, the only one who edits
    void setValues(SheetValues values);            ///< a whole new extraction

    /// The CV that the values were taken from; what OK stores with them. Empty at first, never null.
    const std::shared_ptr<PDFDocument>& pdfDocument() const { return m_pdfDocument; }
    void setPDFDocument(std::shared_ptr<PDFDocument> document);

    bool sheetIsShowing() const { return m_sheetIsShowing; }
    void setSheetIsShowing(bool showing);

    /// True once the answers have been parsed into the values: the sheet shows them instead of its progress view.
    bool dataExtracted() const { return m_dataExtracted; }
    void setDataExtracted(bool extracted);

    /// The message of the error alert, while there is one.
    const std::optional<QString>& processingError() const { return m_processingError; }
    void setProcessingError(std::optional<QString> message);

Q_SIGNALS:
    void valuesReplaced();
    void sheetIsShowingChanged();
    void dataExtractedChanged();
    void processingErrorChanged();

private:
    SheetValues m_values;
    std::shared_ptr<PDFDocument> m_pdfDocument = std::make_shared<PDFDocument>();
    bool m_sheetIsShowing = false;
    bool m_dataExtracted = false;
    std::optional<QString> m_processingError;
};

} // namespace dorvantel
