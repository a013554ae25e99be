// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonWriting.h"

namespace dorvantel {

namespace {

void appendEscaped(QByteArray& out, char c) {
    switch (c) {
    case '"':
        out += "\\\"";
        return;
    case '\\':
        out += "\\\\";
        return;
    case '\n':
        out += "\\n";
        return;
    case '\r':
        out += "\\r";
        return;
    case '\t':
        out += "\\t";
        return;
    default:
        break;
    }
    if (static_cast<unsigned char>(c) < 0x20) {
        out += "\\u" + QByteArray::number(static_cast<int>(c), 16).rightJustified(4, '0');
    } else {
        out += c;
    }
}

} // namespace

bool appendJsonString(QByteArray& out, QStringView text) {
    if (!text.isValidUtf16()) {
        return false;
    }
    out += '"';
    for (const char c : text.toUtf8()) {
        appendEscaped(out, c);
    }
    out += '"';
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
