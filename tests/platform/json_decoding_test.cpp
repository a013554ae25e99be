// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonDecoding.h"

#include "tests/support/Print.h"

#include <cmath>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using namespace std::string_literals;
using testing::ElementsAre;
using ErrorKind = DecodeError::Kind;

struct Point {
    float x = 0;
    QString name;
    std::optional<QString> label;
    QStringList tags;
};

JsonFailure readJson(JsonCursor& cursor, Point& out) {
    return readObject(cursor, required("x", out.x), required("name", out.name), optional("label", out.label),
                      required("tags", out.tags));
}

struct Shape {
    std::vector<Point> points;
};

JsonFailure readJson(JsonCursor& cursor, Shape& out) {
    return readObject(cursor, required("points", out.points, [](JsonCursor& list, std::vector<Point>& points) {
                          return readArray(list, points,
                                           [](JsonCursor& element, Point& point) { return readJson(element, point); });
                      }));
}

Shape shape(const QByteArray& json) {
    auto decoded = decodeJson<Shape>(json);
    EXPECT_TRUE(decoded.has_value()) << json.toStdString();
    return decoded.value_or(Shape{});
}

DecodeError shapeError(const QByteArray& json) {
    auto decoded = decodeJson<Shape>(json);
    EXPECT_FALSE(decoded.has_value());
    return decoded ? DecodeError{} : decoded.error();
}

QByteArray points(const QByteArray& list) {
    return "{\"points\":[" + list + "]}";
}

TEST(JsonDecoding, ReadsMembersInAnyOrderAndIgnoresUnknownOnes) {
    const Shape read = shape(points(R"({"tags":["a"],"z":{"x":[]},"name":"n","x":1.5,"label":"l"})"));
    ASSERT_EQ(read.points.size(), 1U);
    EXPECT_EQ(read.points[0].x, 1.5F);
    EXPECT_EQ(read.points[0].name, u"n"_s);
    EXPECT_EQ(read.points[0].label, u"l"_s);
    EXPECT_EQ(read.points[0].tags, QStringList{u"a"_s});
}

TEST(JsonDecoding, OptionalMemberMayBeMissingOrNull) {
    EXPECT_EQ(shape(points(R"({"x":1,"name":"","tags":[]})")).points[0].label, std::nullopt);
    EXPECT_EQ(shape(points(R"({"x":1,"name":"","tags":[],"label":null})")).points[0].label, std::nullopt);
}

TEST(JsonDecoding, OptionalMemberOfAnotherTypeIsATypeMismatch) {
    const DecodeError error = shapeError(points(R"({"x":1,"name":"","tags":[],"label":1})"));
    EXPECT_EQ(error.kind, ErrorKind::TypeMismatch);
    EXPECT_EQ(error.subject, u"String"_s);
    EXPECT_THAT(error.path, ElementsAre(u"points"_s, u"Index 0"_s, u"label"_s));
}

TEST(JsonDecoding, MissingKeyIsReportedAtTheObject) {
    const DecodeError error = shapeError(points(R"({"x":1,"name":"","tags":[]},{"x":1,"tags":[]})"));
    EXPECT_EQ(
        error,
        (DecodeError{
            ErrorKind::KeyNotFound, u"name"_s, u"The object has no key \"name\"."_s, {u"points"_s, u"Index 1"_s}}));
}

TEST(JsonDecoding, NullWhereAValueIsRequiredIsValueNotFound) {
    EXPECT_EQ(shapeError(points(R"({"x":null,"name":"","tags":[]})")),
              (DecodeError{ErrorKind::ValueNotFound,
                           u"Float"_s,
                           u"Expected Float but found null."_s,
                           {u"points"_s, u"Index 0"_s, u"x"_s}}));
    EXPECT_EQ(shapeError(points(R"({"x":1,"name":"","tags":["a",null]})")),
              (DecodeError{ErrorKind::ValueNotFound,
                           u"String"_s,
                           u"Expected String but found null."_s,
                           {u"points"_s, u"Index 0"_s, u"tags"_s, u"Index 1"_s}}));
    EXPECT_EQ(shapeError(R"({"points":null})").subject, u"Array<Any>"_s);
    EXPECT_EQ(shapeError(points("null")).subject, u"Dictionary<String, Any>"_s);
    EXPECT_EQ(shapeError("null").kind, ErrorKind::ValueNotFound);
}

