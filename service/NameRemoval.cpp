// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/NameRemoval.h"

#include <QRegularExpression>
#include <QString>

#include <algorithm>
#include <array>
#include <vector>

namespace dorvantel::service {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<QStringView, 41> smallWords{
    u"of",  u"the", u"and", u"de",    u"del",   u"la",  u"las", u"los", u"el",  u"y",   u"e",   u"i",     u"da", u"das",
    u"do",  u"dos", u"di",  u"du",    u"des",   u"le",  u"van", u"von", u"der", u"den", u"ter", u"ten",   u"zu", u"bin",
    u"ibn", u"al",  u"san", u"santa", u"santo", u"mac", u"mc",  u"o",   u"d",   u"l",   u"st",  u"saint", u"af"};
constexpr std::array<QStringView, 18> titles{u"sr",  u"sra", u"srta", u"srto",  u"don",    u"dona",
                                             u"dna", u"d",   u"da",   u"senor", u"senora", u"senorita",
                                             u"mr",  u"mrs", u"ms",   u"miss",  u"mister", u"mx"};
constexpr std::array<QStringView, 2> articles{u"el", u"la"};

/// Parts shorter than this stand in many words by chance.
constexpr qsizetype shortestPartInside = 3;

/// No name has more words; what has more must not take the time of all others.
constexpr std::size_t mostNameWords = 50;

/// The part of an e-mail address before the @ can be no longer.
constexpr qsizetype longestLocalPart = 64;

template <std::size_t count>
bool isOneOf(const std::array<QStringView, count>& words, QStringView word) {
    return std::ranges::find(words, word) != words.end();
}

/// Without case and accents.
QString folded(QStringView word) {
    const QString lower = word.toString().toCaseFolded();
    if (lower == u"mª"_s) {
        return u"maria"_s;
    }
    QString plain = lower.normalized(QString::NormalizationForm_KD);
    plain.removeIf([](QChar character) { return character.isMark(); });
    return plain.toCaseFolded();
}

struct Word {
    qsizetype begin = 0;
    qsizetype end = 0;
    QString text; ///< folded
    bool isLower = false;
};

bool isInWord(QChar character) {
    return character.isLetterOrNumber() || character.isMark() || character.isSurrogate();
}

std::vector<Word> wordsOf(const QString& text) {
    std::vector<Word> words;
    for (qsizetype at = 0; at < text.size();) {
        if (!isInWord(text[at])) {
            ++at;
            continue;
        }
        const qsizetype begin = at;
        while (at < text.size() && isInWord(text[at])) {
            ++at;
        }
        QString plain = folded(QStringView(text).sliced(begin, at - begin));
        if (!plain.isEmpty()) { // marks alone
            words.push_back({begin, at, std::move(plain), text[begin].isLower()});
        }
    }
    return words;
}

/// A name as a text can mention it.
class Name {
public:
    Name(const QString& name, const QString& email)
        : m_words(wordsOf(name)) {
        m_words.resize(std::min(m_words.size(), mostNameWords));
        const QString local = folded(email.section(u'@', 0, 0));
        QString letters = local;
        letters.removeIf([](QChar character) { return !character.isLetter(); });
        QString initials;
        for (const Word& word : m_words) {
            initials += word.text.front();
        }
        // One that is a word of the name is found as that word.
        const bool isWord = std::ranges::find(m_words, local, &Word::text) != m_words.end();
        if (local.size() <= longestLocalPart && !isWord &&
            (holdsPart(letters) || (initials.size() > 1 && letters == initials))) {
            m_handle = local;
        }
    }

    /// How many of `words` from `first` on are words of the name in their order there; 0 for a mere small word.
    template <typename IsJoined>
    std::size_t matchAt(const std::vector<Word>& words, std::size_t first, bool isAllLower, IsJoined isJoined) const {
        std::size_t longest = 0;
        for (std::size_t start = 0; start < m_words.size(); ++start) {
            std::size_t length = 0;
            std::size_t parts = 0;
            bool isName = isAllLower;
            std::size_t matched = 0; ///< up to the last word that is more than a small one
            while (first + length < words.size() && start + length < m_words.size() &&
                   (length == 0 || isJoined(first + length - 1)) &&
                   words[first + length].text == m_words[start + length].text) {
                const Word& word = words[first + length++];
                if (isPart(word.text)) {
                    ++parts;
                    isName = isName || !word.isLower;
                    matched = length;
                }
            }
            if (parts > 1 || (parts == 1 && isName)) {
                longest = std::max(longest, matched);
            }
        }
        return longest;
    }

    bool hasInitial(const Word& word) const {
        return word.text.size() == 1 && !word.isLower &&
               std::ranges::any_of(m_words, [&](const Word& own) { return own.text.startsWith(word.text); });
    }

    /// Whether a web address or the name of an account is made of the name.
    bool isIn(const QString& address) const {
        const QString plain = folded(address);
        if (!m_handle.isEmpty() && plain.contains(m_handle)) {
            return true;
        }
        const auto partsInside = std::ranges::count_if(
            m_words, [&](const Word& own) { return isLongPart(own.text) && plain.contains(own.text); });
        return partsInside > 1 || std::ranges::any_of(wordsOf(address), [this](const Word& word) {
                   return isPart(word.text) && std::ranges::find(m_words, word.text, &Word::text) != m_words.end();
               });
    }

