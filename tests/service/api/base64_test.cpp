// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/api/Base64.h"

#include <QByteArray>

#include <random>

#include <gtest/gtest.h>

using namespace dorvantel::service;

namespace {

std::string encoded(std::string_view bytes) {
    std::string out = "before";
    appendBase64(out, bytes);
    return out.substr(6);
}

} // namespace

TEST(Base64, AgreesWithQtForEveryLength) {
    std::minstd_rand random(1);
    std::string bytes;
    for (int length = 0; length < 300; ++length) {
        const QByteArray expected = QByteArray::fromStdString(bytes).toBase64();
        ASSERT_EQ(encoded(bytes), expected.toStdString());
        ASSERT_EQ(decodedBase64(expected.toStdString()), bytes);
        bytes += static_cast<char>(random());
    }
}

TEST(Base64, EveryByteInEveryPlaceIsALetterOrRefused) {
    for (const std::string& text : {std::string("QUJDREVG"), std::string("QUJDRA=="), std::string("QUJDREU=")}) {
        for (std::size_t place = 0; place < text.size(); ++place) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string changed = text;
                changed[place] = static_cast<char>(byte);
                const auto expected = QByteArray::fromBase64Encoding(QByteArray::fromStdString(changed),
                                                                     QByteArray::Base64Encoding |
                                                                         QByteArray::AbortOnBase64DecodingErrors);
                const auto decoded = decodedBase64(changed);
                ASSERT_EQ(decoded.has_value(), bool(expected)) << changed << " " << place << " " << byte;
                if (decoded) {
                    ASSERT_EQ(*decoded, expected.decoded.toStdString()) << changed;
                }
            }
        }
    }
}

TEST(Base64, OtherLengthsLineBreaksAndLonePaddingAreRefused) {
    for (const char* const text :
         {"Q", "QQ", "QQQ", "QQ=", "QUJD\n", "QUJD\nQUJD", "====", "Q===", "=", "QQ==QQ==", "-_-_"}) {
        EXPECT_EQ(decodedBase64(text), std::nullopt) << text;
    }
    EXPECT_EQ(decodedBase64(""), "");
}
