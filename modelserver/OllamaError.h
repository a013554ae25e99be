// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Decoding.h"

#include <QString>

namespace dorvantel {

/// What lies beneath a network error: no response came, the server answered with a status other than 200, or the
/// request could not be written as JSON.
struct UnderlyingError {
    QString domain;      ///< "OllamaService" for a status code, empty otherwise
    int code = 0;        ///< the status code
    QString description; ///< a text for people

    bool operator==(const UnderlyingError&) const = default;
};

/// Why a call of the model server has no result. A plain value.
struct OllamaError {
    enum class Case { networkError, decodingError, invalidURL, emptyResponse, modelNotConfigured };

    Case which = Case::networkError;
    UnderlyingError underlying; ///< of networkError
    DecodeError decoding;       ///< of decodingError

    static OllamaError networkError(UnderlyingError error) { return {Case::networkError, std::move(error), {}}; }
    static OllamaError decodingError(DecodeError error) { return {Case::decodingError, {}, std::move(error)}; }
    static OllamaError invalidURL() { return {Case::invalidURL, {}, {}}; }
    static OllamaError emptyResponse() { return {Case::emptyResponse, {}, {}}; }
    static OllamaError modelNotConfigured() { return {Case::modelNotConfigured, {}, {}}; }

    bool operator==(const OllamaError&) const = default;
};

/// The text that the user reads, in Spanish. A missing model is always called a language model, also when it is the
/// embedding model that is missing.
QString localizedDescription(const OllamaError& error);

} // namespace dorvantel
