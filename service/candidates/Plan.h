// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace dorvantel::service {

/// What of a candidate a search can ask for. Stores keep these numbers: never renumber.
enum class Trait { Gender = 0, TechSkill = 1, SoftSkill = 2, Language = 3 };

/// The candidate has exactly this value: compared byte for byte, no case folding, no trimming.
struct Predicate {
    Trait trait = Trait::Gender;
    std::string value;

    auto operator<=>(const Predicate&) const = default;
};

/// What a search statement asks for, free of its syntax. Stores run plans; neither the statements nor HTTP know which
/// store does.
struct Plan {
    std::vector<Predicate> predicates; ///< all of them must hold; none at all lets every candidate through
    /// Present: the score is the dot product with this vector, moved from -1..1 to 0..100 and clamped, and candidates
    /// without a vector do not take part. Absent: every score is 100.
    std::optional<std::vector<float>> similarTo;
    /// Present: only so many, the highest scores first, equal scores in the order of insertion. Absent: all, in the
    /// order of insertion.
    std::optional<std::size_t> best;

    bool operator==(const Plan&) const = default;
};

} // namespace dorvantel::service
