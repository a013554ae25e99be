// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/IntakeState.h"

namespace dorvantel {

void IntakeState::setValues(SheetValues values) {
    m_values = std::move(values);
    Q_EMIT valuesReplaced();
}

void IntakeState::setPDFDocument(std::shared_ptr<PDFDocument> document) {
    Q_ASSERT(document);
    m_pdfDocument = std::move(document);
}

void IntakeState::setSheetIsShowing(bool showing) {
    if (m_sheetIsShowing != showing) {
        m_sheetIsShowing = showing;
        Q_EMIT sheetIsShowingChanged();
    }
}

void IntakeState::setDataExtracted(bool extracted) {
    if (m_dataExtracted != extracted) {
        m_dataExtracted = extracted;
        Q_EMIT dataExtractedChanged();
    }
}

void IntakeState::setProcessingError(std::optional<QString> message) {
    if (m_processingError != message) {
        m_processingError = std::move(message);
        Q_EMIT processingErrorChanged();
    }
}

} // namespace dorvantel
