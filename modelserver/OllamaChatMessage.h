// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace dorvantel {

/// One turn of a conversation with a language model; what callers of `ModelService::chat` build.
struct OllamaChatMessage {
    QString role; ///< "user", "system" or "assistant", as the model server's chat API knows them
    QString content;

    bool operator==(const OllamaChatMessage&) const = default;
};

} // namespace dorvantel
