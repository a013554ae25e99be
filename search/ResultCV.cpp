// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/ResultCV.h"

#include "data/RecordsService.h"
#include "platform/Log.h"
#include "platform/PDFOpener.h"

#include <QPointer>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

bool holdsBytes(const std::optional<QByteArray>& file) {
    return file && !file->isEmpty();
}

} // namespace

ResultCV::ResultCV(std::shared_ptr<const IdentifiableQueryResult> result, RecordsService& records, PDFOpener& opener,
                   QObject* parent)
    : QObject(parent)
    , m_result(std::move(result))
    , m_records(records)
    , m_opener(opener) {}

void ResultCV::requestPreview() {
    if (m_loadedPDFDocument) {
        Q_EMIT previewRequested();
        return;
    }
    setLoading(true);
    if (holdsBytes(m_result->file)) {
        open(*m_result->file);
    } else {
        fetch();
    }
}

void ResultCV::fetch() {
    // The log says how a fetch ended even when nobody waits for it any more.
    m_records.fetchPDF(m_result->email, [self = QPointer<ResultCV>(this), email = m_result->email](
                                            std::expected<std::optional<QByteArray>, APIError> answer) {
        if (answer && holdsBytes(*answer)) {
            if (self) {
                self->open(**answer);
            }
            return;
        }
        if (self) {
            self->setLoading(false);
        }
        logLine(answer ? u"⚠️ No PDF available for "_s + email : u"❌ Error loading PDF: "_s + caseName(answer.error()));
    });
}

void ResultCV::open(const QByteArray& bytes) {
    m_opener.open(bytes, this, [this](std::shared_ptr<PDFDocument> document) {
        if (document) {
            m_loadedPDFDocument = std::move(document);
        }
        setLoading(false);
        Q_EMIT previewRequested();
    });
}

void ResultCV::setLoading(bool isLoading) {
    if (m_isLoadingPDF != isLoading) {
        m_isLoadingPDF = isLoading;
        Q_EMIT isLoadingPDFChanged();
    }
}

} // namespace dorvantel
