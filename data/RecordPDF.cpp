// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/RecordPDF.h"

#include "data/RecordsService.h"
#include "platform/Log.h"
#include "platform/PDFOpener.h"

#include <utility>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

/// `document` is a copy of the callers' own: what the record holds may change under their hands.
void answer(DBRecordRepresentation& record, std::shared_ptr<PDFDocument> document) {
    for (const auto& callback : std::exchange(record.pdfLoadCallbacks, {})) {
        callback(document);
    }
}

void openFile(const DBRecordPointer& record, PDFOpener& opener) {
    record->pdfOpening = std::make_unique<QObject>();
    opener.open(*record->file, record->pdfOpening.get(),
                [weak = std::weak_ptr(record)](std::shared_ptr<PDFDocument> document) {
                    // Held for as long as the callbacks run: one of them may release it.
                    if (const DBRecordPointer loaded = weak.lock()) {
                        loaded->keepDocument(document);
                        answer(*loaded, std::move(document));
                    }
                });
}

void fetchFile(const DBRecordPointer& record, RecordsService& records, PDFOpener& opener) {
    records.fetchPDF(record->email, [weak = std::weak_ptr(record),
                                     &opener](std::expected<std::optional<QByteArray>, APIError> fetched) {
        const DBRecordPointer loaded = weak.lock();
        if (!loaded) {
            return;
        }
        if (!fetched) {
            logLine(u"❌ Failed to load PDF for "_s + loaded->email + u": "_s + caseName(fetched.error()));
            answer(*loaded, nullptr);
            return;
        }
        loaded->file = std::move(*fetched);
        if (loaded->file) {
            openFile(loaded, opener);
        } else {
            answer(*loaded, nullptr);
        }
    });
}

} // namespace

void loadPDF(const DBRecordPointer& record, RecordsService& records, PDFOpener& opener,
             DBRecordRepresentation::PDFCallback completion) {
    if (record->isPDFOpened()) {
        completion(record->pdfDocument());
        return;
    }
    record->pdfLoadCallbacks.push_back(std::move(completion));
    if (record->pdfLoadCallbacks.size() > 1) {
        return; // it is being loaded
    }
    if (record->file) {
        openFile(record, opener);
    } else {
        fetchFile(record, records, opener);
    }
}

} // namespace dorvantel
