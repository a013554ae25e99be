// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Decoding.h"
#include "tests/support/PlainDocument.h"

#include <QByteArray>
#include <QStringDecoder>
#include <QStringList>

#include <nlohmann/json.hpp>

#include <cmath>
#include <expected>
#include <limits>
#include <optional>
#include <vector>

namespace dorvantel::test {

// JSON records decoded the plain way: the whole body into a document, then the document member by member in the order
// of the record. Slow, and what the real decoders are held against. Contexts of errors are left empty.

/// None where the library behind it cannot tell: it does not say how a number beyond a double's range was written.
template <typename T>
using PlainlyDecoded = std::optional<std::expected<T, DecodeError>>;

/// A value and the way to it. Of what is not there or of another type the first is remembered, and empty values are
/// read from then on.
class Place {
public:
    /// What is known after the reading, and the ways that were gone.
    struct Outcome {
        struct Step {
            std::size_t from;
            const char* key; ///< none for an element
            std::size_t index;
        };

        std::optional<DecodeError> error;
        bool isUnsure = false; ///< it depends on how a number was written
        std::vector<Step> steps;
    };

    Place(const nlohmann::json& value, Outcome& outcome, std::size_t steps = 0)
        : m_value(&value)
        , m_outcome(&outcome)
        , m_steps(steps) {}

    Place member(const char* key) const {
        if (expect(m_value->is_object(), "Dictionary<String, Any>") && !m_value->contains(key)) {
            fail(DecodeError::Kind::KeyNotFound, QString::fromUtf8(key));
        }
        return m_outcome->error ? *this : next((*m_value)[key], key, 0);
    }
    std::optional<Place> optionalMember(const char* key) const {
        const bool isThere = expect(m_value->is_object(), "Dictionary<String, Any>") && m_value->contains(key) &&
                             !(*m_value)[key].is_null();
        return isThere ? std::optional(member(key)) : std::nullopt;
    }
    std::optional<QString> optionalText(const char* key) const {
        const auto found = optionalMember(key);
        return found ? std::optional(found->text()) : std::nullopt;
    }
    std::vector<Place> elements() const {
        std::vector<Place> places;
        if (expect(m_value->is_array(), "Array<Any>")) {
            for (const nlohmann::json& element : *m_value) {
                places.push_back(next(element, nullptr, places.size()));
            }
        }
        return places;
    }
    void object() const { expect(m_value->is_object(), "Dictionary<String, Any>"); }
    QString text() const {
        if (!expect(m_value->is_string(), "String")) {
            return {};
        }
        // Unlike QString::fromUtf8, which takes a U+FEFF in front for a mark of the encoding.
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
        return decoder.decode(QByteArrayView(m_value->get_ref<const std::string&>()));
    }
    QStringList texts() const {
        QStringList texts;
        for (const Place& element : elements()) {
            texts.append(element.text());
        }
        return texts;
    }
    bool boolean() const { return expect(m_value->is_boolean(), "Bool") && m_value->get<bool>(); }
    double number(const char* type = "Double") const {
        return expect(m_value->is_number(), type) ? m_value->get<double>() : 0;
    }
    float smallNumber() const {
        const double value = number("Float");
        return fits(std::abs(value) <= static_cast<double>(std::numeric_limits<float>::max()))
                   ? static_cast<float>(value)
                   : 0;
    }
    qint64 integer() const {
        const double value = number("Int64");
        constexpr double limit = 9223372036854775808.0;
        if (m_value->is_number_float()) {
            m_outcome->isUnsure |= value == -limit;
            return fits(value == std::trunc(value) && value >= -limit && value < limit) ? static_cast<qint64>(value)
                                                                                        : 0;
        }
        const bool isLarge = m_value->is_number_unsigned() &&
                             m_value->get<quint64>() > static_cast<quint64>(std::numeric_limits<qint64>::max());
        return m_value->is_number() && fits(!isLarge) ? m_value->get<qint64>() : 0;
    }
    QByteArray bytes() const {
        QByteArray bytes;
        for (const Place& element : elements()) {
            const double value = element.number("UInt8");
            if (element.fits(value >= 0 && value <= 255 && value == std::floor(value))) {
                bytes.append(static_cast<char>(static_cast<unsigned char>(value)));
            }
        }
        return bytes;
    }
    QByteArray base64() const {
        const QByteArray encoded = text().toUtf8();
        const auto decoded = QByteArray::fromBase64Encoding(encoded, QByteArray::AbortOnBase64DecodingErrors);
        return fits(decoded && encoded.size() % 4 == 0) ? *decoded : QByteArray();
    }

private:
    Place next(const nlohmann::json& value, const char* key, std::size_t index) const {
        m_outcome->steps.push_back({m_steps, key, index});
        return {value, *m_outcome, m_outcome->steps.size()};
    }
    QStringList path() const {
        QStringList path;
        for (std::size_t at = m_steps; at != 0; at = m_outcome->steps[at - 1].from) {
            const Outcome::Step& step = m_outcome->steps[at - 1];
            path.prepend(step.key != nullptr ? QString::fromUtf8(step.key)
                                             : QStringLiteral("Index %1").arg(step.index));
        }
        return path;
    }
    void fail(DecodeError::Kind kind, const QString& subject) const {
        if (!m_outcome->error) {
            m_outcome->error = DecodeError{kind, subject, {}, path()};
        }
    }
    bool expect(bool isType, const char* type) const {
        if (!isType) {
            fail(m_value->is_null() ? DecodeError::Kind::ValueNotFound : DecodeError::Kind::TypeMismatch,
                 QString::fromUtf8(type));
        }
        return !m_outcome->error;
    }
    bool fits(bool isSo) const {
        if (!isSo) {
            fail(DecodeError::Kind::DataCorrupted, {});
        }
        return !m_outcome->error;
    }

    const nlohmann::json* m_value;
    Outcome* m_outcome;
    std::size_t m_steps; ///< how many of the steps lead here; 0 at the document
};

/// Decodes a body with `read(place)`.
template <typename Read>
auto plainlyDecoded(const PlainDocument& body, Read read)
    -> PlainlyDecoded<decltype(read(std::declval<const Place&>()))> {
    using Decoded = std::expected<decltype(read(std::declval<const Place&>())), DecodeError>;
    if (body.isTooLarge) {
        return std::nullopt;
    }
    if (!body.isJson()) {
        return Decoded(std::unexpected(DecodeError{}));
    }
    Place::Outcome outcome;
    auto value = read(Place(body.value, outcome));
    if (outcome.isUnsure) {
        return std::nullopt;
    }
    return outcome.error ? Decoded(std::unexpected(std::move(*outcome.error))) : Decoded(std::move(value));
}

} // namespace dorvantel::test
