// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/DBRecordRepresentation.h"
#include "platform/Decoding.h"

#include <QByteArray>
#include <QByteArrayView>

#include <expected>
#include <optional>

namespace dorvantel {

// A candidate as one JSON object, identity included, for keeping it on this side of the records service, whose own
// forms know no identity. Keys: "id", "name", "profession", "email", "jsonCVData" (an object), and where there is one
// "summarizedText", "invitationMail" and "file" (base64). Pure; any thread.

/// None when a text has no UTF-8 form.
std::optional<QByteArray> encodeStoredRecord(const DBRecordRepresentation& record);

/// A candidate with the identity it was stored with, and nobody waiting for its PDF.
std::expected<DBRecordPointer, DecodeError> decodeStoredRecord(QByteArrayView body);

} // namespace dorvantel
