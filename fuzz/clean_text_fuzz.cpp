// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Fuzz.h"
#include "intake/CVText.h"
#include "tests/support/PlainCleaning.h"

using namespace dorvantel;
using namespace dorvantel::fuzz;

/// The quick cleaning of a CV's text is the plain one over ICU, for every sequence of code units.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = unitsOf(data, size);
    require(cleanExtractedText(text) == test::plainlyCleanedText(text), "both ways of cleaning agree");
    return 0;
}
