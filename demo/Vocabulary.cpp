// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/Vocabulary.h"

#include "platform/Fatal.h"

#include <QFile>
#include <QStringList>

#include <initializer_list>
#include <utility>

// Resources of a static library are registered by hand, and the macro wants to stand outside every namespace.
static void registerVocabularyFiles() {
    Q_INIT_RESOURCE(demo_vocabulary);
}

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

QString fileText(const QString& name) {
    QFile file(u":/demo/vocabulary/"_s + name);
    if (!file.open(QIODevice::ReadOnly)) {
        fatalError(u"the word list "_s + name + u" is not compiled in"_s);
    }
    return QString::fromUtf8(file.readAll());
}

QStringList linesOf(const QString& name) {
    QStringList lines;
    const QStringList all = fileText(name).split(u'\n');
    for (const QString& line : all) {
        const QString content = line.trimmed();
        if (!content.isEmpty() && !content.startsWith("-- "_L1)) {
            lines.append(content);
        }
    }
    return lines;
}

// CV text reaches the stand-in without the letters of other languages ("Français" as "Franais").
QString withoutForeignLetters(const QString& spelling) {
    static const QString kept = u"ñáéíóúüÑÁÉÍÓÚÜ"_s;
    QString out;
    for (const QChar c : spelling) {
        if (!c.isLetter() || c.unicode() < 0x80 || kept.contains(c)) {
            out += c;
        }
    }
    return out;
}

QString withoutMark(const QString& spelling) {
    return spelling.startsWith(u'~') ? spelling.mid(1) : spelling;
}

void addSpelling(PhraseTable& phrases, const QString& marked, int id) {
    const QString spelling = withoutMark(marked);
    const bool ambiguous = spelling.size() < marked.size();
    phrases.add(spelling, id, ambiguous);
    const QString cleaned = withoutForeignLetters(spelling);
    if (cleaned.size() >= 4 && cleaned != spelling) {
        phrases.add(cleaned, id, ambiguous);
    }
}

// "Display: spelling, ~ambiguous spelling" or "Masculine|Feminine: spelling". The display forms are spellings too,
// unless they are listed as ambiguous.
void addTerm(TermList& list, const QString& line, const QString& field) {
    const qsizetype colon = line.indexOf(u": "_s);
    const QString head = colon < 0 ? line : line.left(colon);
    const QStringList forms = head.split(u'|');
    Term term;
    term.display = withoutMark(forms[0]);
    term.feminine = withoutMark(forms.value(1));
    term.field = field;
    const int id = static_cast<int>(list.terms.size());
    const QStringList spellings = colon < 0 ? QStringList() : line.mid(colon + 2).split(u", "_s);
    for (const QString& spelling : spellings) {
        addSpelling(list.phrases, spelling, id);
    }
    for (const QString& form : forms) {
        addSpelling(list.phrases, form, id);
    }
    list.terms.push_back(std::move(term));
}

TermList readTerms(std::initializer_list<QString> files) {
    TermList list;
    for (const QString& file : files) {
        QString field;
        const QStringList lines = linesOf(file);
        for (const QString& line : lines) {
            if (line.startsWith("@field "_L1)) {
                field = line.mid(7);
            } else {
                addTerm(list, line, field);
            }
        }
    }
    return list;
}

Section sectionNamed(const QString& name) {
    static const QHash<QString, Section> names = {
        {u"profile"_s, Section::Profile},     {u"experience"_s, Section::Experience},
        {u"education"_s, Section::Education}, {u"technical"_s, Section::Technical},
        {u"soft"_s, Section::Soft},           {u"skills"_s, Section::Skills},
        {u"languages"_s, Section::Languages}, {u"contact"_s, Section::Contact},
        {u"other"_s, Section::Other},         {u"document"_s, Section::Document}};
    return names.value(name, Section::None);
}

void readHeadings(PhraseTable& headings) {
    const QStringList lines = linesOf(u"headings.txt"_s);
    for (const QString& line : lines) {
        const qsizetype colon = line.indexOf(u": "_s);
        const int id = static_cast<int>(sectionNamed(line.left(colon)));
        const QStringList spellings = line.mid(colon + 2).split(u", "_s);
        for (const QString& spelling : spellings) {
            addSpelling(headings, spelling, id);
        }
    }
}

void readFirstNames(Vocabulary& out, const QString& file, NameGender gender) {
    const QStringList names = fileText(file).simplified().split(u' ');
    for (const QString& name : names) {
        const QString key = foldedKey(name);
        if (!out.firstNames.contains(key)) {
            out.firstNames.insert(key, gender);
            out.firstNameForms.insert(key, name);
        }
    }
}

void readNotNames(QSet<QString>& out) {
    const QStringList lines = linesOf(u"not-names.txt"_s);
    for (const QString& line : lines) {
        const QStringList words = line.split(u' ');
        for (const QString& word : words) {
            out.insert(foldedKey(word));
        }
    }
}

void readStopWords(FoldedMap<unsigned>& out) {
    static const QHash<QString, unsigned> bits = {{u"es"_s, StopWord::Spanish},     {u"en"_s, StopWord::English},
                                                  {u"fr"_s, StopWord::French},      {u"de"_s, StopWord::German},
                                                  {u"it"_s, StopWord::Italian},     {u"pt"_s, StopWord::Portuguese},
                                                  {u"request"_s, StopWord::Request}};
    const QStringList lines = linesOf(u"stop-words.txt"_s);
    for (const QString& line : lines) {
        const qsizetype colon = line.indexOf(u": "_s);
        const QStringList words = line.mid(colon + 2).split(u' ');
        for (const QString& word : words) {
            out[foldedText(word)] |= bits.value(line.left(colon));
        }
    }
}

Vocabulary readVocabulary() {
    registerVocabularyFiles();
    Vocabulary out;
    out.technical = readTerms({u"tech-computing.txt"_s, u"tech-business.txt"_s, u"tech-care.txt"_s,
                               u"tech-trades.txt"_s, u"tech-creative.txt"_s});
    out.soft = readTerms({u"soft-skills.txt"_s});
    out.languages = readTerms({u"languages.txt"_s});
    out.professions = readTerms({u"professions.txt"_s});
    readHeadings(out.headings);
    readFirstNames(out, u"first-names-female.txt"_s, NameGender::Feminine);
    readFirstNames(out, u"first-names-male.txt"_s, NameGender::Masculine);
    readStopWords(out.stopWords);
    readNotNames(out.notNames);
    return out;
}

} // namespace

const Vocabulary& vocabulary() {
    static const Vocabulary words = readVocabulary();
    return words;
}

unsigned stopWordBits(std::u16string_view word) {
    const auto found = vocabulary().stopWords.find(word);
    return found == vocabulary().stopWords.end() ? 0 : found->second;
}

QString foldedKey(QStringView text) {
    const std::u16string key = foldedText(text);
    return QString::fromUtf16(key.data(), static_cast<qsizetype>(key.size()));
}

} // namespace dorvantel
