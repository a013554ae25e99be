// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/FoldedText.h"
#include "demo/PhraseTable.h"

#include "tests/support/Print.h"

#include <gmock/gmock.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

std::vector<QString> wordsOf(const FoldedText& text) {
    std::vector<QString> out;
    for (const Word& word : text.words()) {
        out.push_back(QString::fromUtf16(word.folded.data(), static_cast<qsizetype>(word.folded.size())));
    }
    return out;
}

TEST(FoldedText, WordsLoseCaseAndAccents) {
    EXPECT_THAT(wordsOf(FoldedText(u"Diseñadora GRÁFICA, Übung œuvre"_s)),
                ElementsAre(u"disenadora"_s, u"grafica"_s, u"ubung"_s, u"ouvre"_s));
}

TEST(FoldedText, LooseAccentsBelongToTheirLetters) {
    const FoldedText text(u"ingenieri\u0301a"_s);
    EXPECT_THAT(wordsOf(text), ElementsAre(u"ingenieria"_s));
}

TEST(FoldedText, PlusAndHashStayWithTheirWord) {
    EXPECT_THAT(wordsOf(FoldedText(u"C++ y C#, Node.js"_s)),
                ElementsAre(u"c++"_s, u"y"_s, u"c#"_s, u"node"_s, u"js"_s));
}

TEST(FoldedText, WordsKnowWhereTheyStood) {
    const FoldedText text(u"Año: 1999"_s);
    EXPECT_EQ(text.originalOf(text.words()[0]), u"Año"_s);
    EXPECT_EQ(text.originalOf(text.words()[1]), u"1999"_s);
}

TEST(FoldedText, WordsBehindAFullStopOpenASentence) {
    const FoldedText text(u"Uno dos. Tres node.js"_s);
    std::vector<bool> opens;
    for (const Word& word : text.words()) {
        opens.push_back(word.opensSentence);
    }
    EXPECT_THAT(opens, ElementsAre(true, false, true, false, false));
}

TEST(FoldedText, WordsOfAddressesAreMarked) {
    const FoldedText text(u"ana@example.com github.com/ana Ana"_s);
    std::vector<bool> inAddress;
    for (const Word& word : text.words()) {
        inAddress.push_back(word.inAddress);
    }
    EXPECT_THAT(inAddress, ElementsAre(true, true, true, true, true, true, false));
}

TEST(FoldedText, AMovedShortTextKeepsItsWords) {
    FoldedText first(u"Go"_s);
    const FoldedText second(std::move(first));
    EXPECT_THAT(wordsOf(second), ElementsAre(u"go"_s));
}

std::vector<int> idsIn(const PhraseTable& table, const QString& text) {
    std::vector<int> ids;
    const FoldedText foldedWords(text);
    for (const PhraseMatch& match : table.find(foldedWords.words())) {
        ids.push_back(match.id);
    }
    return ids;
}

class PhraseTableFind : public testing::Test {
protected:
    PhraseTableFind() {
        table.add(u"Power BI"_s, 1);
        table.add(u"Power"_s, 2);
        table.add(u"Gestión de proyectos"_s, 3);
        table.add(u"Go"_s, 4, true);
        table.add(u"go"_s, 5);
    }
    PhraseTable table;
};

TEST_F(PhraseTableFind, TheLongestPhraseWins) {
    EXPECT_THAT(idsIn(table, u"Power BI, power"_s), ElementsAre(1, 2));
}

TEST_F(PhraseTableFind, CaseAndAccentsDoNotCount) {
    EXPECT_THAT(idsIn(table, u"GESTION DE PROYECTOS"_s), ElementsAre(3));
}

TEST_F(PhraseTableFind, OnlyWholeWordsCount) {
    EXPECT_THAT(idsIn(table, u"powerful Powers Gogol"_s), ElementsAre());
}

TEST_F(PhraseTableFind, APhraseMayRunOverALineEnd) {
    EXPECT_THAT(idsIn(table, u"gestión de\nproyectos"_s), ElementsAre(3));
}

TEST_F(PhraseTableFind, APhraseNeverRunsOverASentenceEnd) {
    EXPECT_THAT(idsIn(table, u"Power. BI"_s), ElementsAre(2));
}

TEST_F(PhraseTableFind, APhraseAddedTwiceKeepsItsFirstMeaning) {
    EXPECT_THAT(idsIn(table, u"Go"_s), ElementsAre(4));
}

} // namespace
} // namespace dorvantel
