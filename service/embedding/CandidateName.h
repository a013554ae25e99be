// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <QString>

#include <vector>

namespace dorvantel::service {

/// A word of a text: letters, digits and marks. A point before an ordinal sign belongs to it ("Prof.ª").
struct Word {
    qsizetype begin = 0; ///< in the text
    qsizetype end = 0;
    QString text; ///< without case, accents and that point
    bool isLower = false;
};

std::vector<Word> wordsOf(QStringView text);

/// Without case and accents.
QString folded(QStringView word);

/// "Sra", "Dr" and the like, folded.
bool isTitle(QStringView word);

/// A candidate's name as texts and accounts can mention it. A *part* is a word of it that is neither an initial nor a
/// small word such as "de". A value; any thread.
class CandidateName {
public:
    CandidateName(const QString& name, const QString& email);

    /// How many words of a text, one after the other, are words of the name.
    struct Run {
        std::size_t length = 0; ///< until the first that is none
        std::size_t named = 0;  ///< of these, until the last part; 0 when they do not mention the name
    };
    /// The run that begins at `first`. `isJoined` tells of the index of a word whether the next one goes with it.
    template <typename IsJoined>
    Run runAt(const std::vector<Word>& words, std::size_t first, bool isAllLower, IsJoined isJoined) const {
        Run run;
        std::size_t parts = 0;
        bool isWritten = isAllLower; ///< as a name
        while (first + run.length < words.size()) {
            const std::size_t at = first + run.length;
            const bool goesOn = run.length == 0 ? m_words.contains(words[at].text)
                                                : isJoined(at - 1) && follows(words[at - 1].text, words[at].text);
            if (!goesOn) {
                break;
            }
            ++run.length;
            if (isPart(words[at].text)) {
                ++parts;
                isWritten = isWritten || !words[at].isLower;
                run.named = run.length;
            }
        }
        if (parts == 0 || (parts == 1 && !isWritten)) {
            run.named = 0;
        }
        return run;
    }

    /// Whether the word is the first letter of a word of the name, as a capital.
    bool hasInitial(const Word& word) const;

    /// Whether a text without blanks is made of the name: an account ("ana_garcia", "AnaGarcia92", "@agarcia"), an
    /// address ("anagarcia.example") or its words written together.
    bool isIn(QStringView piece) const;

    /// The e-mail's part before the @, folded; empty when it says nothing of the name.
    const QString& handle() const { return m_handle; }

private:
    bool isPart(const QString& word) const;
    bool follows(const QString& left, const QString& right) const;
    bool holdsTwoParts(const QString& letters) const;
    /// Whether it is a part behind initials, or with another word of the name.
    bool isPartWithMore(const QString& token, bool isAccount) const;
    bool areAllOfTheName(const std::vector<QString>& tokens) const;

    QSet<QString> m_words;
    QSet<QString> m_neighbours;       ///< two words with a blank between them
    std::vector<QString> m_longParts; ///< those that hardly stand in other words by chance
    std::vector<QString> m_together;  ///< two of those as one word, or one with the small words before it
    QString m_initials;
    QString m_handle;
};

} // namespace dorvantel::service
