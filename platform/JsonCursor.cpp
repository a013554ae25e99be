// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonCursor.h"

#include "platform/JsonBlocks.h"
#include "platform/JsonCharacters.h"

#include <QtEndian>

#include <simdjson.h>

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

namespace dorvantel {

namespace {

bool isMultibyte(char c) {
    return static_cast<unsigned char>(c) >= 0x80;
}

bool isPlain(char c) {
    return !isMultibyte(c) && c >= 0x20 && c != '"' && c != '\\';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The character at `at`, which is not plain; none when it may not stand in a string.
std::optional<JsonCharacter> readSpecial(const char* at, const char* end) {
    if (isMultibyte(*at)) {
        return readMultibyte(at, end);
    }
    return *at == '\\' ? readEscape(at, end) : std::nullopt;
}

/// Writes a string's characters as UTF-16 until `quote`, the next quote in the text, is reached, or passed when an
/// escape contains it. Steps over both; `out` has room for a unit per byte and a block. False on an invalid character.
bool widen(const char*& at, const char* quote, const char* end, char16_t*& out) {
    // Through copies: the compiler must think that what is written might be the pointers themselves.
    const char* from = at;
    char16_t* to = out;
    while (from < quote) {
        if (end - from >= JsonBlock::size) {
            const JsonBlock block(from);
            block.widen(to);
            const qsizetype plain = block.plain();
            from += plain;
            to += plain;
            if (plain == JsonBlock::size) {
                continue;
            }
        } else {
            while (isPlain(*from)) {
                *to++ = static_cast<char16_t>(*from++);
            }
        }
        if (from == quote) {
            break;
        }
        if ((from[0] & 0xE0) == 0xC0 && (from[0] & 0x1E) != 0 && (from[1] & 0xC0) == 0x80) {
            *to++ = static_cast<char16_t>((from[0] & 0x1F) << 6 | (from[1] & 0x3F));
            from += 2;
            continue;
        }
        const std::optional<JsonCharacter> next = readSpecial(from, end);
        if (!next) {
            at = from;
            return false;
        }
        for (const char16_t unit : QChar::fromUcs4(next->character)) {
            *to++ = unit;
        }
        from += next->length;
    }
    at = from;
    out = to;
    return true;
}

struct PlainByte {
    char value;
    std::ptrdiff_t length; ///< with the comma
};

/// The number from 0 to 255 at `at` when a comma and another digit follow it. Four bytes hold its digits and the comma;
/// all is worked out without a branch on them, which a file's bytes would make unpredictable.
inline std::optional<PlainByte> plainByte(const char* at, const char* end) {
    if (end - at <= 4) {
        return std::nullopt;
    }
    const std::uint32_t digits =
        qFromLittleEndian<std::uint32_t>(at) ^ 0x3030'3030; // 0 to 9 where there is a digit, more elsewhere
    const std::uint32_t others = (((digits & 0x7F7F'7F7F) + 0x7676'7676) | digits) & 0x8080'8080;
    const int length = std::countr_zero(others) / 8;
    if (length == 0 || length > 3 || at[length] != ',' || !isDigit(at[length + 1])) {
        return std::nullopt;
    }
    const std::uint32_t aligned = digits << 8 * (4 - length);
    const std::uint32_t value = (aligned >> 8 & 0xF) * 100 + (aligned >> 16 & 0xF) * 10 + (aligned >> 24);
    const bool hasLeadingZero = (digits & 0xF) == 0 && length > 1;
    if (value > 255 || hasLeadingZero) {
        return std::nullopt;
    }
    return PlainByte{static_cast<char>(static_cast<unsigned char>(value)), length + 1};
}

} // namespace

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

inline void JsonCursor::skipBlanks() {
    while (m_at != m_end && (*m_at == ' ' || *m_at == '\n' || *m_at == '\r' || *m_at == '\t')) {
        ++m_at;
    }
}

JsonCursor::Kind JsonCursor::next() {
    skipBlanks();
    if (m_at == m_end) {
        fail();
        return Kind::Invalid;
    }
    switch (*m_at) {
    case '"':
        return Kind::String;
    case '{':
        return Kind::Object;
    case '[':
        return Kind::Array;
    case 't':
    case 'f':
        return Kind::Boolean;
    case 'n':
        return Kind::Null;
    default:
        break;
    }
    if (*m_at == '-' || isDigit(*m_at)) {
        return Kind::Number;
    }
    fail();
    return Kind::Invalid;
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
    const auto take = [this](char a, char b) { return m_at != m_end && (*m_at == a || *m_at == b) && (++m_at, true); };
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

/// Steps to the next byte that is not plain; false when there is none left.
bool JsonCursor::skipPlain() {
    while (m_end - m_at >= JsonBlock::size) {
        const qsizetype plain = JsonBlock(m_at).plain();
        m_at += plain;
        if (plain < JsonBlock::size) {
            return true;
        }
    }
    while (m_at != m_end && isPlain(*m_at)) {
        ++m_at;
    }
    return m_at != m_end || fail();
}

bool JsonCursor::openString() {
    skipBlanks();
    if (m_at == m_end || *m_at != '"') {
        return fail();
    }
    ++m_at;
    return true;
}

JsonCursor::RawString JsonCursor::uncheckedString() {
    if (!openString()) {
        return {};
    }
    const char* const first = m_at;
    RawString raw;
    while (skipPlain()) {
        if (*m_at == '"') {
            raw.bytes = {first, m_at};
            ++m_at;
            return raw;
        }
        if (isMultibyte(*m_at)) {
            raw.isAscii = false;
            ++m_at;
            continue;
        }
        raw.hasEscapes = true;
        const std::optional<JsonCharacter> escape = readSpecial(m_at, m_end);
        if (!escape) {
            fail();
            break;
        }
        m_at += escape->length;
    }
    return {};
}

JsonCursor::RawString JsonCursor::rawString() {
    const RawString raw = uncheckedString();
    if (!raw.isAscii && !simdjson::validate_utf8(raw.bytes)) {
        m_at = raw.bytes.data();
        fail();
        return {};
    }
    return raw;
}

QString JsonCursor::string() {
    return openString() ? restOfString() : QString();
}

QString JsonCursor::text(const RawString& raw) {
    if (m_failed) {
        return {};
    }
    const char* const behind = std::exchange(m_at, raw.bytes.data());
    const QString text = restOfString();
    if (!m_failed) {
        m_at = behind;
    }
    return text;
}

/// The string of which the opening quote has been read.
QString JsonCursor::restOfString() {
    std::size_t used = 0;
    for (;;) {
        const void* found = std::memchr(m_at, '"', static_cast<std::size_t>(m_end - m_at));
        if (found == nullptr) {
            fail();
            return {};
        }
        const auto* const quote = static_cast<const char*>(found);
        const std::size_t most = used + static_cast<std::size_t>(quote - m_at) + JsonBlock::size;
        if (m_units.size() < most) {
            m_units.resize(2 * most);
        }
        char16_t* out = m_units.data() + used;
        if (!widen(m_at, quote, m_end, out)) {
            fail();
            return {};
        }
        used = static_cast<std::size_t>(out - m_units.data());
        if (m_at == quote) {
            ++m_at;
            return QString(reinterpret_cast<const QChar*>(m_units.data()), static_cast<qsizetype>(used));
        }
        // That quote was escaped.
    }
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

bool JsonCursor::open(char opening, char closing) {
    skipBlanks();
    if (m_at == m_end || *m_at != opening) {
        return fail();
    }
    ++m_at;
    skipBlanks();
    if (m_at != m_end && *m_at == closing) {
        ++m_at;
        return false;
    }
    return true;
}

bool JsonCursor::another(char closing) {
    skipBlanks();
    if (m_at != m_end && *m_at == ',') {
        ++m_at;
        return true;
    }
    if (m_at == m_end || *m_at != closing) {
        return fail();
    }
    ++m_at;
    return false;
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

qsizetype JsonCursor::takeBytes(QByteArray* out) {
    skipBlanks();
    std::array<char, 4096> chunk;
    qsizetype count = 0;
    std::size_t filled = 0;
    do {
        for (filled = 0; filled < chunk.size(); ++filled) {
            const std::optional<PlainByte> byte = plainByte(m_at, m_end);
            if (!byte) {
                break;
            }
            chunk[filled] = byte->value;
            m_at += byte->length;
        }
        count += static_cast<qsizetype>(filled);
        if (out != nullptr) {
            out->append(chunk.data(), static_cast<qsizetype>(filled));
        }
    } while (filled == chunk.size());
    return count;
}

bool JsonCursor::finish() {
    skipBlanks();
    if (m_at != m_end) {
        fail();
    }
    return !m_failed;
}

} // namespace dorvantel
