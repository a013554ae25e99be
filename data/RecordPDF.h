// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/DBRecordRepresentation.h"

namespace dorvantel {

class PDFOpener;
class RecordsService;

/// Gives the record's PDF to `completion`, exactly once, on the UI thread; null when it cannot be had. Called there.
///  - What has been opened already is given at once, inside this call; null when it turned out to be no PDF.
///  - Bytes that are there and were not opened yet are opened without asking the records service. Opening takes a
///    process of its own, so the answer comes later.
///  - Otherwise the bytes are fetched by the record's e-mail, opened, and both are kept in the record.
///
/// Who asks while the PDF is being loaded waits in `pdfLoadCallbacks`: there is one request and one opening, and all
/// are called in the order in which they asked, with the same document. That list is emptied before anyone is called,
/// so a completion may ask again. A request that failed or brought no bytes is not remembered: the next call
/// asks again. Bytes that do not open are: they are the record's PDF for good. A failed request is one line in the log.
///
/// The load holds the record weakly: when the record goes first, nobody is called and nothing is logged. The services
/// have to outlive the record.
void loadPDF(const DBRecordPointer& record, RecordsService& records, PDFOpener& opener,
             DBRecordRepresentation::PDFCallback completion);

} // namespace dorvantel
