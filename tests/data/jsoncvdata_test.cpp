// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/JSONCVData.h"

#include "tests/support/Print.h"

#include <QHash>

#include <unicode/uchar.h>

#include <gmock/gmock.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

JSONCVData withGender(const QString& gender) {
    return {.gender = gender, .softSkills = {}, .techSkills = {}, .languages = {}};
}

/// The rendering of a list with `skill` as its one element, without brackets and quotes.
QString rendered(const QString& skill) {
    const QString text =
        JSONCVData{.gender = {}, .softSkills = {skill}, .techSkills = {}, .languages = {}}.jsonString();
    const QString before = u"{\"gender\":\"Femenino\",\"softSkills\":[\""_s;
    const QString after = u"\"],\"techSkills\":[],\"languages\":[]}"_s;
    EXPECT_TRUE(text.startsWith(before)) << text.toStdString();
    EXPECT_TRUE(text.endsWith(after)) << text.toStdString();
    return text.sliced(before.size(), text.size() - before.size() - after.size());
}

// ----- jsonString

TEST(JsonString, TypicalRecordHasNoBlanksButOneAfterEachCommaOfAList) {
    const JSONCVData data{
        .gender = u"Femenino"_s, .softSkills = {u"A"_s, u"B"_s}, .techSkills = {u"X"_s}, .languages = {u"Español"_s}};
    EXPECT_EQ(data.jsonString(),
              uR"({"gender":"Femenino","softSkills":["A", "B"],"techSkills":["X"],"languages":["Español"]})"_s);
}

TEST(JsonString, EmptyRecordHasEmptyLists) {
    EXPECT_EQ(withGender(u"Masculino"_s).jsonString(),
              uR"({"gender":"Masculino","softSkills":[],"techSkills":[],"languages":[]})"_s);
}

TEST(JsonString, OnlyMasculinoIsMasculine) {
    for (const QString& gender :
         {u"masculino"_s, u"MASCULINO"_s, u"Hombre"_s, u""_s, u" Masculino"_s, u"Masculino "_s, u"Femenino"_s}) {
        EXPECT_EQ(withGender(gender).jsonString(),
                  uR"({"gender":"Femenino","softSkills":[],"techSkills":[],"languages":[]})"_s)
            << gender.toStdString();
    }
}

TEST(JsonString, DoubleQuoteGetsABackslash) {
    EXPECT_EQ(rendered(u"el \"mejor\""_s), uR"(el \"mejor\")"_s);
}

TEST(JsonString, ApostropheGetsABackslash) {
    EXPECT_EQ(rendered(u"O'Reilly"_s), uR"(O\'Reilly)"_s);
}

TEST(JsonString, BackslashIsDoubled) {
    EXPECT_EQ(rendered(u"C:\\n"_s), uR"(C:\\n)"_s);
}

TEST(JsonString, LineBreaksTabAndNulHaveShortEscapes) {
    EXPECT_EQ(rendered(u"a\nb\rc\td\0e"_s), uR"(a\nb\rc\td\0e)"_s);
}

TEST(JsonString, OtherControlsAreHexadecimalInUpperCaseWithoutPadding) {
    EXPECT_EQ(rendered(u"\u0007"_s), uR"(\u{7})"_s);
    EXPECT_EQ(rendered(u"\u001B"_s), uR"(\u{1B})"_s);
    EXPECT_EQ(rendered(u"\u007F"_s), uR"(\u{7F})"_s);
    EXPECT_EQ(rendered(u"\u0085"_s), uR"(\u{85})"_s);
}

TEST(JsonString, LettersSymbolsAndEmojiOfAnyPlaneAreWrittenAsTheyAre) {
    const QString text = u"Diseño, Çà, Ελληνικά, 中文, €, C++/C#, 😀, 𝛑"_s;
    EXPECT_EQ(rendered(text), text);
}

TEST(JsonString, NoBreakSpaceIsWrittenAsItIs) {
    EXPECT_EQ(rendered(u"C1\u00A0alto"_s), u"C1\u00A0alto"_s);
}

TEST(JsonString, CombiningMarksAreWrittenAsTheyAre) {
    EXPECT_EQ(rendered(u"Espan\u0303ol"_s), u"Espan\u0303ol"_s);
    EXPECT_EQ(rendered(u"\u0301"_s), u"\u0301"_s);
}

TEST(JsonString, JoinerWithinAnEmojiIsEscaped) {
    EXPECT_EQ(rendered(u"👩\u200D💻"_s), u"👩\\u{200D}💻"_s);
}

