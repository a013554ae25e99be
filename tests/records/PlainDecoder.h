// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "records/WireRecords.h"
#include "tests/support/PlainJson.h"

#include <vector>

namespace dorvantel::test {

// The records of the service, decoded the plain way.

PlainlyDecoded<std::vector<DBRecordResponse>> plainQueryResponse(const PlainDocument& body);
PlainlyDecoded<FileResponse> plainFileResponse(const PlainDocument& body);
PlainlyDecoded<SearchResponse> plainSearchResponse(const PlainDocument& body);
PlainlyDecoded<DBRecord> plainDBRecord(const PlainDocument& body);

bool isSame(const std::vector<DBRecordResponse>& plain, const std::vector<DBRecordPointer>& real);
bool isSame(const FileResponse& plain, const FileResponse& real);
bool isSame(const SearchResponse& plain, const SearchResponse& real);
bool isSame(const DBRecord& plain, const DBRecord& real);

} // namespace dorvantel::test
