// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/CvSkills.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

bool isWrittenAsName(const CvText& cv, const PhraseMatch& match) {
    // "express" is a verb and "Go" a verb, "Express" and "Go" are names.
    return !cv.text().originalOf(cv.text().words()[match.firstWord]).front().isLower();
}

// Lines where words with other meanings are meant as skills: they hold a match that can mean nothing else, or several
// that look like names side by side ("Office 97 Excel Access").
QSet<const CvLine*> certainLines(const CvText& cv, const std::vector<PhraseMatch>& matches, bool names) {
    constexpr int sideBySide = 3;
    QSet<const CvLine*> lines;
    QHash<const CvLine*, int> written;
    for (const PhraseMatch& match : matches) {
        const CvLine* line = &cv.lineOf(match.firstWord);
        written[line] += names && isWrittenAsName(cv, match) ? 1 : 0;
        if (!match.ambiguous || written[line] >= sideBySide) {
            lines.insert(line);
        }
    }
    return lines;
}

QStringList named(const std::vector<Term>& terms, const std::vector<int>& ids) {
    QStringList names;
    QSet<int> seen;
    for (const int id : ids) {
        if (!seen.contains(id)) {
            seen.insert(id);
            names.append(terms[static_cast<std::size_t>(id)].display);
        }
    }
    return names;
}

// `own` is the section that lists skills of this kind and no others.
QStringList skillsIn(const CvText& cv, const TermList& list, Section own, bool ambiguousAreNames) {
    const std::vector<PhraseMatch> matches = list.phrases.find(cv.text().words());
    const QSet<const CvLine*> certain = certainLines(cv, matches, ambiguousAreNames);
    std::vector<int> ids;
    for (const PhraseMatch& match : matches) {
        const CvLine& line = cv.lineOf(match.firstWord);
        if (match.ambiguous) {
            const bool amongSkills = line.section == own || line.section == Section::Skills || certain.contains(&line);
            if (!amongSkills || (ambiguousAreNames && !isWrittenAsName(cv, match))) {
                continue;
            }
        }
        ids.push_back(match.id);
    }
    return named(list.terms, ids);
}

// Words that stand beside a language when someone speaks it.
bool tellsLevel(std::u16string_view word) {
    static const QSet<QString> levels = [] {
        const QStringList words =
            u"a1 a2 b1 b2 c1 c2 nativo nativa native natif fluent fluido fluida fluidez bilingue bilingual "
            "avanzado intermedio intermediate basico advanced basic mother materna maternelle muttersprache "
            "muttersprachler fliessend fliesend courant madrelingua lengua idioma idiomas hablo hablado language "
            "languages speak speaking spoken langues sprachen lingue toefl ielts toeic delf dele cambridge "
            "proficiency proficient professional conversational conversacional nociones nivel level fluency "
            "beginner elementary verhandlungssicher grundkenntnisse bueno excelente"_s.split(u' ');
        return QSet<QString>(words.begin(), words.end());
    }();
    return levels.contains(QString::fromUtf16(word.data(), static_cast<qsizetype>(word.size())));
}

bool holdsLevel(std::span<const Word> words) {
    return std::ranges::any_of(words, [](const Word& word) { return tellsLevel(word.folded); });
}

struct LanguageLines {
    QHash<const CvLine*, std::size_t> languageWords;
    const std::vector<CvLine>& lines;

    // Nothing but languages and what is said of them: "Inglés", "Francés básico".
    bool onlyLanguages(const CvLine& line) const {
        const std::size_t count = languageWords.value(&line);
        return count > 0 && line.wordCount <= count + 1;
    }
};

bool isSpoken(const CvText& cv, const PhraseMatch& match, const LanguageLines& context) {
    const CvLine& line = cv.lineOf(match.firstWord);
    if (line.section == Section::Languages) {
        return true;
    }
    const std::span<const Word> all(cv.text().words());
    const std::size_t near = 4;
    const std::size_t first = std::max(line.firstWord, match.firstWord > near ? match.firstWord - near : 0);
    const std::size_t last = std::min(line.firstWord + line.wordCount, match.firstWord + match.wordCount + near);
    if (holdsLevel(all.subspan(first, last - first))) {
        return true;
    }
    if (!context.onlyLanguages(line)) {
        return false;
    }
    const CvLine* before = &line == context.lines.data() ? nullptr : &line - 1;
    const CvLine* after = &line == &context.lines.back() ? nullptr : &line + 1;
    return std::ranges::any_of(std::initializer_list<const CvLine*>{before, after}, [&](const CvLine* neighbour) {
        return neighbour && neighbour->wordCount <= 4 &&
               (context.onlyLanguages(*neighbour) || holdsLevel(cv.wordsOf(*neighbour)));
    });
}

int idOfTextLanguage(const CvText& cv) {
    static const QHash<QString, QString> names = {{u"es"_s, u"Español"_s},  {u"en"_s, u"Inglés"_s},
                                                  {u"fr"_s, u"Francés"_s},  {u"de"_s, u"Alemán"_s},
                                                  {u"it"_s, u"Italiano"_s}, {u"pt"_s, u"Portugués"_s}};
    const FoldedText name(names.value(languageOf(cv.text())));
    return vocabulary().languages.phrases.exact(name.words());
}

} // namespace

QStringList technicalSkillsIn(const CvText& cv) {
    return skillsIn(cv, vocabulary().technical, Section::Technical, true);
}

QStringList softSkillsIn(const CvText& cv) {
    return skillsIn(cv, vocabulary().soft, Section::Soft, false);
}

QStringList languagesIn(const CvText& cv) {
    const TermList& list = vocabulary().languages;
    const std::vector<PhraseMatch> matches = list.phrases.find(cv.text().words());
    LanguageLines context{{}, cv.lines()};
    for (const PhraseMatch& match : matches) {
        context.languageWords[&cv.lineOf(match.firstWord)] += match.wordCount;
    }
    std::vector<int> ids;
    for (const PhraseMatch& match : matches) {
        if (isSpoken(cv, match, context)) {
            ids.push_back(match.id);
        }
    }
    const int own = idOfTextLanguage(cv);
    if (own >= 0 && std::ranges::find(ids, own) == ids.end()) {
        ids.insert(ids.begin(), own);
    }
    return named(list.terms, ids);
}

} // namespace dorvantel
