// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Fuzz.h"
#include "fuzz/PlainBody.h"
#include "service/embedding/Embedding.h"

#include <algorithm>
#include <cmath>

using namespace dorvantel::fuzz;
using namespace dorvantel::service;

namespace {

std::optional<std::vector<double>> plainVector(const PlainBody& plain) {
    const auto found = plain.value.find("embeddings");
    if (found == plain.value.end() || !found->is_array() || found->empty() || !found->front().is_array()) {
        return std::nullopt;
    }
    const nlohmann::json& numbers = found->front();
    const bool areNumbers = std::ranges::all_of(numbers, [](const nlohmann::json& one) { return one.is_number(); });
    return areNumbers ? std::optional(numbers.get<std::vector<double>>()) : std::nullopt;
}

} // namespace

/// What a model server answers the records service, held against another reader of JSON.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string body(textOf(data, size));
    const PlainBody plain(body);
    const auto vector = readVectorAnswer(body);
    if (plain.isComparable) {
        const auto expected = plainVector(plain);
        require(vector.has_value() == expected.has_value(), "a vector is taken where one stands");
        require(!vector || *vector == *expected, "a vector is taken as it stands");
    }
    if (!vector) {
        require(vector.error().concernsText && !vector.error().message.empty(), "a refusal says why");
        return 0;
    }
    require(!plain.value.is_discarded(), "what is taken is JSON");
    const bool hasDirection = std::ranges::any_of(*vector, [](double number) { return number != 0; });
    const auto unit = unitVector(*vector);
    require(unit.has_value() == hasDirection, "a vector with a direction can be ranked");
    if (unit) {
        double squares = 0;
        for (const float number : *unit) {
            squares += static_cast<double>(number) * static_cast<double>(number);
        }
        require(unit->size() == vector->size() && std::abs(squares - 1) < 1e-5, "it has length one");
    }
    return 0;
}
