// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/CVText.h"

#include "platform/PDFDocument.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>

namespace dorvantel {

namespace {

/// What the rules make of a character.
enum class Kind : std::uint8_t { Dropped, Letter, Digit, LineFeed, Umlaut, Blank };

/// The last kept character that is no blank, as far as the rules ask about it.
enum class Previous : std::uint8_t { None, LineFeed, Number, Other };

/// Every character that the rules name has a composed form of one unit below this.
constexpr char16_t endOfNamed = 0x0300;

constexpr std::array<Kind, endOfNamed> makeKinds() {
    std::array<Kind, endOfNamed> kinds{};
    for (const char16_t c : std::u16string_view(u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                                u"ÑñáéíóúÁÉÍÓÚ¡!¿?./\\:-@")) {
        kinds[c] = Kind::Letter;
    }
    for (const char16_t c : std::u16string_view(u"0123456789")) {
        kinds[c] = Kind::Digit;
    }
    kinds[u'\n'] = Kind::LineFeed;
    kinds[u'ü'] = Kind::Umlaut;
    kinds[u'Ü'] = Kind::Umlaut;
    kinds[u' '] = Kind::Blank;
    return kinds;
}

constexpr std::array<Kind, endOfNamed> kinds = makeKinds();

struct Step {
    bool kept;
    Previous previous;
};

constexpr Step stepOf(Previous previous, Kind kind, bool numberFollows) {
    switch (kind) {
    case Kind::Letter:
        return {true, Previous::Other};
    case Kind::Digit:
        return {true, Previous::Number};
    case Kind::LineFeed:
        return {previous != Previous::LineFeed, Previous::LineFeed};
    case Kind::Umlaut:
        return previous == Previous::LineFeed ? Step{false, previous} : Step{true, Previous::Other};
    case Kind::Blank: {
        const bool dropped = previous == Previous::None || previous == Previous::LineFeed ||
                             (previous == Previous::Number && numberFollows);
        return {!dropped, previous};
    }
    case Kind::Dropped:
        break;
    }
    return {false, previous};
}

bool isNumber(UChar32 c) {
    return u_getIntPropertyValue(c, UCHAR_NUMERIC_TYPE) != U_NT_NONE;
}

/// The kind of one character. No equivalent form of a character that the rules name is longer than two units.
Kind kindOf(std::u16string_view cluster) {
    if (cluster.size() == 1 && cluster[0] < endOfNamed) {
        return kinds[cluster[0]];
    }
    if (cluster.size() > 2) {
        return Kind::Dropped;
    }
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString units(cluster.data(), static_cast<int32_t>(cluster.size()));
    const icu::UnicodeString composed = icu::Normalizer2::getNFCInstance(status)->normalize(units, status);
    const bool one = U_SUCCESS(status) && composed.length() == 1 && composed[0] < endOfNamed;
    return one ? kinds[composed[0]] : Kind::Dropped;
}

/// What is known of a UTF-16 unit alone, in one byte: the kind of the character that it is, and two flags.
using UnitClass = std::uint8_t;
constexpr UnitClass kindBits = 7;
constexpr UnitClass numberFlag = 8; ///< has the numeric property
constexpr UnitClass joinsFlag = 16; ///< may be one character with a neighbour; without it only CR LF is

using UnitClasses = std::array<UnitClass, 0x10000>;

UnitClass classOf(char16_t unit) {
    const int breaks = u_getIntPropertyValue(unit, UCHAR_GRAPHEME_CLUSTER_BREAK);
    const bool alone = breaks == U_GCB_OTHER || breaks == U_GCB_CONTROL || breaks == U_GCB_CR || breaks == U_GCB_LF;
    if (!alone || U16_IS_SURROGATE(unit)) {
        return joinsFlag;
    }
    return static_cast<UnitClass>(static_cast<unsigned>(kindOf({&unit, 1})) | (isNumber(unit) ? numberFlag : 0U));
}

/// A millisecond or two to make, once.
const UnitClasses& unitClasses() {
    static const auto classes = [] {
        auto made = std::make_unique<UnitClasses>();
        for (std::size_t unit = 0; unit < made->size(); ++unit) {
            (*made)[unit] = classOf(static_cast<char16_t>(unit));
        }
        return made;
    }();
    return *classes;
}

/// `stepOf` as a table, in one byte each: the next `Previous`, already where the next look-up needs it, and a flag. It
/// is looked up at the `Previous` now, the character's kind and whether a number follows, put together.
using PackedStep = std::uint8_t;
constexpr int previousShift = 4;
constexpr PackedStep previousBits = 0x30;
constexpr int keptShift = 7;

constexpr auto makeSteps() {
    std::array<PackedStep, 64> steps{};
    for (const Previous previous : {Previous::None, Previous::LineFeed, Previous::Number, Previous::Other}) {
        for (const Kind kind : {Kind::Dropped, Kind::Letter, Kind::Digit, Kind::LineFeed, Kind::Umlaut, Kind::Blank}) {
            for (const unsigned number : {0U, unsigned{numberFlag}}) {
                const Step step = stepOf(previous, kind, number != 0);
                steps[(static_cast<unsigned>(previous) << previousShift) | static_cast<unsigned>(kind) | number] =
                    static_cast<PackedStep>((step.kept ? 1U << keptShift : 0U) |
                                            (static_cast<unsigned>(step.previous) << previousShift));
            }
        }
    }
    return steps;
}

constexpr auto steps = makeSteps();

class Cleaner {
public:
    explicit Cleaner(const QString& text)
        : m_text(reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())) {}

