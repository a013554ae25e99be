// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/candidates/Record.h"

#include <expected>
#include <string>

namespace dorvantel::service {

/// Why a body is not what its route takes. The message names keys, never values.
struct BodyError {
    enum class Kind {
        NotJSON,  ///< it is no JSON document, or no UTF-8
        NotValid, ///< it is JSON of another form, or a value in it cannot be stored
    };
    Kind kind = Kind::NotJSON;
    std::string message;
};

// Each reads the body of one route. Unknown keys are ignored, a key that comes twice counts as it came last, and null
// stands for absent. The body grows by a few bytes of padding that the parser needs.

/// A record: six texts, and the PDF in base64 or none.
std::expected<Record, BodyError> readInsertBody(std::string& body);

/// The statement of `{"sql": "…"}`.
std::expected<std::string, BodyError> readSearchBody(std::string& body);

/// A JSON string: the e-mail to delete.
std::expected<std::string, BodyError> readKeyBody(std::string& body);

/// The record as its insert is answered: the CV data as its text and the PDF in base64.
std::string recordJSON(const Record& record);

} // namespace dorvantel::service
