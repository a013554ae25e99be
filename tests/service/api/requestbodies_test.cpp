// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/api/RequestBodies.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace dorvantel::service;
using nlohmann::json;

namespace {

json body() {
    return {{"name", "Ana"},
            {"profession", "Contable"},
            {"email", "ana@example.com"},
            {"summarizedText", "Diez años"},
            {"invitationMail", "Estimada Ana"},
            {"jsonCVData", R"({"gender":"Femenino","softSkills":["O\'B"],"techSkills":[],"languages":[]})"}};
}

std::expected<Record, BodyError> read(const json& document) {
    std::string text = document.dump();
    return readInsertBody(text);
}

BodyError errorOf(std::string text) {
    const auto record = readInsertBody(text);
    EXPECT_FALSE(record);
    return record ? BodyError{} : record.error();
}

} // namespace

TEST(ReadInsertBody, ReadsEveryField) {
    json document = body();
    document["file"] = "JVBERgD/";
    const auto record = read(document);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->name, "Ana");
    EXPECT_EQ(record->profession, "Contable");
    EXPECT_EQ(record->email, "ana@example.com");
    EXPECT_EQ(record->summarizedText, "Diez años");
    EXPECT_EQ(record->invitationMail, "Estimada Ana");
    EXPECT_EQ(record->jsonCVData, R"({"gender":"Femenino","softSkills":["O\'B"],"techSkills":[],"languages":[]})");
    EXPECT_EQ(record->cvData, (CVData{"Femenino", {"O'B"}, {}, {}}));
    EXPECT_EQ(record->file, std::string("%PDF\0\xff", 6));
}

TEST(ReadInsertBody, FileMayBeAbsentNullOrEmpty) {
    json document = body();
    EXPECT_EQ(read(document)->file, std::nullopt);
    document["file"] = nullptr;
    EXPECT_EQ(read(document)->file, std::nullopt);
    document["file"] = "";
    EXPECT_EQ(read(document)->file, "");
}

TEST(ReadInsertBody, UnknownKeysAreIgnored) {
    json document = body();
    document["more"] = {{"x", json::array({1, nullptr})}};
    EXPECT_TRUE(read(document));
}

TEST(ReadInsertBody, NulStaysInATextAndInTheKey) {
    json document = body();
    document["email"] = std::string("a\0b", 3);
    EXPECT_EQ(read(document)->email, std::string("a\0b", 3));
}

TEST(ReadInsertBody, EachTextIsRequired) {
    for (const char* const key : {"name", "profession", "email", "summarizedText", "invitationMail", "jsonCVData"}) {
        json missing = body();
        missing.erase(key);
        json null = body();
        null[key] = nullptr;
        json number = body();
        number[key] = 1;
        for (const json& document : {missing, null, number}) {
            const auto record = read(document);
            ASSERT_FALSE(record) << key;
            EXPECT_EQ(record.error().kind, BodyError::Kind::NotValid);
            EXPECT_EQ(record.error().message, "\"" + std::string(key) + "\" must be a text");
        }
    }
}

TEST(ReadInsertBody, EmptyEmailIsRefusedBecauseItIsTheKey) {
    json document = body();
    document["email"] = "";
    EXPECT_EQ(read(document).error().message, "\"email\" is the record's key and must not be empty");
}

TEST(ReadInsertBody, UnreadableCVDataIsRefused) {
    json document = body();
    document["jsonCVData"] = "{\"gender\":1}";
    EXPECT_EQ(read(document).error().message, "\"jsonCVData\" cannot be read: \"gender\" is not a text");
}

TEST(ReadInsertBody, WhatIsNoBase64IsRefused) {
    for (const char* const text : {"JVBERg", "JVBERg=", "JV BERg==", "JVBERg==\n", "JVBE-_==", "=", "ñ"}) {
        json document = body();
        document["file"] = text;
        ASSERT_FALSE(read(document)) << text;
        EXPECT_EQ(read(document).error().message, "\"file\" is not base64");
    }
}

TEST(ReadInsertBody, WhatIsNoJSONIsToldFromWhatIsNotValid) {
    EXPECT_EQ(errorOf("").kind, BodyError::Kind::NotJSON);
    EXPECT_EQ(errorOf("{").kind, BodyError::Kind::NotJSON);
    EXPECT_EQ(errorOf("{} x").kind, BodyError::Kind::NotJSON);
    EXPECT_EQ(errorOf("{\"name\":\"\xff\"}").kind, BodyError::Kind::NotJSON);
    EXPECT_EQ(errorOf("{\"name\":\"\\ud800\"}").kind, BodyError::Kind::NotJSON);
    EXPECT_EQ(errorOf("{\"name\":\"a\nb\"}").kind, BodyError::Kind::NotJSON);
    EXPECT_EQ(errorOf("[]").message, "the body must be a JSON object");
    EXPECT_EQ(errorOf("[]").kind, BodyError::Kind::NotValid);
}

TEST(ReadSearchBody, GivesTheStatement) {
    std::string text = R"({"sql":"select \u0000'x'"})";
    EXPECT_EQ(readSearchBody(text), std::string("select \0'x'", 11));
}

TEST(ReadSearchBody, RefusesEverythingElse) {
    for (std::string text : {"{}", R"({"sql":null})", R"({"sql":1})", R"({"sql":["x"]})"}) {
        EXPECT_EQ(readSearchBody(text).error().message, "\"sql\" must be a text");
    }
    std::string list = "[]";
    EXPECT_EQ(readSearchBody(list).error().kind, BodyError::Kind::NotValid);
    std::string broken = "{\"sql\":";
    EXPECT_EQ(readSearchBody(broken).error().kind, BodyError::Kind::NotJSON);
}

TEST(ReadKeyBody, GivesTheKey) {
    std::string text = R"( "a\"b\\\/ñ@x\n" )";
    EXPECT_EQ(readKeyBody(text), "a\"b\\/ñ@x\n");
}

TEST(ReadKeyBody, RefusesEverythingElse) {
    for (std::string text : {"1", "null", "{}", "[\"a\"]"}) {
        EXPECT_EQ(readKeyBody(text).error().kind, BodyError::Kind::NotValid);
    }
    for (std::string text : {"a", "\"a", "\"a\" \"b\""}) {
        EXPECT_EQ(readKeyBody(text).error().kind, BodyError::Kind::NotJSON);
    }
}

TEST(RecordJSON, IsTheTextFormOfTheRecord) {
    json document = body();
    EXPECT_EQ(json::parse(recordJSON(*read(document))), document);
    document["file"] = "JVBERgD/";
    EXPECT_EQ(json::parse(recordJSON(*read(document))), document);
    document["file"] = "";
    EXPECT_EQ(json::parse(recordJSON(*read(document))), document);
}
