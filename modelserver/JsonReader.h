// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Decoding.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <nlohmann/json.hpp>

#include <concepts>
#include <expected>
#include <functional>
#include <optional>

namespace dorvantel {

/// One value of a JSON body and its place in it, for records of the size of a page. Reading throws the DecodeError,
/// so that the record functions say only what a record holds; `decodeJson` is the only place that catches it.
/// A reader refers to the one it came from and to the parsed body, and must not outlive either.
class JsonReader {
public:
    explicit JsonReader(const nlohmann::json& value)
        : m_value(value) {}

    QString string() const;
    bool boolean() const;
    qint64 integer() const; ///< also of a number written with a fraction of zero
    double number() const;
    void object() const; ///< checks the type and keeps nothing

    /// The value under `key`; null is still a value, which the read of its type refuses.
    JsonReader required(const char* key) const;

    /// What `read` makes of the value under `key`; nothing when the key is missing or its value is null.
    template <std::invocable<const JsonReader&> Read>
    auto optional(const char* key, Read read) const -> std::optional<std::invoke_result_t<Read, const JsonReader&>> {
        const nlohmann::json* found = find(key);
        if (found == nullptr || found->is_null()) {
            return std::nullopt;
        }
        return std::invoke(read, JsonReader(*found, this, key, 0));
    }
    std::optional<QString> optionalString(const char* key) const;

    /// What `read` makes of each element.
    template <std::invocable<const JsonReader&> Read>
    auto list(Read read) const -> QList<std::invoke_result_t<Read, const JsonReader&>> {
        requireArray();
        QList<std::invoke_result_t<Read, const JsonReader&>> values;
        values.reserve(static_cast<qsizetype>(m_value.size()));
        for (std::size_t i = 0; i < m_value.size(); ++i) {
            values.append(std::invoke(read, JsonReader(m_value[i], this, nullptr, i)));
        }
        return values;
    }

private:
    JsonReader(const nlohmann::json& value, const JsonReader* parent, const char* key, std::size_t index)
        : m_value(value)
        , m_parent(parent)
        , m_key(key)
        , m_index(index) {}

    const nlohmann::json* find(const char* key) const;
    void requireArray() const;
    QStringList path() const;
    [[noreturn]] void fail(const QString& expected) const;

    const nlohmann::json& m_value;
    const JsonReader* m_parent = nullptr;
    const char* m_key = nullptr; ///< null in an element of an array
    std::size_t m_index = 0;
};

/// The body as JSON; discarded when it is none.
nlohmann::json parseJson(const QByteArray& body);

/// What `read` makes of the body's document, or why it does not.
template <std::invocable<const JsonReader&> Read>
auto decodeJson(const QByteArray& body, Read read)
    -> std::expected<std::invoke_result_t<Read, const JsonReader&>, DecodeError> {
    const nlohmann::json document = parseJson(body);
    if (document.is_discarded()) {
        return std::unexpected(DecodeError{
            DecodeError::Kind::DataCorrupted, {}, QStringLiteral("The given data was not valid JSON."), {}});
    }
    try {
        return std::invoke(read, JsonReader(document));
    } catch (const DecodeError& error) {
        return std::unexpected(error);
    }
}

} // namespace dorvantel
