// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "data/JSONCVData.h"
#include "platform/JsonDecoding.h"
#include "platform/TextBlocks.h"
#include "records/SharedStrings.h"

#include <functional>
#include <iterator>
#include <utility>
#include <vector>

namespace dorvantel {

/// Reads the strings of a body with many records: as a function those that come back in many of them, which share their
/// memory, and with `text` those of one record alone, which stand side by side in few blocks.
class SharedReader {
public:
    explicit SharedReader(qsizetype bodySize)
        : m_strings(bodySize) {}

    JsonFailure operator()(JsonCursor& cursor, QString& out) {
        if (JsonFailure failure = expectKind(cursor, JsonCursor::Kind::String, "String")) {
            return failure;
        }
        out = m_strings.read(cursor);
        return std::nullopt;
    }
    JsonFailure operator()(JsonCursor& cursor, QStringList& out) {
        // Gathered first, so that a list is made once and as long as it has to be.
        JsonFailure failure = readArray(cursor, m_gathered, *this);
        out = QStringList(std::move_iterator(m_gathered.begin()), std::move_iterator(m_gathered.end()));
        return failure;
    }
    JsonFailure operator()(JsonCursor& cursor, JSONCVData& out) {
        const auto self = std::ref(*this);
        return readObject(cursor, required("gender", out.gender, self), required("softSkills", out.softSkills, self),
                          required("techSkills", out.techSkills, self), required("languages", out.languages, self));
    }

    JsonFailure text(JsonCursor& cursor, QString& out) {
        if (JsonFailure failure = expectKind(cursor, JsonCursor::Kind::String, "String")) {
            return failure;
        }
        out = cursor.string(m_texts);
        return std::nullopt;
    }

private:
    SharedStrings m_strings;
    TextBlocks m_texts;
    std::vector<QString> m_gathered;
};

} // namespace dorvantel