TEST(JsonDecoding, AnotherTypeIsATypeMismatchThatNamesBoth) {
    EXPECT_EQ(shapeError("[]"), (DecodeError{ErrorKind::TypeMismatch,
                                             u"Dictionary<String, Any>"_s,
                                             u"Expected Dictionary<String, Any> but found an array."_s,
                                             {}}));
    EXPECT_EQ(shapeError(R"({"points":"a"})").context, u"Expected Array<Any> but found a string."_s);
    EXPECT_EQ(shapeError(points("[]")).context, u"Expected Dictionary<String, Any> but found an array."_s);
    EXPECT_EQ(shapeError(points(R"({"x":"1","name":"","tags":[]})")).context, u"Expected Float but found a string."_s);
    EXPECT_EQ(shapeError(points(R"({"x":1,"name":true,"tags":[]})")).context,
              u"Expected String but found a boolean."_s);
    EXPECT_EQ(shapeError(points(R"({"x":1,"name":1,"tags":[]})")).context, u"Expected String but found a number."_s);
    EXPECT_EQ(shapeError(points(R"({"x":1,"name":{},"tags":[]})")).context, u"Expected String but found an object."_s);
}

TEST(JsonDecoding, FirstErrorIsTheFirstInTheOrderOfTheMembersNotOfTheText) {
    EXPECT_THAT(shapeError(points(R"({"tags":1,"name":2,"x":3})")).path,
                ElementsAre(u"points"_s, u"Index 0"_s, u"name"_s));
    EXPECT_EQ(shapeError(points(R"({"tags":1,"name":"n"})")).subject, u"x"_s);
    EXPECT_THAT(shapeError(points(R"({"tags":1,"name":"n","x":1},{})")).path,
                ElementsAre(u"points"_s, u"Index 0"_s, u"tags"_s));
}

TEST(JsonDecoding, OfAMemberThatOccursTwiceTheLastOneHolds) {
    EXPECT_EQ(shape(points(R"({"x":"no","x":2,"name":"a","name":"b","tags":["t"],"tags":[],"label":"l","label":null})"))
                  .points[0]
                  .name,
              u"b"_s);
    EXPECT_TRUE(shape(R"({"points":[1,2],"points":[]})").points.empty());
    EXPECT_EQ(shapeError(R"({"points":[],"points":[1]})").kind, ErrorKind::TypeMismatch);
    EXPECT_EQ(shape(points(R"({"x":1,"name":"","tags":[],"label":"l","label":null})")).points[0].label, std::nullopt);
}

TEST(JsonDecoding, KeysAreComparedUnescaped) {
    EXPECT_EQ(shape(points(R"({"\u0078":1,"na\u006de":"n","tags":[]})")).points[0].name, u"n"_s);
}

TEST(JsonDecoding, TextThatIsNotJsonAnywhereIsThatBeforeAnythingElse) {
    EXPECT_EQ(shapeError(R"({"points":[{}]} x)"),
              (DecodeError{ErrorKind::DataCorrupted, {}, u"The body is not valid JSON: error at byte 16."_s, {}}));
    EXPECT_EQ(shapeError(R"({"other":[1,],"points":[]})").kind, ErrorKind::DataCorrupted);
    EXPECT_EQ(shapeError("").kind, ErrorKind::DataCorrupted);
}

std::expected<float, DecodeError> number(const QByteArray& json) {
    return decodeJson<float>(json);
}

TEST(JsonDecoding, FloatsAreReadFromIntegersFractionsAndExponents) {
    EXPECT_EQ(number("50"), 50.0F);
    EXPECT_EQ(number("87.25"), 87.25F);
    EXPECT_EQ(number("-1.5e2"), -150.0F);
    EXPECT_EQ(number("1e-400"), 0.0F);
    EXPECT_EQ(number("1e-99999"), 0.0F);
    EXPECT_EQ(number("0.1"), 0.1F);
}

