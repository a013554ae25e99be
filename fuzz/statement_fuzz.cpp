// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Fuzz.h"
#include "service/api/Statement.h"
#include "tests/service/StatementText.h"

using namespace dorvantel::fuzz;
using namespace dorvantel::service;

/// Whatever a client sends as a statement: it is the one text of a plan, or refused with a place within it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view sql = textOf(data, size);
    const auto plan = parseStatement(sql);
    if (!plan) {
        require(plan.error().offset <= sql.size(), "the place of the error is in the text");
        require(!plan.error().expected.empty(), "the error says what was expected");
        return 0;
    }
    require(plan->predicates.size() <= maxPredicates, "conditions have a limit");
    require(!plan->similarTo || plan->similarTo->size() <= maxQueryVectorLength, "vectors have a limit");
    require(!plan->best || *plan->best == 5, "only the best five can be asked for");
    const std::string text = dorvantel::test::statementText(*plan);
    require(plan->similarTo || text == sql, "a plan without a vector has one text");
    require(parseStatement(text) == *plan, "the text of a plan asks for that plan");
    return 0;
}
