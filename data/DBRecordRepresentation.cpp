// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/DBRecordRepresentation.h"

#include "platform/Fatal.h"

namespace dorvantel {

DBRecord DBRecordRepresentation::toDBRecord() const {
    if (!summarizedText || !invitationMail) {
        fatalError(QStringLiteral("a record without summary or mail was to be inserted"));
    }
    return {name, profession, email, *summarizedText, *invitationMail, jsonCVData.jsonString(), file};
}

} // namespace dorvantel
