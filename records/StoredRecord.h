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

// A candidate as a JSON object that keeps everything the program knows of it, its identity too; the records service
// never sees this form. Pure functions; any thread.

/// None when a text has no UTF-8 form. Absent texts and an absent PDF have no key.
std::optional<QByteArray> encodeStored(const DBRecordRepresentation& record);

/// The candidate, waited for by nobody.
std::expected<DBRecordPointer, DecodeError> decodeStored(QByteArrayView json);

} // namespace dorvantel
