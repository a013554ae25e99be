// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace dorvantel {

/// What a chat prompt asks for, told by the fixed sentences that the application's two prompts are built from.
struct Prompt {
    enum class Kind {
        Extraction, ///< the CV's data as JSON
        Mail,       ///< a letter to the candidate
        Other,      ///< anything else: no CV in it
    };
    Kind kind = Kind::Other;
    QString cvText;    ///< between the fixed sentences
    QString signature; ///< of a mail: what the prompt wants at its end, empty when it names none
};

/// The last occurrence of a fixed sentence counts, so that a CV that quotes the prompt does not cut itself short.
Prompt readPrompt(const QString& text);

} // namespace dorvantel
