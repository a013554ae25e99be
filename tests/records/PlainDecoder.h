// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Decoding.h"
#include "records/WireRecords.h"

#include <QByteArray>

#include <expected>
#include <optional>
#include <vector>

namespace dorvantel::test {

/// The records of the service decoded the plain way: the whole body into a document, then the document member by member
/// in the order of the record. Slow, and what the real decoders are held against. Contexts of errors are left empty.
/// None when the library behind it cannot tell (a number beyond a double's range).
template <typename T>
using PlainlyDecoded = std::optional<std::expected<T, DecodeError>>;

PlainlyDecoded<std::vector<DBRecordResponse>> plainQueryResponse(const QByteArray& body);
PlainlyDecoded<FileResponse> plainFileResponse(const QByteArray& body);
PlainlyDecoded<SearchResponse> plainSearchResponse(const QByteArray& body);
PlainlyDecoded<DBRecord> plainDBRecord(const QByteArray& body);

} // namespace dorvantel::test
