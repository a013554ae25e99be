// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Plan.h"

#include <array>
#include <charconv>
#include <string>

namespace dorvantel::test {

/// The statement that asks for a plan, written by hand and not by the parser's own tables. Without a vector there is
/// only one, so it must be the very text that the plan was read from.
inline std::string statementText(const service::Plan& plan) {
    std::string text = "select name,profession,email,summarizedText,invitationMail,jsonCVData,";
    if (plan.similarTo) {
        text += "GREATEST(0, LEAST(100, (dot_product(vector, JSON_ARRAY_PACK('[";
        const char* separator = "";
        for (const float number : *plan.similarTo) {
            // As a double, which is what the parser reads before it narrows.
            std::array<char, 32> digits{};
            const auto end =
                std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<double>(number)).ptr;
            text += separator + std::string(digits.data(), end);
            separator = ",";
        }
        text += "]')) + 1) * 50)) AS score";
    } else {
        text += "100.0 as score";
    }
    text += " from curriculums";
    const char* joint = " where ";
    for (const auto& [trait, value] : plan.predicates) {
        text += joint;
        joint = " AND ";
        if (trait == service::Trait::Gender) {
            text += "jsonCVData::gender = '\"" + value + "\"'";
            continue;
        }
        text += "JSON_ARRAY_CONTAINS_STRING(jsonCVData::";
        text += trait == service::Trait::TechSkill   ? "techSkills"
                : trait == service::Trait::SoftSkill ? "softSkills"
                                                     : "languages";
        text += ",'" + value + "')";
    }
    return text + (plan.best ? " ORDER BY score DESC LIMIT 5" : "");
}

} // namespace dorvantel::test