    QString cleaned() {
        QString result(static_cast<qsizetype>(m_text.size()), Qt::Uninitialized);
        char16_t* const begin = reinterpret_cast<char16_t*>(result.data());
        m_out = begin;
        std::size_t position = 0;
        while (position < m_text.size()) {
            position = cleanPlain(position);
            if (position < m_text.size()) {
                position = cleanClusters(position);
            }
        }
        result.truncate(m_out - begin);
        return result;
    }

private:
    /// Takes units as long as it is sure that each is a character. Returns where it stopped.
    std::size_t cleanPlain(std::size_t position) {
        const UnitClasses& classes = m_classes;
        const char16_t* const text = m_text.data();
        const std::size_t last = m_text.size() - 1;
        char16_t* out = m_out;
        unsigned previous = static_cast<unsigned>(m_previous) << previousShift;
        UnitClass unitClass = classes[text[position]];
        while (position < last) {
            const char16_t unit = text[position];
            const char16_t next = text[position + 1];
            const UnitClass nextClass = classes[next];
            if (((unitClass | nextClass) & joinsFlag) != 0) {
                break;
            }
            if (unit == u'\r' && next == u'\n') {
                position += 2;
                unitClass = position < last ? classes[text[position]] : UnitClass{};
                continue;
            }
            const PackedStep step = steps[previous | (unitClass & kindBits) | (nextClass & numberFlag)];
            *out = unit;
            out += step >> keptShift;
            previous = step & previousBits;
            unitClass = nextClass;
            ++position;
        }
        m_out = out;
        m_previous = static_cast<Previous>(previous >> previousShift);
        return position;
    }

    bool isSureBoundary(std::size_t position) const {
        const char16_t before = m_text[position - 1];
        const char16_t after = m_text[position];
        return ((m_classes[before] | m_classes[after]) & joinsFlag) == 0 && !(before == u'\r' && after == u'\n');
    }

    /// Takes the characters from `begin` to the next place that is sure to be between two of them.
    std::size_t cleanClusters(std::size_t begin) {
        std::size_t end = begin + 1;
        while (end < m_text.size() && !isSureBoundary(end)) {
            ++end;
        }
        if (end - begin == 1) {
            take(begin, end);
            return end;
        }
        const icu::UnicodeString units(false, m_text.data() + begin, static_cast<int32_t>(end - begin));
        icu::BreakIterator& clusters = clusterIterator();
        clusters.setText(units);
        for (int32_t from = 0, to = clusters.next(); to != icu::BreakIterator::DONE; from = to, to = clusters.next()) {
            take(begin + static_cast<std::size_t>(from), begin + static_cast<std::size_t>(to));
        }
        return end;
    }

    /// Takes the one character from `begin` to `end`.
    void take(std::size_t begin, std::size_t end) {
        Kind kind = kindOf(m_text.substr(begin, end - begin));
        bool numberFollows = false;
        if (kind == Kind::Blank) {
            if (end == m_text.size()) {
                kind = Kind::Dropped; // nothing follows
            } else {
                UChar32 next = 0;
                U16_GET(m_text.data(), 0, end, m_text.size(), next);
                numberFollows = isNumber(next);
            }
        }
        const Step step = stepOf(m_previous, kind, numberFollows);
        m_previous = step.previous;
        if (step.kept) {
            m_out = std::copy(m_text.begin() + static_cast<std::ptrdiff_t>(begin),
                              m_text.begin() + static_cast<std::ptrdiff_t>(end), m_out);
        }
    }

    icu::BreakIterator& clusterIterator() {
        if (!m_clusters) {
            UErrorCode status = U_ZERO_ERROR;
            m_clusters.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        }
        return *m_clusters;
    }

    std::u16string_view m_text;
    const UnitClasses& m_classes = unitClasses();
    std::unique_ptr<icu::BreakIterator> m_clusters;
    Previous m_previous = Previous::None;
    char16_t* m_out = nullptr;
};

} // namespace

QString cleanExtractedText(const QString& text) {
    return text.isEmpty() ? QString() : Cleaner(text).cleaned();
}

QString extractCleanText(const PDFDocument& document) {
    QString text;
    for (qsizetype page = 0; page < document.pageCount(); ++page) {
        text += document.pageText(page);
    }
    return cleanExtractedText(text);
}

} // namespace dorvantel
