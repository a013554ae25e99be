// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/api/Http.h"

#include "service/candidates/JsonText.h"

namespace dorvantel::service {

HttpAnswer errorAnswer(int status, std::string_view message) {
    return {.status = status, .body = errorJSON(message), .error = std::string(message)};
}

HttpAnswer errorAnswer(const StoreError& error) {
    switch (error.kind) {
    case StoreError::Kind::Busy:
        return errorAnswer(503, error.message);
    case StoreError::Kind::Full:
        return errorAnswer(507, error.message);
    case StoreError::Kind::VectorLength:
        return errorAnswer(422, error.message);
    case StoreError::Kind::Failed:
        break;
    }
    return errorAnswer(500, error.message);
}

} // namespace dorvantel::service
