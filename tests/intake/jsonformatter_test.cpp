// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/JSONFormatter.h"

#include "data/JSONCVData.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

TEST(JSONFormatter, CVDataIsIndentedByTwoBlanksWithItsKeysInOrder) {
    const JSONCVData data{u"Masculino"_s, {u"Empatía"_s, u"Orden"_s}, {u"C++"_s}, {}};
    EXPECT_EQ(JSONFormatter().format(data.jsonString()), uR"({
  "gender": "Masculino",
  "softSkills": [
    "Empatía",
    "Orden"
  ],
  "techSkills": [
    "C++"
  ],
  "languages": []
})"_s);
}

TEST(JSONFormatter, IndentationIsAsAsked) {
    EXPECT_EQ(JSONFormatter(4).format(u"{\"a\":[1]}"_s), u"{\n    \"a\": [\n        1\n    ]\n}"_s);
}

TEST(JSONFormatter, QuotedQuoteStaysEscaped) {
    const JSONCVData data{u"Femenino"_s, {}, {u"\"R\""_s}, {}};
    EXPECT_TRUE(JSONFormatter().format(data.jsonString()).contains(u"    \"\\\"R\\\"\"\n"_s));
}

TEST(JSONFormatter, EscapeThatJSONDoesNotKnowLeavesTheTextAsItIs) {
    const JSONCVData data{u"Femenino"_s, {u"d'Hondt"_s}, {}, {}};
    EXPECT_EQ(JSONFormatter().format(data.jsonString()), data.jsonString());
    EXPECT_EQ(JSONFormatter().format(u"[\"\\u{1F600}\"]"_s), u"[\"\\u{1F600}\"]"_s);
}

TEST(JSONFormatter, TextThatIsNotJSONStaysAsItIs) {
    for (const QString& text : {u""_s, u" "_s, u"{"_s, u"nada"_s, u"[1] 2"_s, u"[1]"_s + QChar(0) + u"x"_s}) {
        EXPECT_EQ(JSONFormatter().format(text), text);
    }
}

} // namespace
} // namespace dorvantel
