// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Decoding.h"
#include "platform/JsonCursor.h"

#include <QString>
#include <QStringList>

#include <expected>
#include <optional>
#include <string_view>
#include <utility>

namespace dorvantel {

// A record is read by one function, `readJson(cursor, record)`, that names its members once:
//
//     JsonFailure readJson(JsonCursor& cursor, Point& out) {
//         return readObject(cursor, required("x", out.x), required("y", out.y), optional("label", out.label));
//     }
//
// and a whole body by `decodeJson<Point>(body)`. Unknown members are passed over, of a member that occurs twice the
// last one holds. Reported is what a decoder meets first that goes through the members in the order of the list above;
// but a text that is not JSON anywhere is that before anything else.

/// Why a value could not be read; none when it was. The path goes from the value on which the reading began.
using JsonFailure = std::optional<DecodeError>;

/// Passes over the value that comes next, of which the kind is `found` and not what was expected.
JsonFailure wrongKind(JsonCursor& cursor, JsonCursor::Kind found, const char* typeName);

/// Checks the kind of the value that comes next. On another kind the value is passed over and the failure given back:
/// null is "value not found", anything else a type mismatch. `typeName` is what the log calls the expected type.
inline JsonFailure expectKind(JsonCursor& cursor, JsonCursor::Kind kind, const char* typeName) {
    const JsonCursor::Kind found = cursor.next();
    return found == kind ? std::nullopt : wrongKind(cursor, found, typeName);
}

JsonFailure readJson(JsonCursor& cursor, QString& out);
JsonFailure readJson(JsonCursor& cursor, QStringList& out);
JsonFailure readJson(JsonCursor& cursor, float& out); ///< integers too; a number beyond a float's range is refused

/// What a number of the text is worth: 0 when it is too small for a double, infinite when it is too large.
double worthOf(std::string_view number);

/// Reads an array of numbers from 0 to 255 into `out`, or only checks it when `out` is null. A number is taken for what
/// it is worth (`7.0` and `7e0` are 7); one that is no byte is "data corrupted".
JsonFailure readByteArray(JsonCursor& cursor, QByteArray* out);

/// Reads a string of padded base64 without line breaks; any other string is "data corrupted".
JsonFailure readBase64(JsonCursor& cursor, QByteArray& out);

/// The failure of a value of the right type that cannot be what it should be.
DecodeError corrupted(const QString& context);

/// Reads an array into a vector or QList, each element with `readElement(cursor, element)`.
template <typename List, typename ReadElement>
JsonFailure readArray(JsonCursor& cursor, List& out, ReadElement&& readElement) {
    out.clear();
    if (JsonFailure failure = expectKind(cursor, JsonCursor::Kind::Array, "Array<Any>")) {
        return failure;
    }
    JsonFailure failure;
    cursor.elements([&] {
        if (failure) {
            cursor.skip();
            return;
        }
        failure = readElement(cursor, out.emplace_back());
        if (failure) {
            failure->path.prepend(QStringLiteral("Index %1").arg(out.size() - 1));
        }
    });
    return failure;
}

/// One member of an object while it is read.
template <typename Read>
struct JsonMember {
    std::string_view key;
    bool isRequired;
    Read read; ///< (JsonCursor&) -> JsonFailure

    bool found = false;
    JsonFailure failure{};

    void take(JsonCursor& cursor) {
        found = true;
        failure = read(cursor);
        if (failure) {
            failure->path.prepend(keyText());
        }
    }

    JsonFailure outcome() {
        if (isRequired && !found) {
            return DecodeError{DecodeError::Kind::KeyNotFound,
                               keyText(),
                               QStringLiteral("The object has no key \"%1\".").arg(keyText()),
                               {}};
        }
        return std::move(failure);
    }

private:
    QString keyText() const { return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size())); }
};

/// A member that must be there, read with `read(cursor, out)`.
template <typename T, typename Read>
auto required(std::string_view key, T& out, Read read) {
    const auto readValue = [&out, read](JsonCursor& cursor) -> JsonFailure { return read(cursor, out); };
    return JsonMember<decltype(readValue)>{key, true, readValue};
}

template <typename T>
auto required(std::string_view key, T& out) {
    return required(key, out, [](JsonCursor& cursor, T& value) { return readJson(cursor, value); });
}

/// A member that may be missing or null, both of which leave `out` empty.
template <typename T, typename Read>
auto optional(std::string_view key, std::optional<T>& out, Read read) {
    const auto readValue = [&out, read](JsonCursor& cursor) -> JsonFailure {
        out.reset();
        if (cursor.next() == JsonCursor::Kind::Null) {
            cursor.skip();
            return std::nullopt;
        }
        return read(cursor, out.emplace());
    };
    return JsonMember<decltype(readValue)>{key, false, readValue};
}

template <typename T>
auto optional(std::string_view key, std::optional<T>& out) {
    return optional(key, out, [](JsonCursor& cursor, T& value) { return readJson(cursor, value); });
}

template <typename... Members>
JsonFailure readObject(JsonCursor& cursor, Members... members) {
    if (JsonFailure failure = expectKind(cursor, JsonCursor::Kind::Object, "Dictionary<String, Any>")) {
        return failure;
    }
    cursor.members([&](std::string_view key) {
        const bool isKnown = ((key == members.key && (members.take(cursor), true)) || ...);
        if (!isKnown) {
            cursor.skip();
        }
    });
    JsonFailure failure;
    static_cast<void>(((failure = members.outcome()).has_value() || ...));
    return failure;
}

/// The failure of a text that is not JSON, at the cursor's position.
DecodeError notJson(const JsonCursor& cursor);

/// Reads a whole body with `read(cursor, value)`.
template <typename T, typename Read>
std::expected<T, DecodeError> decodeJson(QByteArrayView body, Read&& read) {
    JsonCursor cursor(body);
    T value;
    JsonFailure failure = read(cursor, value);
    if (!cursor.finish()) {
        return std::unexpected(notJson(cursor));
    }
    if (failure) {
        return std::unexpected(std::move(*failure));
    }
    return value;
}

template <typename T>
std::expected<T, DecodeError> decodeJson(QByteArrayView body) {
    return decodeJson<T>(body, [](JsonCursor& cursor, T& value) { return readJson(cursor, value); });
}

} // namespace dorvantel
