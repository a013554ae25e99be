// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/candidates/JsonText.h"

#include "platform/JsonEscaping.h"

#include <limits>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace dorvantel::service;

namespace {

std::string jsonString(std::string_view text) {
    std::string out;
    dorvantel::appendJsonString(out, text);
    return out;
}

std::string number(float value) {
    std::string out;
    appendNumber(out, value);
    return out;
}

} // namespace

TEST(AppendJsonString, FindsAnEscapeWhereverItStands) {
    for (std::size_t length = 1; length < 70; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            std::string text(length, 'a');
            text[place] = '\n';
            std::string expected = '"' + text + '"';
            expected.replace(place + 1, 1, "\\n");
            std::string out;
            dorvantel::appendJsonString(out, text);
            ASSERT_EQ(out, expected);
        }
    }
}

TEST(AppendJsonString, EscapesInARowAreAllFound) {
    std::string out;
    dorvantel::appendJsonString(out, std::string(40, '"') + "á" + std::string(20, '\\') + "b");
    std::string expected = "\"";
    for (int i = 0; i < 40; ++i) {
        expected += "\\\"";
    }
    expected += "á" + std::string(40, '\\') + "b\"";
    EXPECT_EQ(out, expected);
}

TEST(AppendJsonString, EscapesWhatJSONDemandsAndNothingElse) {
    EXPECT_EQ(jsonString(""), R"("")");
    EXPECT_EQ(jsonString("Español 😀 O'Reilly /"), "\"Español 😀 O'Reilly /\"");
    EXPECT_EQ(jsonString("\"\\\n\r\t\b\x1f\x7f"), "\"\\\"\\\\\\n\\r\\t\\u0008\\u001f\x7f\"");
    EXPECT_EQ(jsonString(std::string_view("a\0b", 3)), R"("a\u0000b")");
}

TEST(AppendJsonString, EveryByteComesBackThroughAParser) {
    std::string all;
    for (char character = 0; character < 0x7f; ++character) {
        all += character;
    }
    EXPECT_EQ(nlohmann::json::parse(jsonString(all)).get<std::string>(), all);
}

TEST(AppendByteNumbers, OneNumberAByteWithCommasBetween) {
    std::string out;
    appendByteNumbers(out, std::string_view("\0\x09\xff%", 4));
    EXPECT_EQ(out, "0,9,255,37");
    out.clear();
    appendByteNumbers(out, "");
    EXPECT_EQ(out, "");
}

TEST(AppendNumber, ShortestTextThatReadsBack) {
    EXPECT_EQ(number(100), "100");
    EXPECT_EQ(number(0), "0");
    EXPECT_EQ(number(87.65432F), "87.65432");
    EXPECT_EQ(nlohmann::json::parse(number(std::numeric_limits<float>::min())).get<float>(),
              std::numeric_limits<float>::min());
}

TEST(CvDataJSON, IsTheObjectForm) {
    EXPECT_EQ(cvDataJSON({"Femenino", {"A", "O'B"}, {}, {"\"x\""}}),
              R"({"gender":"Femenino","softSkills":["A","O'B"],"techSkills":[],"languages":["\"x\""]})");
}

TEST(ErrorJSON, HasOneKey) {
    EXPECT_EQ(errorJSON("no \"key\""), R"({"error":"no \"key\""})");
}
