// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TextBlocks.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <iterator>
#include <string_view>
#include <vector>

namespace dorvantel {

/// Reads a JSON text once from front to back, without a tree and without an index of the text: what it costs beside the
/// text is what its user keeps. It accepts exactly RFC 8259 in UTF-8 (a byte order mark before it is passed over) and
/// refuses escapes of half a surrogate pair; any depth, any number of digits.
///
/// A plain value that views the text, which must outlive it. Any thread. The first syntax error sticks: from then on
/// `next` answers `Invalid`, loops end and reads give empty values, so that callers look at `failed` once, at the end.
class JsonCursor {
public:
    enum class Kind { Null, Boolean, Number, String, Array, Object, Invalid };

    /// A string as it stands in the text, between its quotes.
    struct RawString {
        std::string_view bytes;
        bool hasEscapes = false;
        bool isAscii = true;
    };

    explicit JsonCursor(QByteArrayView text);

    /// The kind of the value that comes next; only its first character has been looked at.
    Kind next();

    /// Each reads the value that comes next, which must be of the kind that the name says.
    bool boolean();
    std::string_view number(); ///< its digits and signs as they stand in the text
    QString string();
    QString string(TextBlocks& blocks); ///< the same, made in `blocks`
    RawString rawString();

    /// The same without a look at whether it is UTF-8. For who knows the bytes already, or asks for their `text`.
    RawString uncheckedString();
    /// The text of a raw string that this cursor gave.
    QString text(const RawString& raw);

    /// Reads over the value that comes next, whatever it is, and checks it like any other.
    void skip();

    /// Reads an object: calls `readMember(key)` for each member, in order, with the cursor before the member's value,
    /// which it must read. The key is unescaped and lives until the value is read.
    template <typename ReadMember>
    void members(ReadMember&& readMember) {
        for (bool more = open('{', '}'); more; more = another('}')) {
            const std::string_view name = key();
            if (!m_failed) {
                readMember(name);
            }
        }
    }

    /// Reads an array: calls `readElement()` for each element, in order, with the cursor before it; it must read it.
    template <typename ReadElement>
    void elements(ReadElement&& readElement) {
        for (bool more = open('[', ']'); more; more = another(']')) {
            readElement();
        }
    }

    /// Inside `elements`: reads the elements up to the last but one as long as they are integers from 0 to 255 without
    /// blanks, and appends them to `out` unless that is null. Gives back how many it read. Files travel as such arrays.
    qsizetype takeBytes(QByteArray* out);

    /// Only blanks may be left. True when the whole text was valid.
    bool finish();

    bool failed() const { return m_failed; }
    qsizetype position() const { return m_at - m_begin; } ///< in bytes; of the first error once one was met

private:
    bool open(char opening, char closing);
    bool another(char closing);
    std::string_view key();
    void skipBlanks();
    void skipScalar(Kind kind);
    bool digits();
    bool openString();
    void skipOrdinary(bool& isAscii);
    template <typename Memory>
    qsizetype restOfString(Memory& memory);
    QString copied(qsizetype units) const;
    bool literal(std::string_view word);
    bool fail();

    /// Where a string's units stand before they are copied.
    class Units {
    public:
        char16_t* room(qsizetype, qsizetype units) {
            if (std::ssize(m_units) < units) {
                m_units.resize(static_cast<std::size_t>(2 * units));
            }
            return m_units.data();
        }
        const QChar* text() const { return reinterpret_cast<const QChar*>(m_units.data()); }

    private:
        std::vector<char16_t> m_units;
    };

    const char* m_begin;
    const char* m_at;
    const char* m_end;
    bool m_failed = false;
    Units m_units;
    QByteArray m_key; ///< the last key that had escapes
};

inline void JsonCursor::skipBlanks() {
    while (m_at != m_end && (*m_at == ' ' || *m_at == '\n' || *m_at == '\r' || *m_at == '\t')) {
        ++m_at;
    }
}

inline JsonCursor::Kind JsonCursor::next() {
    skipBlanks();
    switch (m_at == m_end ? '\0' : *m_at) {
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
    case '-':
    case '0':
    case '1':
    case '2':
    case '3':
    case '4':
    case '5':
    case '6':
    case '7':
    case '8':
    case '9':
        return Kind::Number;
    default:
        fail();
        return Kind::Invalid;
    }
}

inline bool JsonCursor::openString() {
    skipBlanks();
    if (m_at == m_end || *m_at != '"') {
        return fail();
    }
    ++m_at;
    return true;
}

inline bool JsonCursor::open(char opening, char closing) {
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

inline bool JsonCursor::another(char closing) {
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

} // namespace dorvantel
