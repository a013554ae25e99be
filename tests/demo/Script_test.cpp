// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/Script.h"

#include "tests/support/Print.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using Way = ScriptedStep::Way;

std::optional<ScriptedStep> onlyStep(const QByteArray& reply) {
    std::expected<Script, QString> script = Script::parse("{\"POST /api/chat\":" + reply + "}", u"."_s);
    EXPECT_TRUE(script.has_value()) << (script ? std::string() : script.error().toStdString());
    return script ? script->next("POST", "/api/chat") : std::nullopt;
}

QString mistake(const QByteArray& json) {
    const std::expected<Script, QString> script = Script::parse(json, u"."_s);
    return script ? u"no mistake"_s : script.error();
}

TEST(Script, EveryMemberOfAReplyIsRead) {
    const auto step = onlyStep(R"({"delayMs":20,"status":503,"contentType":"text/plain","body":"x","chunkBytes":4,
                                   "chunkDelayMs":5})");
    ASSERT_TRUE(step);
    EXPECT_EQ(step->delay.count(), 20);
    EXPECT_EQ(step->status, 503);
    EXPECT_EQ(step->contentType, "text/plain");
    EXPECT_EQ(step->body, "x");
    EXPECT_EQ(step->chunkBytes, 4U);
    EXPECT_EQ(step->chunkDelay.count(), 5);
    EXPECT_EQ(step->way, Way::Whole);
}

TEST(Script, AnEmptyReplyLeavesTheAnswerAsItIs) {
    const auto step = onlyStep("{}");
    ASSERT_TRUE(step);
    EXPECT_FALSE(step->body || step->status || step->contentType);
}

TEST(Script, StallsAndCutsAreRead) {
    EXPECT_EQ(onlyStep(R"({"stall":true})")->way, Way::Stall);
    EXPECT_EQ(onlyStep(R"({"cut":"before"})")->way, Way::Cut);
    EXPECT_EQ(onlyStep(R"({"cut":"inBody"})")->way, Way::CutInBody);
}

TEST(Script, ABodyThatIsNoTextIsSentAsItsJson) {
    EXPECT_EQ(onlyStep(R"({"body":{"models":[]}})")->body, R"({"models":[]})");
}

TEST(Script, ABodyFileIsFoundBesideTheScript) {
    const QTemporaryDir folder;
    QFile body(folder.filePath(u"answer.json"_s));
    ASSERT_TRUE(body.open(QIODevice::WriteOnly));
    body.write("{\"a\":\0}", 7);
    body.close();
    QFile file(folder.filePath(u"script.json"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"GET /api/tags":{"bodyFile":"answer.json"}})");
    file.close();
    std::expected<Script, QString> script = Script::load(file.fileName());
    ASSERT_TRUE(script.has_value());
    EXPECT_EQ(script->next("GET", "/api/tags")->body, std::string("{\"a\":\0}", 7));
}

TEST(Script, RepliesAreUsedInOrderAndTheLastOneForGood) {
    std::expected<Script, QString> script = Script::parse(R"({"GET /":[{"status":201},{"status":202}]})", u"."_s);
    ASSERT_TRUE(script.has_value());
    EXPECT_EQ(script->next("GET", "/")->status, 201);
    EXPECT_EQ(script->next("GET", "/")->status, 202);
    EXPECT_EQ(script->next("GET", "/")->status, 202);
}

TEST(Script, OtherRoutesAndMethodsAreNotScripted) {
    std::expected<Script, QString> script = Script::parse(R"({"GET /":{"status":201}})", u"."_s);
    ASSERT_TRUE(script.has_value());
    EXPECT_FALSE(script->next("POST", "/"));
    EXPECT_FALSE(script->next("GET", "/api/tags"));
}

TEST(Script, MistakesAreNamed) {
    EXPECT_TRUE(mistake("{").startsWith(u"not JSON: "_s));
    EXPECT_EQ(mistake("[]"), u"not an object of routes"_s);
    EXPECT_EQ(mistake(R"({"/api/chat":{}})"), u"\"/api/chat\" is no route such as \"POST /api/chat\""_s);
    EXPECT_EQ(mistake(R"({"GET /":5})"), u"GET /: a reply is not an object"_s);
    EXPECT_EQ(mistake(R"({"GET /":[]})"), u"GET /: the list of replies is empty"_s);
    EXPECT_EQ(mistake(R"({"GET /":{"delay":5}})"), u"GET /: \"delay\" is not known"_s);
    EXPECT_EQ(mistake(R"({"GET /":{"delayMs":-5}})"), u"GET /: \"delayMs\" is not a whole number from 0"_s);
    EXPECT_EQ(mistake(R"({"GET /":{"status":99}})"), u"GET /: \"status\" is not between 200 and 599"_s);
    EXPECT_EQ(mistake(R"({"GET /":{"cut":"soon"}})"), u"GET /: \"cut\" is neither \"before\" nor \"inBody\""_s);
    EXPECT_EQ(mistake(R"({"GET /":{"contentType":5}})"), u"GET /: \"contentType\" is not a text"_s);
    EXPECT_TRUE(mistake(R"({"GET /":{"bodyFile":"missing"}})").startsWith(u"GET /: cannot read "_s));
    EXPECT_TRUE(Script::load(u"/nonexistent/script.json"_s).error().startsWith(u"cannot read "_s));
}

} // namespace
} // namespace dorvantel
