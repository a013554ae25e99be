// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <memory>

namespace dorvantel {

class PDFDocument;
class PDFOpener;
class RecordsService;
struct IdentifiableQueryResult;

/// The CV of one search result, loaded when it is first asked for and kept from then on. Lives on the UI thread;
/// outlived by the services that it was given. Failures are one line in the log.
class ResultCV : public QObject {
    Q_OBJECT

public:
    ResultCV(std::shared_ptr<const IdentifiableQueryResult> result, RecordsService& records, PDFOpener& opener,
             QObject* parent = nullptr);

    /// What the CV button does: asks for a preview, now or when the CV is there. Bytes that came with the result are
    /// used; otherwise every press that finds no document yet asks the records service.
    void requestPreview();

    /// From a press until the document is there or will not come.
    bool isLoadingPDF() const { return m_isLoadingPDF; }
    /// Null until a CV opened.
    const std::shared_ptr<PDFDocument>& loadedPDFDocument() const { return m_loadedPDFDocument; }

Q_SIGNALS:
    void isLoadingPDFChanged();
    /// The CV is to be shown. Without a document there was one, but its bytes do not open.
    void previewRequested();

private:
    void setLoading(bool isLoading);
    void fetch();
    void open(const QByteArray& bytes);

    std::shared_ptr<const IdentifiableQueryResult> m_result;
    RecordsService& m_records;
    PDFOpener& m_opener;
    bool m_isLoadingPDF = false;
    std::shared_ptr<PDFDocument> m_loadedPDFDocument;
};

} // namespace dorvantel