TEST(JsonDecoding, NumberTooSmallForADoubleIsZeroHoweverItIsWritten) {
    const std::string zeros(6'000, '0');
    for (const std::string& json : {"1e-400"s, "-1E-99999"s, "1e-99999999999999999999"s, "0e99999"s, "-0.0E+400"s,
                                    "0." + zeros + "1", "0." + zeros + "12e+5000", "1" + zeros + "e-7000"}) {
        EXPECT_EQ(worthOf(json), 0.0) << json;
    }
}

TEST(JsonDecoding, NumberTooLargeForADoubleIsInfiniteHoweverItIsWritten) {
    const std::string zeros(6'000, '0');
    for (const std::string& json : {"1e400"s, "-1E+99999"s, "1e99999999999999999999"s, "1" + zeros,
                                    "12" + zeros + "e-1", "0." + zeros + "1e7000"}) {
        EXPECT_TRUE(std::isinf(worthOf(json))) << json;
    }
    EXPECT_EQ(worthOf("1" + zeros + "e-6000"), 1.0);
    EXPECT_EQ(worthOf("0." + zeros + "25e6002"), 25.0);
}

TEST(JsonDecoding, NumberBeyondAFloatIsDataCorrupted) {
    for (const QByteArray& json : {"4e38"_ba, "-4e38"_ba, "1e400"_ba, "1e99999"_ba}) {
        const auto read = number(json);
        ASSERT_FALSE(read.has_value()) << json.toStdString();
        EXPECT_EQ(read.error().kind, ErrorKind::DataCorrupted);
        EXPECT_EQ(read.error().context, u"The number %1 does not fit in Float."_s.arg(QLatin1String(json)));
    }
}

std::expected<QByteArray, DecodeError> bytes(const QByteArray& json) {
    return decodeJson<QByteArray>(json,
                                  [](JsonCursor& cursor, QByteArray& out) { return readByteArray(cursor, &out); });
}

TEST(JsonDecoding, ByteArraysAreReadHoweverTheirNumbersAreWritten) {
    EXPECT_EQ(bytes("[]"), QByteArray());
    EXPECT_EQ(bytes("[0]"), QByteArray("\0", 1));
    EXPECT_EQ(bytes("[0,127,128,255]"), QByteArray("\0\x7F\x80\xFF", 4));
    EXPECT_EQ(bytes("[ 1 , 2.0 ,\n30e-1, 4 ]"), QByteArray("\1\2\3\4"));
}

TEST(JsonDecoding, LongByteArraysAreReadWhole) {
    QByteArray expected;
    QByteArray json = "[";
    for (int i = 0; i < 50'000; ++i) {
        expected.append(static_cast<char>(i * 7));
        json += QByteArray::number(i * 7 % 256) + ',';
    }
    json.back() = ']';
    EXPECT_TRUE(bytes(json) == expected);
}

TEST(JsonDecoding, NumberThatIsNoByteIsDataCorruptedAndNamesItsPlace) {
    for (const QByteArray& number : {"256"_ba, "-1"_ba, "1.5"_ba, "1e3"_ba, "300"_ba, "99999999999999999999"_ba}) {
        const auto read = bytes("[1,2,3," + number + ",4]");
        ASSERT_FALSE(read.has_value()) << number.toStdString();
        EXPECT_EQ(read.error(), (DecodeError{ErrorKind::DataCorrupted,
                                             {},
                                             u"The number %1 does not fit in UInt8."_s.arg(QLatin1String(number)),
                                             {u"Index 3"_s}}));
    }
}

TEST(JsonDecoding, ElementThatIsNoNumberInAByteArrayIsATypeMismatch) {
    EXPECT_EQ(
        bytes("[1,\"2\"]").error(),
        (DecodeError{ErrorKind::TypeMismatch, u"UInt8"_s, u"Expected UInt8 but found a string."_s, {u"Index 1"_s}}));
    EXPECT_EQ(bytes("[null]").error().kind, ErrorKind::ValueNotFound);
    EXPECT_EQ(bytes("\"AQI=\"").error().subject, u"Array<Any>"_s);
}

std::expected<QByteArray, DecodeError> base64(const QByteArray& json) {
    return decodeJson<QByteArray>(json, readBase64);
}

TEST(JsonDecoding, Base64IsReadWithPadding) {
    EXPECT_EQ(base64("\"\""), QByteArray());
    EXPECT_EQ(base64("\"JVBERg==\""), QByteArray("%PDF"));
    EXPECT_EQ(base64("\"\\u004aVBE\\/g==\""), QByteArray("%PD\xFE"));
}

TEST(JsonDecoding, StringThatIsNotBase64IsDataCorrupted) {
    for (const QByteArray& json : {"\"JVBERg\""_ba, "\"JVBERg=\""_ba, "\"JV ERg==\""_ba, "\"JV\\nERg==\""_ba,
                                   "\"JVBE_g==\""_ba, "\"ñ===\""_ba, "\"=\""_ba}) {
        const auto read = base64(json);
        ASSERT_FALSE(read.has_value()) << json.toStdString();
        EXPECT_EQ(read.error(), corrupted(u"The string is not base64."_s));
    }
    EXPECT_EQ(base64("[1]").error().subject, u"String"_s);
}

} // namespace
} // namespace dorvantel
