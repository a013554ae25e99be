// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/Vocabulary.h"

#include "tests/support/Print.h"

#include <gmock/gmock.h>

#include <QSet>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

QSet<QString> displayForms(const TermList& list) {
    QSet<QString> forms;
    for (const Term& term : list.terms) {
        forms.insert(term.display);
    }
    return forms;
}

QString meaning(const TermList& list, const QString& spelling) {
    const FoldedText text(spelling);
    const int id = list.phrases.exact(text.words());
    return id < 0 ? QString() : list.terms[static_cast<std::size_t>(id)].display;
}

// Terms that can never be found under their own name, because another one took it.
QStringList hidden(const TermList& list) {
    QStringList terms;
    for (const Term& term : list.terms) {
        if (meaning(list, term.display) != term.display) {
            terms.append(term.display);
        }
    }
    return terms;
}

TEST(Vocabulary, KnowsAtLeastFourHundredTechnicalSkills) {
    EXPECT_GE(displayForms(vocabulary().technical).size(), 400);
    EXPECT_EQ(displayForms(vocabulary().technical).size(), static_cast<qsizetype>(vocabulary().technical.terms.size()));
}

TEST(Vocabulary, KnowsAtLeastEightySoftSkills) {
    EXPECT_GE(displayForms(vocabulary().soft).size(), 80);
    EXPECT_EQ(displayForms(vocabulary().soft).size(), static_cast<qsizetype>(vocabulary().soft.terms.size()));
}

TEST(Vocabulary, KnowsAtLeastFortyLanguages) {
    EXPECT_GE(displayForms(vocabulary().languages).size(), 40);
    EXPECT_EQ(displayForms(vocabulary().languages).size(), static_cast<qsizetype>(vocabulary().languages.terms.size()));
}

TEST(Vocabulary, KnowsAtLeastThreeHundredFirstNamesOfEachGender) {
    int feminine = 0;
    int masculine = 0;
    for (const NameGender gender : vocabulary().firstNames) {
        (gender == NameGender::Feminine ? feminine : masculine) += 1;
    }
    EXPECT_GE(feminine, 300);
    EXPECT_GE(masculine, 300);
}

TEST(Vocabulary, TechnicalSkillsComeFromManyFieldsOfWork) {
    QSet<QString> fields;
    for (const Term& term : vocabulary().technical.terms) {
        fields.insert(term.field);
    }
    EXPECT_GE(fields.size(), 25);
    EXPECT_FALSE(fields.contains(QString()));
}

TEST(Vocabulary, EveryProfessionHasAFieldThatAlsoHasSkillsOrItsOwn) {
    for (const Term& term : vocabulary().professions.terms) {
        EXPECT_FALSE(term.field.isEmpty()) << term.display.toStdString();
    }
}

TEST(Vocabulary, EveryTermIsFoundUnderItsOwnName) {
    EXPECT_EQ(hidden(vocabulary().technical), QStringList());
    EXPECT_EQ(hidden(vocabulary().soft), QStringList());
    EXPECT_EQ(hidden(vocabulary().languages), QStringList());
    EXPECT_EQ(hidden(vocabulary().professions), QStringList());
}

TEST(Vocabulary, EnglishAndSpanishSpellingsMeetInOneForm) {
    const Vocabulary& all = vocabulary();
    EXPECT_EQ(meaning(all.technical, u"accounting"_s), u"Contabilidad"_s);
    EXPECT_EQ(meaning(all.technical, u"Machine learning"_s), u"Aprendizaje automático"_s);
    EXPECT_EQ(meaning(all.soft, u"teamwork"_s), u"Trabajo en equipo"_s);
    EXPECT_EQ(meaning(all.languages, u"English"_s), u"Inglés"_s);
    EXPECT_EQ(meaning(all.languages, u"castellano"_s), u"Español"_s);
    EXPECT_EQ(meaning(all.professions, u"nurse"_s), u"Enfermero"_s);
}

TEST(Vocabulary, SpellingsThatLostTheirForeignLettersAreKnown) {
    EXPECT_EQ(meaning(vocabulary().languages, u"Franais"_s), u"Francés"_s);
    EXPECT_EQ(meaning(vocabulary().languages, u"Portugus"_s), u"Portugués"_s);
}

} // namespace
} // namespace dorvantel
