// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace dorvantel {

/// Why a JSON body did not become the record that was expected of it.
struct DecodeError {
    enum class Kind {
        KeyNotFound,   ///< a required key is missing
        TypeMismatch,  ///< a value has another JSON type
        ValueNotFound, ///< null where a value is required
        DataCorrupted, ///< the body is not JSON, or a number does not fit
    };
    Kind kind = Kind::DataCorrupted;
    QString subject;  ///< the key (KeyNotFound) or the expected type's name (TypeMismatch, ValueNotFound)
    QString context;  ///< what was wrong, in a sentence
    QStringList path; ///< from the document to the value: keys, and "Index 3" for elements

    bool operator==(const DecodeError&) const = default;
};

/// One sentence for people, in the language of the interface; what an error alert or a one-line log entry shows of a
/// decoding error.
QString localizedDescription(const DecodeError& error);

/// The whole error on one line, for logs that have no detail lines.
QString debugText(const DecodeError& error);

} // namespace dorvantel
