// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/CvProfession.h"

#include "platform/Text.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <optional>
#include <vector>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestTitle = 70; // characters: a title is no sentence

const PhraseTable& professions() {
    return vocabulary().professions.phrases;
}

// A word that also names a field or anything else ("Química", "Manager") counts as a title only.
enum class Place { Title, RunningText };

std::optional<PhraseMatch> professionAmong(std::span<const Word> words, Place place) {
    std::vector<PhraseMatch> found = professions().find({words.begin(), words.end()});
    if (place == Place::RunningText) {
        std::erase_if(found, [](const PhraseMatch& match) { return match.ambiguous; });
    }
    // "Gerente" and "Asistente" say little; anything longer on the same line says more.
    const auto best = std::ranges::max_element(found, {}, &PhraseMatch::wordCount);
    return best == found.end() ? std::nullopt : std::optional(*best);
}

QString spanishForm(int id, NameGender gender) {
    const Term& term = vocabulary().professions.terms[static_cast<std::size_t>(id)];
    return gender == NameGender::Feminine && !term.feminine.isEmpty() ? term.feminine : term.display;
}

// A job's line without what is not its title: the dates and the employer.
QString titlePart(const QString& line) {
    static const QRegularExpression rest(
        u"(?:\\s+(?:at|en|@|bei|chez|presso|desde|from)\\s+.*|\\s*[|/:·]?\\s*\\(?\\b(?:19|20)\\d{2}\\b.*|\\s+@.*|"
        "\\s*[0-9]{1,2}/[0-9]{2,4}.*|\\s+-\\s+.*)$"_s,
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression monthLast(
        u"\\s+(?:jan|feb|mar|apr|may|jun|jul|aug|sep|oct|nov|dec|ene|abr|ago|dic)[a-zé]*\\.?$"_s,
        QRegularExpression::CaseInsensitiveOption);
    QString title = line;
    static const QRegularExpression datesFirst(
        u"^(?:[0-9]{1,2}[/.-])?(?:19|20)\\d{2}[-–/ ]*(?:(?:19|20)\\d{2})?\\s+"_s);
    title.remove(datesFirst).remove(rest).remove(monthLast);
    while (!title.isEmpty() && (title.back() == u'.' || title.back() == u'-' || title.back() == u'/')) {
        title.chop(1);
    }
    return trimmed(title);
}

QString asTitle(const QString& text) {
    if (text != text.toUpper()) {
        return text;
    }
    static const QSet<QString> abbreviations = {u"PHP"_s, u"UX"_s,  u"UI"_s,  u"IT"_s,  u"QA"_s,  u"SAP"_s,
                                                u"SQL"_s, u"CEO"_s, u"CTO"_s, u"CFO"_s, u"BI"_s,  u"AI"_s,
                                                u"IA"_s,  u"HR"_s,  u"PRL"_s, u"BIM"_s, u"CAD"_s, u"CNC"_s,
                                                u"ERP"_s, u"CRM"_s, u"SEO"_s, u"AWS"_s, u"ISO"_s, u"RRHH"_s};
    static const QSet<QString> small = {u"DE"_s, u"DEL"_s, u"LA"_s,  u"EN"_s, u"Y"_s,
                                        u"E"_s,  u"OF"_s,  u"AND"_s, u"THE"_s};
    QStringList words = text.split(u' ');
    for (QString& word : words) {
        if (small.contains(word)) {
            word = word.toLower();
        } else if (!abbreviations.contains(word)) {
            word = capitalized(word);
        }
    }
    return words.join(u' ');
}

bool isTitleLine(const CvLine& line) {
    return !line.heading && line.text.size() <= longestTitle && !line.text.contains(u'@') &&
           !line.text.contains("www"_L1) && line.text.count(u'.') <= 2 && !line.text.contains("http"_L1);
}

// A line beside the name, the nearest below first.
QString titleBesideName(const CvText& cv, const FoundName& name) {
    if (name.lines == 0) {
        return {};
    }
    const std::vector<CvLine>& lines = cv.lines();
    const auto end = static_cast<std::ptrdiff_t>(name.firstLine + name.lines);
    const auto begin = static_cast<std::ptrdiff_t>(name.firstLine);
    bool sectionBegan = false;
    for (const std::ptrdiff_t i : {end, end + 1, end + 2, begin - 1, begin - 2}) {
        if (i < 0 || i >= static_cast<std::ptrdiff_t>(lines.size()) || (i >= end && sectionBegan)) {
            continue;
        }
        const CvLine& line = lines[static_cast<std::size_t>(i)];
        sectionBegan = sectionBegan || (line.heading && line.section != Section::Contact);
        if (isTitleLine(line) && professionAmong(cv.wordsOf(line), Place::Title)) {
            return asTitle(titlePart(line.text));
        }
    }
    return {};
}

// The line right under the name, when it can hardly be anything but a title: in languages and trades that the
// vocabulary does not know ("Développeur Full Stack").
QString unknownTitleUnderName(const CvText& cv, const FoundName& name) {
    const std::size_t next = name.firstLine + name.lines;
    if (name.lines == 0 || next >= cv.lines().size()) {
        return {};
    }
    const CvLine& line = cv.lines()[next];
    const auto holdsOther = [&](const Word& word) {
        const QString key = QString::fromUtf16(word.folded.data(), static_cast<qsizetype>(word.folded.size()));
        return vocabulary().notNames.contains(key) || word.inAddress;
    };
    const bool titleLike = isTitleLine(line) && line.wordCount <= 4 && line.text.front().isUpper() &&
                           std::ranges::none_of(line.text, [](QChar c) { return c.isDigit() || c == u':'; }) &&
                           std::ranges::none_of(cv.wordsOf(line), holdsOther);
    return titleLike ? asTitle(line.text) : QString();
}

// "Puesto solicitado: Contable", or the line under such a label.
QString labelledTitle(const CvText& cv) {
    static const QRegularExpression label(
        u"^(?:profesión|ocupación|puesto(?: solicitado| actual| deseado)?|cargo|job applied for|position|occupation|"
        "profession|titulación|desired employment|occupational field|settore professionale|beruf|"
        "occupazione desiderata)\\s*:?\\s*"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    const std::vector<CvLine>& lines = cv.lines();
    constexpr std::size_t linesLookedAt = 40;
    for (std::size_t i = 0; i < std::min(lines.size(), linesLookedAt); ++i) {
        const QRegularExpressionMatch match = label.match(lines[i].text);
        if (!match.hasMatch()) {
            continue;
        }
        const QString rest = lines[i].text.mid(match.capturedEnd());
        const bool clearLabel =
            rest.isEmpty() || match.captured().contains(u':') || match.captured() == match.captured().toUpper();
        const QString value = rest.isEmpty() && i + 1 < lines.size() ? lines[i + 1].text : rest;
        const FoldedText words(value);
        const bool known = professionAmong(words.words(), Place::Title).has_value();
        const bool titleLike =
            clearLabel && words.words().size() <= 4 && std::ranges::none_of(value, [](QChar c) { return c.isDigit(); });
        if (!value.isEmpty() && vocabulary().headings.exact(words.words()) < 0 && value.size() <= longestTitle &&
            (known || titleLike)) {
            return asTitle(titlePart(value));
        }
    }
    return {};
}

QString professionOfSection(const CvText& cv, Section section, NameGender gender) {
    for (const CvLine& line : cv.lines()) {
        if (line.section != section || line.heading) {
            continue;
        }
        if (const std::optional<PhraseMatch> found = professionAmong(cv.wordsOf(line), Place::RunningText)) {
            return spanishForm(found->id, gender);
        }
    }
    return {};
}

// The title of the first job listed, in the words of the CV when its line is a title.
QString latestJob(const CvText& cv, NameGender gender) {
    for (const CvLine& line : cv.lines()) {
        if (line.section != Section::Experience || line.heading) {
            continue;
        }
        const Place place = isTitleLine(line) && line.wordCount <= 7 ? Place::Title : Place::RunningText;
        const std::optional<PhraseMatch> found = professionAmong(cv.wordsOf(line), place);
        if (!found) {
            continue;
        }
        const QString title = titlePart(line.text);
        const FoldedText words(title);
        const bool whole =
            isTitleLine(line) && words.words().size() <= 7 && professionAmong(words.words(), Place::Title);
        return whole ? asTitle(title) : spanishForm(found->id, gender);
    }
    return {};
}

QString anyProfession(const CvText& cv, NameGender gender) {
    const std::vector<PhraseMatch> found = professions().find(cv.text().words());
    const auto first = std::ranges::find(found, false, &PhraseMatch::ambiguous);
    return first == found.end() ? QString() : spanishForm(first->id, gender);
}

} // namespace

QString professionIn(const CvText& cv, const FoundName& name, NameGender gender) {
    QString profession = titleBesideName(cv, name);
    if (profession.isEmpty()) {
        profession = labelledTitle(cv);
    }
    if (profession.isEmpty()) {
        profession = professionOfSection(cv, Section::Profile, gender);
    }
    if (profession.isEmpty()) {
        profession = unknownTitleUnderName(cv, name);
    }
    if (profession.isEmpty()) {
        profession = latestJob(cv, gender);
    }
    return profession.isEmpty() ? anyProfession(cv, gender) : profession;
}

} // namespace dorvantel
