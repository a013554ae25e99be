// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "records/WireRecords.h"

#include "tests/records/PlainDecoder.h"
#include "tests/support/Print.h"

#include <QList>

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace test;

const QByteArray list = R"({"extra":[1,{"a":[[]]}],"response":[{"name":"Ana Núñez","profession":"Contable",)"
                        R"("email":"ana@example.com","summarizedText":"Línea\n\"dos\" \u00e9 \ud83d\ude00 😀",)"
                        R"("invitationMail":null,"jsonCVData":{"gender":"Femenino","softSkills":["A","Ñ\t"],)"
                        R"("techSkills":[],"languages":["Español"],"x":-1.5e+3},"file":[0,12,255,7]},)"
                        "\r\n\t {\"profession\" : \"\" , \"name\":\"B\",\"file\":null,\"email\":\"b@example.com\","
                        R"("summarizedText":"","invitationMail":"Estimado","jsonCVData":{"languages":["a","b","c"],)"
                        R"("gender":"","softSkills":["x"],"techSkills":["y","z"]},"unknown":true}]})";
const QByteArray search = R"({"sql":"SELECT 'ñ'","result":[{"name":"Ana","profession":"P","email":"e",)"
                          R"("summarizedText":"s","invitationMail":"m","jsonCVData":{"gender":"g","softSkills":[],)"
                          R"("techSkills":["t"],"languages":[]},"score":87.5,"file":[]},{"name":"Ana",)"
                          R"("profession":"P","email":"e","summarizedText":"s","invitationMail":"m","jsonCVData":)"
                          R"({"gender":"g","softSkills":[],"techSkills":["t"],"languages":[]},"score":50}]})";
const QByteArray file = R"({"file":[1,22,255,0,100,99,10,9,200,201],"name":false})";
const QByteArray record = R"({"name":"n","profession":"p","email":"e","summarizedText":"s","invitationMail":"m",)"
                          R"("jsonCVData":"{\"gender\":\"Femenino\"}","file":"JVBE\/g=="})";

/// Bodies as they may come when something between the store and us goes wrong: a few places changed at random.
class Mutator {
public:
    explicit Mutator(unsigned seed)
        : m_random(seed) {}

    QByteArray mutate(QByteArray body) {
        for (std::size_t changes = 1 + below(3); changes > 0; --changes) {
            change(body);
        }
        return body;
    }

private:
    std::size_t below(std::size_t limit) { return m_random() % limit; }

    void change(QByteArray& body) {
        static const QList<QByteArray> fragments = {
            "null",
            "true",
            "false",
            "0",
            "-0",
            "00",
            "01",
            "-",
            "1.",
            ".5",
            "1e5",
            "256",
            "7.0",
            "2e1",
            "1.5",
            "1e",
            "1e999",
            "-1",
            "[",
            "]",
            "{",
            "}",
            ",",
            ":",
            "\"",
            "\\",
            "\\u",
            "\\ud800",
            "\\udc00",
            "\\u0041",
            "\\x",
            "\\/",
            "\"a\":",
            "[]",
            "{}",
            " ",
            "\n",
            "\t",
            "\xC3\xB1",
            "\xC0\x80",
            "\xED\xA0\x80",
            "\xF4\x90\x80\x80",
            "\xFF",
            "\x01",
            "\xEF\xBB\xBF",
            "/**/",
            "NaN",
            "123456789012345678901234567890",
            "\"name\":\"last\",",
            "\"name\":null,",
            "\"response\":[],",
            "\"result\":null,",
            "\"file\":[1],",
            "\"na\\u006de\":\"escaped\",",
            "nul",
            "tru",
            "=",
            "1e38,",
            "4e38",
            "\xF0\x9F\x98\x80",
        };
        const auto at = static_cast<qsizetype>(below(static_cast<std::size_t>(body.size()) + 1));
        const qsizetype rest = body.size() - at;
        const qsizetype length = std::min<qsizetype>(rest, static_cast<qsizetype>(1 + below(8)));
        switch (below(6)) {
        case 0:
            body.remove(at, length);
            break;
        case 1:
            body.insert(at, fragments[static_cast<qsizetype>(below(static_cast<std::size_t>(fragments.size())))]);
            break;
        case 2:
            if (rest > 0) {
                body[at] = static_cast<char>(below(256));
            }
            break;
        case 3:
            replaceValue(body, fragments[static_cast<qsizetype>(below(static_cast<std::size_t>(fragments.size())))]);
            break;
        case 4:
            body.insert(at, body.mid(static_cast<qsizetype>(below(static_cast<std::size_t>(body.size()) + 1)), 40));
            break;
        default:
            if (below(10) == 0) {
                body.truncate(at);
            }
            break;
        }
    }

