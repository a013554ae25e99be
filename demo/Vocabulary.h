// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/PhraseTable.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <vector>

namespace dorvantel {

/// One thing with a name: a skill, a language, a profession.
struct Term {
    QString display;  ///< the one Spanish form; of a profession the masculine one
    QString feminine; ///< of a profession with two forms, else empty
    QString field;    ///< field of work ("contabilidad"), empty where a file names none
};

/// The terms of one kind and all their spellings. A match's id is the index into `terms`.
struct TermList {
    std::vector<Term> terms;
    PhraseTable phrases;
};

/// What part of a CV a heading opens.
enum class Section {
    None,
    Profile,
    Experience,
    Education,
    Technical,
    Soft,
    Skills,
    Languages,
    Contact,
    Other,
    Document ///< "Currículum vítae": a title of the whole, often repeated on every page
};

/// What is known of a first name.
enum class NameGender { Unknown, Feminine, Masculine };

/// Whose small words a word is one of; one bit each.
namespace StopWord {
inline constexpr unsigned Spanish = 1;
inline constexpr unsigned English = 2;
inline constexpr unsigned French = 4;
inline constexpr unsigned German = 8;
inline constexpr unsigned Italian = 16;
inline constexpr unsigned Portuguese = 32;
inline constexpr unsigned Request = 64; ///< of a search ("busco", "experience"), in any language
inline constexpr unsigned AnyLanguage = 63;
} // namespace StopWord

/// What the stand-in knows about CVs: compiled-in word lists, read once, then only read, from any thread.
struct Vocabulary {
    TermList technical;
    TermList soft;
    TermList languages;
    TermList professions;
    PhraseTable headings;                   ///< ids are `Section` values
    QHash<QString, NameGender> firstNames;  ///< keys folded
    QHash<QString, QString> firstNameForms; ///< folded -> as written, with its accents
    FoldedMap<unsigned> stopWords;          ///< `StopWord` bits
    QSet<QString> notNames;                 ///< words that no line with a name holds; folded
};

const Vocabulary& vocabulary();

/// The `StopWord` bits of a folded word; 0 for most.
unsigned stopWordBits(std::u16string_view word);

/// `text` folded, as a string: the key form of the vocabulary's name and word tables.
QString foldedKey(QStringView text);

} // namespace dorvantel