TEST(JsonString, ByteOrderMarkSoftHyphenAndLineSeparatorsAreEscaped) {
    EXPECT_EQ(rendered(u"\uFEFF\u00AD\u2028\u2029"_s), uR"(\u{FEFF}\u{AD}\u{2028}\u{2029})"_s);
}

TEST(JsonString, PrivateUseAndUnassignedAreEscapedBeyondTheFirstPlaneToo) {
    EXPECT_EQ(rendered(u"\uE000"_s), uR"(\u{E000})"_s);
    EXPECT_EQ(rendered(u"\U000F0000"_s), uR"(\u{F0000})"_s);
    EXPECT_EQ(rendered(u"\U0010FFFF"_s), uR"(\u{10FFFF})"_s);
}

TEST(JsonString, HalfASurrogatePairBecomesTheReplacementCharacter) {
    const QString half = u"a"_s + QChar(0xD83D) + u"b"_s;
    EXPECT_EQ(rendered(half), u"a\uFFFDb"_s);
}

QString renderedByTheRule(char32_t codePoint) {
    static const QHash<char32_t, QString> named{
        {U'\\', u"\\\\"_s}, {U'"', u"\\\""_s}, {U'\'', u"\\'"_s}, {U'\n', u"\\n"_s},
        {U'\r', u"\\r"_s},  {U'\t', u"\\t"_s}, {U'\0', u"\\0"_s},
    };
    if (const auto escape = named.constFind(codePoint); escape != named.cend()) {
        return *escape;
    }
    if (!u_isprint(static_cast<UChar32>(codePoint)) || codePoint == 0x2028 || codePoint == 0x2029) {
        return u"\\u{%1}"_s.arg(QString::number(static_cast<uint>(codePoint), 16).toUpper());
    }
    return QStringView(QChar::fromUcs4(codePoint)).toString();
}

/// The planes 4 to 13 are unassigned as a whole, 15 and 16 private: their first and last rows speak for them.
bool isRowOfAUniformPlane(char32_t row) {
    const char32_t plane = row >> 16;
    const char32_t rowInPlane = row & 0xFF00;
    return ((plane >= 4 && plane <= 13) || plane >= 15) && rowInPlane != 0 && rowInPlane != 0xFF00;
}

TEST(JsonString, EveryCodePointFollowsTheRule) {
    for (char32_t row = 0; row <= 0x10FFFF; row += 0x100) {
        const bool isSurrogate = row >= 0xD800 && row <= 0xDFFF; // halves of pairs are no characters
        if (isSurrogate || isRowOfAUniformPlane(row)) {
            continue;
        }
        QStringList skills;
        QStringList expected;
        for (char32_t codePoint = row; codePoint < row + 0x100; ++codePoint) {
            skills.append(QStringView(QChar::fromUcs4(codePoint)).toString());
            expected.append(u'"' + renderedByTheRule(codePoint) + u'"');
        }
        const JSONCVData data{.gender = {}, .softSkills = {}, .techSkills = skills, .languages = {}};
        ASSERT_EQ(data.jsonString(), u"{\"gender\":\"Femenino\",\"softSkills\":[],\"techSkills\":["_s +
                                         expected.join(u", "_s) + u"],\"languages\":[]}"_s)
            << "U+" << std::hex << static_cast<uint>(row);
    }
}

// ----- description

TEST(CVDataDescription, NamesSoftSkillsTwiceAndLeavesTechnicalSkillsOut) {
    const JSONCVData data{
        .gender = u"Masculino"_s, .softSkills = {u"A"_s, u"B"_s}, .techSkills = {u"X"_s}, .languages = {u"Español"_s}};
    EXPECT_EQ(data.description(), u"Masculino A B A B Español"_s);
}

TEST(CVDataDescription, AnyOtherGenderReadsFemenino) {
    EXPECT_EQ(withGender(u"hombre"_s).description(), u"Femenino"_s);
    EXPECT_EQ(withGender(u"Masculino"_s).description(), u"Masculino"_s);
}

TEST(CVDataDescription, SeveralLanguagesFollowInOrder) {
    const JSONCVData data{.gender = {}, .softSkills = {}, .techSkills = {}, .languages = {u"Inglés"_s, u"Alemán"_s}};
    EXPECT_EQ(data.description(), u"Femenino Inglés Alemán"_s);
}

} // namespace
} // namespace dorvantel
