// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/embedding/NameRemoval.h"

#include "service/embedding/CandidateName.h"

#include <QRegularExpression>

#include <algorithm>

namespace dorvantel::service {

using namespace Qt::StringLiterals;

namespace {

/// How far before a name its titles can begin.
constexpr qsizetype longestIntroduction = 80;

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
    /// Where the text begins that can still be cut.
    qsizetype at() const { return m_at; }
    QString rest() {
        m_kept += QStringView(m_text).sliced(m_at);
        return m_kept;
    }

private:
    const QString& m_text;
    QString m_kept;
    qsizetype m_at = 0;
};

bool areBlanks(QStringView between) {
    return between.trimmed().isEmpty();
}

/// Whether nothing but a blank is between a word and what begins at `next`, or the full stop of a short word.
bool goesWith(const QString& text, const Word& word, qsizetype next) {
    const QStringView between = QStringView(text).sliced(word.end, next - word.end);
    const bool isShortened = word.text.size() == 1 || isTitle(word.text);
    return areBlanks(isShortened && between.startsWith(u'.') ? between.sliced(1) : between);
}

enum class Mention { Name, Account };

/// Cuts a mention with the initials, the titles and the article that lead to it.
void cutMention(Cutter& cutter, const QString& text, qsizetype begin, qsizetype end, const CandidateName& name,
                Mention mention) {
    const qsizetype from = std::max(cutter.at(), begin - longestIntroduction);
    std::vector<Word> words = wordsOf(QStringView(text).sliced(from, begin - from));
    for (Word& word : words) {
        word.begin += from;
        word.end += from;
    }
    const auto isBefore = [&] { return !words.empty() && goesWith(text, words.back(), begin); };
    const auto take = [&] {
        begin = words.back().begin;
        words.pop_back();
    };
    while (isBefore() && name.hasInitial(words.back()) && text[words.back().end] == u'.') {
        take();
    }
    bool mayHaveArticle = mention == Mention::Name;
    while (isBefore() && isTitle(words.back().text)) {
        take();
        mayHaveArticle = true;
    }
    if (mayHaveArticle && isBefore()) {
        const Word& article = words.back();
        if (article.text == u"el" || article.text == u"la") {
            begin = article.begin;
        } else if (article.text == u"al" || article.text == u"del") {
            // A preposition with the article "el": the preposition stays, as it does before "la".
            cutter.cut(article.end - 1, article.end);
        }
    }
    cutter.cut(begin, end);
}

/// E-mail and web addresses, and accounts made of the name: pieces between blanks, brackets, quotes and commas.
QString withoutAddresses(const QString& text, const CandidateName& name) {
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
        if (isMail || isWeb || name.isIn(piece)) {
            cutMention(cutter, text, at, at + piece.size(), name, Mention::Account);
        }
        at = end + 1;
    }
    return cutter.rest();
}

/// The part of the e-mail before the @, where it stands by itself.
QString withoutHandle(const QString& text, const CandidateName& name) {
    if (name.handle().isEmpty()) {
        return text;
    }
    const QRegularExpression expression(
        u"(?<![\\w.@-])"_s + QRegularExpression::escape(name.handle()) + u"(?![\\w@]|[.-]\\w)"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    Cutter cutter(text);
    for (auto matches = expression.globalMatch(text); matches.hasNext();) {
        const auto match = matches.next();
        cutMention(cutter, text, match.capturedStart(), match.capturedEnd(), name, Mention::Account);
    }
    return cutter.rest();
}

QString withoutName(const QString& text, const CandidateName& name) {
    const std::vector<Word> words = wordsOf(text);
    const bool isAllLower = std::ranges::none_of(text, [](QChar character) { return character.isUpper(); });
    const auto isJoined = [&](std::size_t left) {
        const QStringView between = QStringView(text).sliced(words[left].end, words[left + 1].begin - words[left].end);
        return between == u"-" || between == u"'" || between == u"’" || between == u"\u2011" ||
               goesWith(text, words[left], words[left + 1].begin);
    };
    Cutter cutter(text);
    for (std::size_t first = 0; first < words.size();) {
        const CandidateName::Run run = name.runAt(words, first, isAllLower, isJoined);
        if (run.named == 0) { // nor does what is left of the run
            first += std::max<std::size_t>(run.length, 1);
            continue;
        }
        const qsizetype begin = words[first].begin;
        first += run.named;
        qsizetype end = words[first - 1].end;
        // "Ana G."
        while (first < words.size() && name.hasInitial(words[first]) && words[first].end < text.size() &&
               text[words[first].end] == u'.' && areBlanks(QStringView(text).sliced(end, words[first].begin - end))) {
            end = words[first++].end + 1;
        }
        cutMention(cutter, text, begin, end, name, Mention::Name);
    }
    return cutter.rest();
}

} // namespace

std::string withoutNameAndEmail(std::string_view text, std::string_view name, std::string_view email) {
    const auto decoded = [](std::string_view utf8) {
        return QString::fromUtf8(QByteArrayView(utf8.begin(), utf8.end()));
    };
    const CandidateName ownName(decoded(name), decoded(email));
    return withoutName(withoutHandle(withoutAddresses(decoded(text), ownName), ownName), ownName).toStdString();
}

} // namespace dorvantel::service
