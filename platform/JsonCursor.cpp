// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonCursor.h"

#include "platform/JsonCharacters.h"

#include <vector>

namespace dorvantel {

JsonCursor::JsonCursor(QByteArrayView text)
    : m_begin(text.data())
    , m_at(text.data())
    , m_end(text.data() + text.size()) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (std::string_view(m_begin, m_end).starts_with(byteOrderMark)) {
        m_at += byteOrderMark.size();
    }
}

bool JsonCursor::fail() {
    m_failed = true;
    m_end = m_at; // so that every later look for a character finds none
    return false;
}

bool JsonCursor::literal(std::string_view word) {
    if (!std::string_view(m_at, m_end).starts_with(word)) {
        return fail();
    }
    m_at += word.size();
    return true;
}

bool JsonCursor::boolean() {
    if (next() == Kind::Boolean && *m_at == 't') {
        return literal("true");
    }
    literal("false");
    return false;
}

bool JsonCursor::digits() {
    const char* const first = m_at;
    while (m_at != m_end && isDigit(*m_at)) {
        ++m_at;
    }
    return m_at != first || fail();
}

std::string_view JsonCursor::number() {
    skipBlanks();
    const char* const first = m_at;
    const auto take = [this](char a, char b) {
        const bool isThere = m_at != m_end && (*m_at == a || *m_at == b);
        m_at += isThere ? 1 : 0;
        return isThere;
    };
    take('-', '-');
    // A zero stands alone: "01" leaves the 1 to whoever expects a comma or the end.
    if (!take('0', '0') && !digits()) {
        return {};
    }
    if (take('.', '.') && !digits()) {
        return {};
    }
    if (take('e', 'E')) {
        take('+', '-');
        if (!digits()) {
            return {};
        }
    }
    return {first, m_at};
}

std::string_view JsonCursor::key() {
    RawString raw = rawString();
    if (raw.hasEscapes) {
        m_key = text(raw).toUtf8();
        raw.bytes = {m_key.constData(), static_cast<std::size_t>(m_key.size())};
    }
    skipBlanks();
    if (m_at == m_end || *m_at != ':') {
        fail();
        return {};
    }
    ++m_at;
    return raw.bytes;
}

void JsonCursor::skipScalar(Kind kind) {
    switch (kind) {
    case Kind::Null:
        literal("null");
        break;
    case Kind::Boolean:
        boolean();
        break;
    case Kind::Number:
        number();
        break;
    case Kind::String:
        rawString();
        break;
    default:
        break;
    }
}

void JsonCursor::skip() {
    // A list of what is open instead of recursion: a text may nest as deep as it likes.
    std::vector<bool> openObjects;
    do {
        const Kind kind = next();
        if (kind == Kind::Object || kind == Kind::Array) {
            const bool isObject = kind == Kind::Object;
            if (isObject ? open('{', '}') : open('[', ']')) {
                openObjects.push_back(isObject);
                if (isObject) {
                    key();
                }
                continue;
            }
        } else {
            skipScalar(kind);
        }
        while (!openObjects.empty() && !m_failed) {
            if (another(openObjects.back() ? '}' : ']')) {
                if (openObjects.back()) {
                    key();
                }
                break;
            }
            openObjects.pop_back();
        }
    } while (!openObjects.empty() && !m_failed);
}

bool JsonCursor::finish() {
    skipBlanks();
    if (m_at != m_end) {
        fail();
    }
    return !m_failed;
}

} // namespace dorvantel