    /// Empty when it says nothing of the name.
    const QString& handle() const { return m_handle; }

private:
    static bool isPart(const QString& word) { return word.size() > 1 && !isOneOf(smallWords, word); }
    static bool isLongPart(const QString& word) { return word.size() >= shortestPartInside && isPart(word); }
    bool holdsPart(const QString& letters) const {
        return std::ranges::any_of(m_words,
                                   [&](const Word& own) { return isLongPart(own.text) && letters.contains(own.text); });
    }

    std::vector<Word> m_words;
    QString m_handle;
};

/// Takes pieces out of a text, with the blanks that would be left double.
class Cutter {
public:
    explicit Cutter(const QString& text)
        : m_text(text) {}

    void cut(qsizetype begin, qsizetype end) {
        m_kept += QStringView(m_text).sliced(m_at, begin - m_at);
        m_at = end;
        if (m_kept.isEmpty() || m_kept.back().isSpace()) {
            while (m_at < m_text.size() && m_text[m_at].isSpace()) {
                ++m_at;
            }
        }
    }
    QString rest() {
        m_kept += QStringView(m_text).sliced(m_at);
        return m_kept;
    }

private:
    const QString& m_text;
    QString m_kept;
    qsizetype m_at = 0;
};

/// E-mail and web addresses, and what may be the name of an account: pieces between blanks, brackets, quotes and
/// commas.
QString withoutAddresses(const QString& text, const Name& name) {
    constexpr QStringView around = u"<>()[]{}\"',;|";
    constexpr QStringView closing = u".:!?";
    const auto isAround = [&](QChar character) { return character.isSpace() || around.contains(character); };
    Cutter cutter(text);
    for (qsizetype at = 0; at < text.size();) {
        qsizetype end = at;
        while (end < text.size() && !isAround(text[end])) {
            ++end;
        }
        QStringView piece = QStringView(text).sliced(at, end - at);
        while (!piece.isEmpty() && closing.contains(piece.back())) {
            piece.chop(1);
        }
        const bool isMail = piece.indexOf(u'@', 1) > 0 && !piece.endsWith(u'@');
        const bool isWeb = piece.contains(u"://") || piece.startsWith(u"www.", Qt::CaseInsensitive);
        const qsizetype dot = piece.indexOf(u'.');
        const bool mayHoldName = piece.startsWith(u'@') || (dot >= 0 && piece.indexOf(u'/', dot) > 0);
        if (isMail || isWeb || (mayHoldName && name.isIn(piece.toString()))) {
            cutter.cut(at, at + piece.size());
        }
        at = end + 1;
    }
    return cutter.rest();
}

/// The part of the e-mail before the @, where it stands by itself.
QString withoutHandle(const QString& text, const QString& handle) {
    if (handle.isEmpty()) {
        return text;
    }
    const QRegularExpression expression(
        u"(?<![\\w.@-])"_s + QRegularExpression::escape(handle) + u"(?![\\w@]|[.-]\\w)"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    Cutter cutter(text);
    for (auto matches = expression.globalMatch(text); matches.hasNext();) {
        const auto match = matches.next();
        cutter.cut(match.capturedStart(), match.capturedEnd());
    }
    return cutter.rest();
}

QString withoutName(const QString& text, const Name& name) {
    const std::vector<Word> words = wordsOf(text);
    const bool isAllLower = std::ranges::none_of(text, [](QChar character) { return character.isUpper(); });
    const auto isJoined = [&](std::size_t left) {
        const QStringView between = QStringView(text).sliced(words[left].end, words[left + 1].begin - words[left].end);
        const bool isShortened = words[left].text.size() == 1 || isOneOf(titles, words[left].text);
        const QStringView blanks = isShortened && between.startsWith(u'.') ? between.sliced(1) : between;
        return between == u"-" || between == u"'" || between == u"’" || between == u"\u2011" ||
               blanks.trimmed().isEmpty();
    };
    Cutter cutter(text);
    std::size_t free = 0; ///< the first word that may still be cut
    for (std::size_t first = 0; first < words.size();) {
        const std::size_t length = name.matchAt(words, first, isAllLower, isJoined);
        if (length == 0) {
            ++first;
            continue;
        }
        std::size_t begin = first;
        while (begin > free && isJoined(begin - 1) && name.hasInitial(words[begin - 1]) &&
               text[words[begin - 1].end] == u'.') {
            --begin;
        }
        if (begin > free && isJoined(begin - 1) && isOneOf(titles, words[begin - 1].text)) {
            --begin;
            begin -= begin > free && isJoined(begin - 1) && isOneOf(articles, words[begin - 1].text) ? 1 : 0;
        }
        first += length;
        cutter.cut(words[begin].begin, words[first - 1].end);
        free = first;
    }
    return cutter.rest();
}

} // namespace

std::string withoutNameAndEmail(std::string_view text, std::string_view name, std::string_view email) {
    const auto decoded = [](std::string_view utf8) {
        return QString::fromUtf8(QByteArrayView(utf8.begin(), utf8.end()));
    };
    const Name ownName(decoded(name), decoded(email));
    const QString withoutContact = withoutHandle(withoutAddresses(decoded(text), ownName), ownName.handle());
    return withoutName(withoutContact, ownName).toStdString();
}

} // namespace dorvantel::service
