// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Fuzz.h"
#include "records/WireRecords.h"

#include <nlohmann/json.hpp>

using namespace dorvantel;
using namespace dorvantel::fuzz;

namespace {

void requireJSON(bool isDecoded, std::string_view body) {
    require(!isDecoded || nlohmann::json::accept(body), "what decodes is JSON");
}

} // namespace

/// The answers of the records service, from whoever may stand in its place.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view body = textOf(data, size);
    const QByteArray bytes(body.data(), static_cast<qsizetype>(body.size()));
    const auto list = decodeQueryResponse(bytes);
    requireJSON(list.has_value(), body);
    if (!list) {
        require(!debugText(list.error()).isEmpty(), "an error has a text");
    }
    requireJSON(decodeFileResponse(bytes).has_value(), body);
    requireJSON(decodeSearchResponse(bytes).has_value(), body);
    const auto record = decodeDBRecord(bytes);
    requireJSON(record.has_value(), body);
    if (record) {
        const auto written = encodeDBRecord(*record);
        require(written.has_value(), "a record that was read can be written");
        require(decodeDBRecord(*written) == *record, "a record reads back as it was");
    }
    return 0;
}
