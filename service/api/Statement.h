// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Plan.h"

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

namespace dorvantel::service {

/// Where a statement stops being one that the service runs, and what should stand there.
struct StatementError {
    std::size_t offset; ///< in bytes from the start of the statement
    std::string expected;
};

/// `expected` and `offset` as one sentence, for the error answer.
std::string statementErrorText(const StatementError& error);

/// More than any recruiter chooses; what bounds the work of one request.
constexpr std::size_t maxPredicates = 1'000;
constexpr std::size_t maxQueryVectorLength = 65'536;

/// Reads a search statement: exactly the texts that the client writes, to the letter, and nothing else of SQL.
///
///     select name,profession,email,summarizedText,invitationMail,jsonCVData,SCORE from curriculums
///         [ where PREDICATE { AND PREDICATE }][ ORDER BY score DESC LIMIT 5]
///     SCORE      100.0 as score
///                GREATEST(0, LEAST(100, (dot_product(vector, JSON_ARRAY_PACK('[NUMBERS]')) + 1) * 50)) AS score
///     PREDICATE  jsonCVData::gender = '"Femenino"'      (or "Masculino")
///                JSON_ARRAY_CONTAINS_STRING(jsonCVData::LIST,'VALUE')      LIST: techSkills, softSkills, languages
///
/// The client writes values as they are, apostrophes included. So a value goes on until the first `')` behind which the
/// statement can go on: with its end, with ` AND ` and another condition, or with the order and limit and nothing after
/// them. Every other apostrophe belongs to the value, and every statement that the client can write is read. Only a
/// value that itself holds `')`, ` AND ` and a condition is read as several; such a search finds too little, never
/// anything that it should not.
///
/// A number is a JSON number that fits a 32-bit float. The vector may be empty.
std::expected<Plan, StatementError> parseStatement(std::string_view sql);

} // namespace dorvantel::service