    /// Puts `value` in the place of a member's value, so that the body often stays JSON.
    void replaceValue(QByteArray& body, const QByteArray& value) {
        const qsizetype colon =
            body.indexOf(':', static_cast<qsizetype>(below(static_cast<std::size_t>(body.size()) + 1)));
        if (colon < 0) {
            return;
        }
        qsizetype end = colon + 1;
        for (int depth = 0; end < body.size(); ++end) {
            const char c = body[end];
            depth += (c == '[' || c == '{' ? 1 : 0) - (c == ']' || c == '}' ? 1 : 0);
            if (depth < 0 || (depth == 0 && c == ',')) {
                break;
            }
        }
        body.replace(colon + 1, end - colon - 1, value);
    }

    std::minstd_rand m_random;
};

struct Tally {
    int accepted = 0;
    int notJson = 0;
    int otherErrors = 0;
};

template <typename Plain, typename Real>
void compare(const QByteArray& body, Plain plainDecode, Real realDecode, Tally& tally) {
    const auto plain = plainDecode(body);
    if (!plain) {
        return;
    }
    // Behind the bytes there is memory that is not ours: an exact copy lets a sanitizer see a read beyond the end.
    const std::vector<char> exact(body.begin(), body.end());
    const auto real = realDecode(QByteArrayView(exact.data(), body.size()));
    ASSERT_EQ(plain->has_value(), real.has_value()) << body.toStdString() << "\n"
                                                    << (real ? "" : debugText(real.error()).toStdString());
    if (real) {
        ++tally.accepted;
        ASSERT_TRUE(isSame(**plain, *real)) << body.toStdString();
        return;
    }
    ++(plain->error().path.isEmpty() && plain->error().kind == DecodeError::Kind::DataCorrupted ? tally.notJson
                                                                                                : tally.otherErrors);
    ASSERT_EQ(plain->error().kind, real.error().kind) << body.toStdString() << debugText(real.error()).toStdString();
    ASSERT_EQ(plain->error().subject, real.error().subject) << body.toStdString();
    ASSERT_EQ(plain->error().path, real.error().path) << body.toStdString();
}

template <typename Plain, typename Real>
void compareMutations(const QByteArray& seed, Plain plainDecode, Real realDecode) {
    constexpr int rounds = 8'000;
    Tally tally;
    Mutator mutator(7);
    compare(seed, plainDecode, realDecode, tally);
    ASSERT_EQ(tally.accepted, 1) << "the seed itself must be right";
    for (int i = 0; i < rounds && !testing::Test::HasFatalFailure(); ++i) {
        compare(mutator.mutate(seed), plainDecode, realDecode, tally);
    }
    // Mutations that only ever gave one of the three would show nothing.
    EXPECT_GT(tally.accepted, rounds / 50);
    EXPECT_GT(tally.notJson, rounds / 20);
    EXPECT_GT(tally.otherErrors, rounds / 50);
}

TEST(DecodersAgree, OnMutatedLists) {
    compareMutations(list, plainQueryResponse, decodeQueryResponse);
}

TEST(DecodersAgree, OnMutatedSearchAnswers) {
    compareMutations(search, plainSearchResponse, decodeSearchResponse);
}

TEST(DecodersAgree, OnMutatedPDFAnswers) {
    compareMutations(file, plainFileResponse, decodeFileResponse);
}

TEST(DecodersAgree, OnMutatedInsertAnswers) {
    compareMutations(record, plainDBRecord, decodeDBRecord);
}

TEST(DecodersAgree, OnEveryTruncation) {
    Tally tally;
    for (qsizetype length = 0; length < list.size(); ++length) {
        compare(list.left(length), plainQueryResponse, decodeQueryResponse, tally);
        compare(search.left(length), plainSearchResponse, decodeSearchResponse, tally);
        compare(file.left(length), plainFileResponse, decodeFileResponse, tally);
        compare(record.left(length), plainDBRecord, decodeDBRecord, tally);
    }
    EXPECT_GT(tally.notJson, list.size());
}

} // namespace
} // namespace dorvantel
