// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/DBRecordRepresentation.h"
#include "intake/CandidateTabs.h"

#include <QWidget>

namespace dorvantel {

class PDFOpener;
class RecordsService;
class SegmentedControl;

/// A stored candidate from four sides: the CV, its text, the extraction prompt with the stored data, and the mail
/// prompt with the stored mail. Loads the PDF when it is first shown; a page is filled when it is first looked at.
/// Displays only: the record is not changed but for its PDF. Lives on the UI thread, may go while the PDF is being
/// loaded, and is outlived by the services that it was given.
class CandidateDetailUIView : public QWidget {
    Q_OBJECT

public:
    CandidateDetailUIView(DBRecordPointer dbRecord, RecordsService& records, PDFOpener& pdfs,
                          QWidget* parent = nullptr);

    const DBRecordPointer& dbRecord() const { return m_dbRecord; }
    mainTagTypes mainTagType() const;
    extractTagTypes extractTagType() const;
    correoTagTypes correoTagType() const;

    /// Null until the PDF is there, and when it cannot be had.
    const std::shared_ptr<PDFDocument>& pdfDocument() const { return m_pdfDocument; }
    bool isLoadingPDF() const { return m_isLoadingPDF; }
    /// What the language model is given of the CV; present with the document.
    const std::optional<QString>& pdfText() const { return m_pdfText; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    class Page;
    static Page* makePage(const QString& objectName, std::function<QWidget*()> make);
    void loadPDFIfNeeded();
    void showDocument(std::shared_ptr<PDFDocument> document);
    void renewPages();
    QWidget* makePDFPage() const;
    QWidget* makeTextPage() const;

    DBRecordPointer m_dbRecord;
    RecordsService& m_records;
    PDFOpener& m_pdfs;
    SegmentedControl* m_mainTags;
    SegmentedControl* m_extractTags;
    SegmentedControl* m_correoTags;
    std::vector<Page*> m_pagesOfPDF; ///< show the PDF or its text
    std::shared_ptr<PDFDocument> m_pdfDocument;
    std::optional<QString> m_pdfText;
    bool m_isLoadingPDF = false;
    bool m_wasShown = false;
};

} // namespace dorvantel
