// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/JsonReader.h"

#include <cmath>

namespace dorvantel {

using namespace Qt::StringLiterals;

QString JsonReader::string() const {
    if (!m_value.is_string()) {
        fail(u"String"_s);
    }
    return QString::fromStdString(m_value.get_ref<const std::string&>());
}

bool JsonReader::boolean() const {
    if (!m_value.is_boolean()) {
        fail(u"Bool"_s);
    }
    return m_value.get<bool>();
}

qint64 JsonReader::integer() const {
    if (!m_value.is_number()) {
        fail(u"Int64"_s);
    }
    constexpr double limit = 9223372036854775808.0;
    const double value = m_value.get<double>();
    const bool fits = m_value.is_number_float()      ? value == std::trunc(value) && value >= -limit && value < limit
                      : m_value.is_number_unsigned() ? m_value.get<quint64>() <= quint64(INT64_MAX)
                                                     : true;
    if (!fits) {
        const QString context = u"Number "_s + QString::fromStdString(m_value.dump()) + u" does not fit into Int64."_s;
        throw DecodeError{DecodeError::Kind::DataCorrupted, {}, context, path()};
    }
    return m_value.get<qint64>();
}

double JsonReader::number() const {
    if (!m_value.is_number()) {
        fail(u"Double"_s);
    }
    return m_value.get<double>();
}

void JsonReader::object() const {
    if (!m_value.is_object()) {
        fail(u"Object"_s);
    }
}

void JsonReader::requireArray() const {
    if (!m_value.is_array()) {
        fail(u"Array"_s);
    }
}

JsonReader JsonReader::required(const char* key) const {
    const nlohmann::json* found = find(key);
    if (found == nullptr) {
        const QString name = QString::fromLatin1(key);
        throw DecodeError{DecodeError::Kind::KeyNotFound, name, u"No value under the key \"%1\"."_s.arg(name), path()};
    }
    return {*found, this, key, 0};
}

std::optional<QString> JsonReader::optionalString(const char* key) const {
    return optional(key, &JsonReader::string);
}

const nlohmann::json* JsonReader::find(const char* key) const {
    object();
    const auto found = m_value.find(key);
    return found == m_value.end() ? nullptr : &*found;
}

QStringList JsonReader::path() const {
    if (m_parent == nullptr) {
        return {};
    }
    QStringList steps = m_parent->path();
    steps += m_key != nullptr ? QString::fromLatin1(m_key) : u"Index %1"_s.arg(m_index);
    return steps;
}

void JsonReader::fail(const QString& expected) const {
    if (m_value.is_null()) {
        throw DecodeError{DecodeError::Kind::ValueNotFound, expected, u"Expected %1 but found null."_s.arg(expected),
                          path()};
    }
    const QString context = u"Expected %1 but found %2."_s.arg(expected, QString::fromLatin1(m_value.type_name()));
    throw DecodeError{DecodeError::Kind::TypeMismatch, expected, context, path()};
}

nlohmann::json parseJson(const QByteArray& body) {
    return nlohmann::json::parse(body.begin(), body.end(), nullptr, false);
}

} // namespace dorvantel
