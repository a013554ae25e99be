// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonBlocks.h"
#include "platform/JsonCharacters.h"
#include "platform/JsonCursor.h"

#include <simdjson.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <optional>
#include <utility>

namespace dorvantel {

namespace {

bool isTwoBytes(const char* at) {
    return (at[0] & 0xE0) == 0xC0 && (at[0] & 0x1E) != 0 && (at[1] & 0xC0) == 0x80;
}

void widenTwoBytes(const char*& from, char16_t*& to) {
    *to++ = static_cast<char16_t>((from[0] & 0x1F) << 6 | (from[1] & 0x3F));
    from += 2;
}

/// So many bytes are looked at in one go where a text is long.
constexpr qsizetype stride = 2 * JsonBlock::size;

/// How much is written or read at most beyond the characters of a stride.
constexpr qsizetype slack = 2 * stride + 2;

void widenStride(const char* from, char16_t* to) {
    JsonBlock(from).widen(to);
    JsonBlock(from + JsonBlock::size).widen(to + JsonBlock::size);
}

/// The bytes of a stride that are not one UTF-16 unit of the same number.
std::uint64_t notPlainInStride(const char* from) {
    const JsonBlock front(from);
    const JsonBlock back(from + JsonBlock::size);
    return front.special() | front.multibyte() | (back.special() | back.multibyte()) << JsonBlock::size;
}

/// Writes the characters at `from` as UTF-16 as long as they stand for themselves and have one byte or two; stops
/// before others, and behind `enough`. Behind that there are `slack` bytes to read and room for as many units.
void widenStrides(const char*& at, const char* enough, char16_t*& out) {
    // Through copies: the compiler must think that what is written might be the pointers themselves.
    const char* from = at;
    char16_t* to = out;
    bool stopped = false;
    while (from < enough && !stopped) {
        const char* const strideEnd = from + stride;
        widenStride(from, to);
        std::uint64_t notPlain = notPlainInStride(from);
        while (notPlain != 0 && !stopped) {
            const int plain = std::countr_zero(notPlain);
            from += plain;
            to += plain;
            if (isTwoBytes(from)) {
                widenTwoBytes(from, to);
                notPlain = notPlain >> plain >> 2;
                widenStride(from, to);
            } else {
                stopped = true;
            }
        }
        if (!stopped && from < strideEnd) {
            to += strideEnd - from;
            from = strideEnd;
        }
    }
    at = from;
    out = to;
}

/// Writes one character of a string, which is not its closing quote, as UTF-16. False when it may not stand there.
bool widenOne(const char*& from, const char* end, char16_t*& to) {
    std::optional<JsonCharacter> character;
    if (isMultibyte(*from)) {
        character = readMultibyte(from, end);
    } else if (*from == '\\') {
        character = readEscape(from, end);
    } else if (isOrdinary(*from)) {
        character = JsonCharacter{static_cast<char32_t>(*from), 1};
    }
    if (!character) {
        return false;
    }
    for (const char16_t unit : QChar::fromUcs4(character->character)) {
        *to++ = unit;
    }
    from += character->length;
    return true;
}

} // namespace

/// Steps to the next byte that is not ordinary, or to the end. `isAscii` becomes false when one of several is passed.
inline void JsonCursor::skipOrdinary(bool& isAscii) {
    while (m_end - m_at >= JsonBlock::size) {
        const JsonBlock block(m_at);
        const std::uint64_t special = block.special();
        const int ordinary = std::min<int>(std::countr_zero(special), JsonBlock::size);
        isAscii = isAscii && std::countr_zero(block.multibyte()) >= ordinary;
        m_at += ordinary;
        if (special != 0) {
            return;
        }
    }
    while (m_at != m_end && isOrdinary(*m_at)) {
        isAscii = isAscii && !isMultibyte(*m_at);
        ++m_at;
    }
}

JsonCursor::RawString JsonCursor::uncheckedString() {
    if (!openString()) {
        return {};
    }
    const char* const first = m_at;
    RawString raw;
    for (;;) {
        skipOrdinary(raw.isAscii);
        if (m_at != m_end && *m_at == '"') {
            raw.bytes = {first, m_at};
            ++m_at;
            return raw;
        }
        raw.hasEscapes = true;
        const std::optional<JsonCharacter> escape =
            m_at != m_end && *m_at == '\\' ? readEscape(m_at, m_end) : std::nullopt;
        if (!escape) {
            fail();
            return {};
        }
        m_at += escape->length;
    }
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
    return openString() ? copied(restOfString(m_units)) : QString();
}

QString JsonCursor::string(TextBlocks& blocks) {
    if (!openString()) {
        return {};
    }
    const qsizetype units = restOfString(blocks);
    return m_failed ? QString() : blocks.take(units);
}

QString JsonCursor::text(const RawString& raw) {
    if (m_failed) {
        return {};
    }
    const char* const behind = std::exchange(m_at, raw.bytes.data());
    const QString text = copied(restOfString(m_units));
    if (!m_failed) {
        m_at = behind;
    }
    return text;
}

QString JsonCursor::copied(qsizetype units) const {
    return m_failed ? QString() : QString(m_units.text(), units);
}

/// Reads the rest of a string, of which the opening quote has been read, to `memory`; gives back how many units it has.
template <typename Memory>
qsizetype JsonCursor::restOfString(Memory& memory) {
    constexpr qsizetype step = 1024;
    qsizetype used = 0;
    for (;;) {
        char16_t* const units = memory.room(used, used + step + slack);
        char16_t* out = units + used;
        if (m_end - m_at > slack) {
            widenStrides(m_at, m_at + std::min(step, m_end - m_at - slack), out);
        }
        if (m_at != m_end && *m_at == '"') {
            ++m_at;
            return out - units;
        }
        if (m_at == m_end || !widenOne(m_at, m_end, out)) {
            fail();
            return 0;
        }
        used = out - units;
    }
}

} // namespace dorvantel
