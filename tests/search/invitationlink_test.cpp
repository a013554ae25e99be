// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/InvitationLink.h"

#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <random>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

/// What stands behind "&body=".
QString body(const QString& mail) {
    return invitationLinkText(u"a@example.org"_s, mail).section(u"&body="_s, 1);
}

TEST(InvitationLink, WholeText) {
    EXPECT_EQ(invitationLinkText(u"lucia.perez@example.org"_s, u"Estimada Lucía:\nGracias por su interés."_s),
              u"mailto:lucia.perez@example.org?cc="_s + invitationCarbonCopy() +
                  u"&subject=Invitaci%C3%B3n%20a%20entrevista%20a%20Ostrel"
                  "&body=Estimada%20Luc%C3%ADa:%0AGracias%20por%20su%20inter%C3%A9s."_s);
}

TEST(InvitationLink, SubjectReadsAsItShould) {
    const QUrl url = invitationLink(u"a@example.org"_s, u"x"_s);
    EXPECT_EQ(url.scheme(), u"mailto"_s);
    EXPECT_TRUE(url.query(QUrl::FullyDecoded).contains(u"&subject=Invitación a entrevista a Ostrel&body=x"_s));
}

TEST(InvitationLink, CarbonCopyIsAnAddress) {
    EXPECT_TRUE(invitationCarbonCopy().contains(u'@'));
}

TEST(InvitationLink, EveryASCIICharacterIsLeftOrEncoded) {
    const QString left = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789!$&'()*+,-.:;=[]_~"_s;
    for (char16_t character = 0; character < 0x80; ++character) {
        const QString expected = left.contains(QChar(character))
                                     ? QString(QChar(character))
                                     : u"%"_s + QString::number(character, 16).toUpper().rightJustified(2, u'0');
        EXPECT_EQ(body(QString(QChar(character))), expected);
    }
}

TEST(InvitationLink, AccentsAreTheEscapesOfTheirBytes) {
    EXPECT_EQ(body(u"óñü€"_s), u"%C3%B3%C3%B1%C3%BC%E2%82%AC"_s);
    EXPECT_EQ(body(u"\U0001F600"_s), u"%F0%9F%98%80"_s);
}

TEST(InvitationLink, DecomposedAccentStaysDecomposed) {
    EXPECT_EQ(body(u"o\u0301"_s), u"o%CC%81"_s);
}

TEST(InvitationLink, LineBreakAndLiteralBackslashNAreBothALineBreak) {
    EXPECT_EQ(body(u"a\nb"_s), u"a%0Ab"_s);
    EXPECT_EQ(body(u"a\\nb"_s), u"a%0Ab"_s);
    EXPECT_EQ(body(u"a\r\nb"_s), u"a%0D%0Ab"_s);
}

TEST(InvitationLink, BackslashBeforeAnotherLetterIsEncoded) {
    EXPECT_EQ(body(u"a\\tb\\N"_s), u"a%5Ctb%5CN"_s);
    EXPECT_EQ(body(u"\\\\n"_s), u"%5C%0A"_s);
}

TEST(InvitationLink, PercentSignIsEncodedAndNothingIsDecoded) {
    EXPECT_EQ(body(u"100 %"_s), u"100%20%25"_s);
    EXPECT_EQ(body(u"%5Cn %0A %zz"_s), u"%255Cn%20%250A%20%25zz"_s);
}

TEST(InvitationLink, AmpersandAndEqualsSignEndTheBodyEarly) {
    EXPECT_EQ(body(u"A & B = C + D"_s), u"A%20&%20B%20=%20C%20+%20D"_s);
}

TEST(InvitationLink, AddressStandsAsItIs) {
    EXPECT_TRUE(
        invitationLinkText(u"María+x%41@ejemplo.es"_s, u"m"_s).startsWith(u"mailto:María+x%41@ejemplo.es?cc="_s));
}

TEST(InvitationLink, EmptyMailAndEmptyAddressStillMakeALink) {
    EXPECT_EQ(invitationLink(QString(), QString()).toEncoded(),
              "mailto:?cc=" + invitationCarbonCopy().toLatin1() +
                  "&subject=Invitaci%C3%B3n%20a%20entrevista%20a%20Ostrel&body=");
}

TEST(InvitationLink, URLHasTheVeryBytesOfTheText) {
    std::mt19937 random(54);
    const QString alphabet = u"aZ09 !\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~\n\r\táéíóúñ¿¡€\U0001F600%5Cn%41\\n"_s;
    for (int round = 0; round < 2000; ++round) {
        QStringList characters;
        for (auto length = random() % 60; length > 0; --length) {
            const auto at = static_cast<qsizetype>(random() % static_cast<unsigned>(alphabet.size()));
            characters.append(alphabet[at].isSurrogate() ? u"\U0001F600"_s : QString(alphabet[at]));
        }
        const QString mail = characters.join(QString());
        ASSERT_EQ(invitationLink(u"ana.o'neil+cv@example.org"_s, mail).toEncoded(),
                  invitationLinkText(u"ana.o'neil+cv@example.org"_s, mail).toLatin1());
    }
}

TEST(InvitationLink, HundredKilobytesOfMailMakeALink) {
    const QString mail = u"Estimada [Nombre]: ¿quedamos el día 3 a las 10:00?\n"_s.repeated(2000);
    ASSERT_GT(mail.toUtf8().size(), 100 * 1024);
    const QUrl url = invitationLink(u"a@example.org"_s, mail);
    EXPECT_EQ(url.toEncoded(), invitationLinkText(u"a@example.org"_s, mail).toLatin1());
    EXPECT_TRUE(url.query(QUrl::FullyDecoded).endsWith(mail));
}

TEST(InvitationLinkDeathTest, AddressWithABlankStopsTheProgram) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(invitationLink(u"ana perez@example.org"_s, u"x"_s), "Fatal error: an invitation is not a URL\n");
}

TEST(InvitationLinkDeathTest, AddressThatAURLCannotHoldStopsTheProgram) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    for (const QString& email : {u"maría@example.org"_s, u"<ana@example.org>"_s, u"ana%@example.org"_s, u"a\"b"_s,
                                 u"ana\\perez"_s, u"ana\n@example.org"_s, u"{a}"_s, u"a^b"_s, u"a|b"_s, u"a`b"_s}) {
        EXPECT_DEATH(invitationLink(email, u"x"_s), "Fatal error: an invitation is not a URL\n");
    }
}

TEST(InvitationLinkDeathTest, AddressThatReadsAsAHostWithABrokenPortStopsTheProgram) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(invitationLink(u"//ana:x"_s, u"x"_s), "Fatal error: an invitation is not a URL\n");
}

TEST(InvitationLinkDeathTest, MailThatIsNotUnicodeStopsTheProgram) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(invitationLinkText(u"a@example.org"_s, QString(QChar(0xd800))),
                 "Fatal error: an invitation cannot be percent-encoded");
}

} // namespace
} // namespace dorvantel
