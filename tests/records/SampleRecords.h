// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/DBRecordRepresentation.h"

namespace dorvantel::test {

/// A candidate that may be inserted, without a PDF.
inline DBRecordPointer sampleRecord() {
    auto record = std::make_shared<DBRecordRepresentation>();
    record->name = QStringLiteral("Ana");
    record->profession = QStringLiteral("Contable");
    record->email = QStringLiteral("ana@example.com");
    record->summarizedText = QStringLiteral("Resumen");
    record->invitationMail = QStringLiteral("Estimada Ana");
    record->jsonCVData = {
        QStringLiteral("Femenino"), {QStringLiteral("A")}, {QStringLiteral("X")}, {QStringLiteral("Español")}};
    return record;
}

} // namespace dorvantel::test
