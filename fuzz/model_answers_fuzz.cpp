// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/ExtractedInfoRepresentation.h"
#include "fuzz/Fuzz.h"
#include "intake/Answers.h"

using namespace dorvantel;
using namespace dorvantel::fuzz;

/// What a language model answers: anything. Run it with -close_fd_mask=1, the readers say on standard output how it
/// went.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString answer = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const ExtractedInfoRepresentation info(answer, answer);
    require(!info.languages.isEmpty() && info.languages.front() == QStringLiteral("Español"),
            "the languages begin with Spanish");
    require(!info.description().isEmpty(), "it can be described");
    require(parseExtractionAnswer(answer) == parseExtractionAnswer(answer), "the same answer gives the same fields");
    require(parseMailAnswer(answer).size() <= answer.size() + 1, "a mail is taken out of its answer, not made up");
    return 0;
}
