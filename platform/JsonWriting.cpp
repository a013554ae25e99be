// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonWriting.h"

#include "platform/JsonEscaping.h"

namespace dorvantel {

bool appendJsonString(QByteArray& out, QStringView text) {
    if (!text.isValidUtf16()) {
        return false;
    }
    const QByteArray utf8 = text.toUtf8();
    appendJsonString(out, std::string_view(utf8.data(), static_cast<std::size_t>(utf8.size())));
    return true;
}

JsonObjectWriter& JsonObjectWriter::add(const char* key, const QString& text) {
    begin(key);
    m_ok = appendJsonString(m_out, text) && m_ok;
    return *this;
}

JsonObjectWriter& JsonObjectWriter::add(const char* key, const QStringList& texts) {
    begin(key);
    m_out += '[';
    for (qsizetype i = 0; i < texts.size(); ++i) {
        m_out += i == 0 ? "" : ",";
        m_ok = appendJsonString(m_out, texts[i]) && m_ok;
    }
    m_out += ']';
    return *this;
}

JsonObjectWriter& JsonObjectWriter::add(const char* key, const std::optional<QString>& text) {
    return text ? add(key, *text) : *this;
}

JsonObjectWriter& JsonObjectWriter::add(const char* key, const std::optional<QByteArray>& bytes) {
    if (bytes) {
        begin(key);
        m_out += '"' + bytes->toBase64() + '"';
    }
    return *this;
}

JsonObjectWriter& JsonObjectWriter::add(const char* key, JsonObjectWriter object) {
    begin(key);
    const std::optional<QByteArray> text = object.take();
    m_out += text.value_or(QByteArray());
    m_ok = m_ok && text;
    return *this;
}

std::optional<QByteArray> JsonObjectWriter::take() {
    m_out += m_out.isEmpty() ? "{}" : "}";
    return m_ok ? std::optional(std::move(m_out)) : std::nullopt;
}

void JsonObjectWriter::begin(const char* key) {
    m_out += m_out.isEmpty() ? "{\"" : ",\"";
    m_out += key;
    m_out += "\":";
}

} // namespace dorvantel
