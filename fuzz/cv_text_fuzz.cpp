// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Fuzz.h"
#include "service/candidates/CVText.h"
#include "service/candidates/JsonText.h"

using namespace dorvantel::fuzz;
using namespace dorvantel::service;

/// The CV data that clients build by hand: what is read is also what the answers say.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = textOf(data, size);
    if (const auto read = readCVText(text)) {
        require(strictJSON(text).has_value(), "what can be read can be written strictly");
        const auto again = readCVText(cvDataJSON(*read));
        require(again && *again == *read, "CV data reads back as it was");
    } else {
        require(!read.error().empty(), "a refusal says why");
    }
    return 0;
}
