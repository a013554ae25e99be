// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace dorvantel {

/// Lays JSON out for reading: one member or element per line, keys in the order in which they came. Pure; any thread.
class JSONFormatter {
public:
    /// `indentation`: blanks per level.
    explicit JSONFormatter(int indentation = 2)
        : m_indentation(indentation) {}

    /// A text that is not JSON is given back as it is: the hand-built text of CV data may hold escapes that JSON does
    /// not know. Meant for texts of few levels.
    QString format(const QString& json) const;

private:
    int m_indentation;
};

} // namespace dorvantel
