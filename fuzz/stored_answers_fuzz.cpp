// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Agreement.h"
#include "fuzz/Fuzz.h"
#include "records/Responses.h"
#include "records/WireRecords.h"
#include "tests/records/PlainDecoder.h"

using namespace dorvantel;
using namespace dorvantel::fuzz;

/// The answers of the records service, from whoever may stand in its place: list, PDF, search and insert.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray body(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const test::PlainDocument plain(body);
    const auto isSame = [](const auto& a, const auto& b) { return test::isSame(a, b); };

    const auto list = decodeQueryResponse(body);
    requireAgreement(test::plainQueryResponse(plain), list, isSame);
    if (!list) {
        require(decodingFailureLines(list.error(), body).size() >= 2, "the log says why");
    }
    requireAgreement(test::plainFileResponse(plain), decodeFileResponse(body), isSame);
    requireAgreement(test::plainSearchResponse(plain), decodeSearchResponse(body), isSame);
    const auto record = decodeDBRecord(body);
    requireAgreement(test::plainDBRecord(plain), record, isSame);
    if (record) {
        const auto written = encodeDBRecord(*record);
        require(written.has_value(), "a record that was read can be written");
        require(decodeDBRecord(*written) == *record, "a record reads back as it was");
    }
    return 0;
}
