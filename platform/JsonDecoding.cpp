// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonDecoding.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

QString kindText(JsonCursor::Kind kind) {
    switch (kind) {
    case JsonCursor::Kind::Null:
        return u"null"_s;
    case JsonCursor::Kind::Boolean:
        return u"a boolean"_s;
    case JsonCursor::Kind::Number:
        return u"a number"_s;
    case JsonCursor::Kind::String:
        return u"a string"_s;
    case JsonCursor::Kind::Array:
        return u"an array"_s;
    case JsonCursor::Kind::Object:
        return u"an object"_s;
    case JsonCursor::Kind::Invalid:
        break;
    }
    return u"no value"_s;
}

DecodeError doesNotFit(std::string_view number, const char* typeName) {
    return corrupted(u"The number %1 does not fit in %2."_s.arg(
        QString::fromLatin1(number.data(), static_cast<qsizetype>(number.size())), QLatin1String(typeName)));
}

/// Whether a number that is not zero is between -1 and 1, by where its first digit stands that is not a 0.
bool isBelowOne(std::string_view number) {
    const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
    const std::string_view digits = number.substr(0, mark);
    std::string_view exponentText = number.substr(std::min(mark + 1, number.size()));
    exponentText.remove_prefix(exponentText.starts_with('+') ? 1 : 0);
    std::int64_t exponent = 0;
    const auto read = std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);
    if (read.ec == std::errc::result_out_of_range) {
        return exponentText.starts_with('-');
    }
    const auto point = static_cast<std::int64_t>(std::min(digits.find('.'), digits.size()));
    const auto first = static_cast<std::int64_t>(digits.find_first_of("123456789"));
    return exponent < (first < point ? first - point + 1 : first - point);
}

} // namespace

double worthOf(std::string_view number) {
    double worth = 0;
    const auto read = std::from_chars(number.data(), number.data() + number.size(), worth);
    if (read.ec != std::errc::result_out_of_range) {
        return worth;
    }
    return isBelowOne(number) ? 0 : std::numeric_limits<double>::infinity();
}

DecodeError corrupted(const QString& context) {
    return {DecodeError::Kind::DataCorrupted, {}, context, {}};
}

DecodeError notJson(const JsonCursor& cursor) {
    return corrupted(u"The body is not valid JSON: error at byte %1."_s.arg(cursor.position()));
}

JsonFailure wrongKind(JsonCursor& cursor, JsonCursor::Kind found, const char* typeName) {
    cursor.skip();
    const bool isNull = found == JsonCursor::Kind::Null;
    const QLatin1String type(typeName);
    return DecodeError{isNull ? DecodeError::Kind::ValueNotFound : DecodeError::Kind::TypeMismatch,
                       type,
                       u"Expected %1 but found %2."_s.arg(type, kindText(found)),
                       {}};
}

JsonFailure readJson(JsonCursor& cursor, QString& out) {
    if (JsonFailure failure = expectKind(cursor, JsonCursor::Kind::String, "String")) {
        return failure;
    }
    out = cursor.string();
    return std::nullopt;
}

JsonFailure readJson(JsonCursor& cursor, QStringList& out) {
    return readArray(cursor, out, [](JsonCursor& element, QString& text) { return readJson(element, text); });
}

JsonFailure readJson(JsonCursor& cursor, float& out) {
    if (JsonFailure failure = expectKind(cursor, JsonCursor::Kind::Number, "Float")) {
        return failure;
    }
    const std::string_view number = cursor.number();
    const double exact = worthOf(number);
    if (std::abs(exact) > static_cast<double>(std::numeric_limits<float>::max())) {
        return doesNotFit(number, "Float");
    }
    out = static_cast<float>(exact);
    return std::nullopt;
}

JsonFailure readByteArray(JsonCursor& cursor, QByteArray* out) {
    if (JsonFailure failure = expectKind(cursor, JsonCursor::Kind::Array, "Array<Any>")) {
        return failure;
    }
    JsonFailure failure;
    qsizetype index = 0;
    cursor.elements([&] {
        if (failure) {
            cursor.skip();
            return;
        }
        index += cursor.takeBytes(out);
        failure = expectKind(cursor, JsonCursor::Kind::Number, "UInt8");
        if (!failure) {
            const std::string_view number = cursor.number();
            const double byte = worthOf(number);
            if (byte < 0 || byte > 255 || byte != std::floor(byte)) {
                failure = doesNotFit(number, "UInt8");
            } else if (out != nullptr) {
                out->append(static_cast<char>(static_cast<unsigned char>(byte)));
            }
        }
        if (failure) {
            failure->path.prepend(u"Index %1"_s.arg(index));
        }
        ++index;
    });
    return failure;
}

JsonFailure readBase64(JsonCursor& cursor, QByteArray& out) {
    if (JsonFailure failure = expectKind(cursor, JsonCursor::Kind::String, "String")) {
        return failure;
    }
    const JsonCursor::RawString raw = cursor.rawString();
    // A slash may be spelt with an escape; nothing else of base64 is.
    QByteArray encoded(raw.bytes.data(), static_cast<qsizetype>(raw.bytes.size()));
    if (raw.hasEscapes) {
        encoded = cursor.text(raw).toUtf8();
    }
    const qsizetype length = encoded.size();
    auto decoded = QByteArray::fromBase64Encoding(std::move(encoded), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || length % 4 != 0) {
        return corrupted(u"The string is not base64."_s);
    }
    out = std::move(*decoded);
    return std::nullopt;
}

} // namespace dorvantel
