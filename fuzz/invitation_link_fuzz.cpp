// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Fuzz.h"
#include "search/InvitationLink.h"

#include <QUrl>

#include <string>

using namespace dorvantel;
using namespace dorvantel::fuzz;

namespace {

/// Percent-encoding byte by byte, and the line breaks that a model wrote as two characters.
std::string plainBody(std::string_view mail) {
    constexpr std::string_view punctuation = "-._~!$&'()*+,:;=[]";
    std::string body;
    for (std::size_t at = 0; at < mail.size(); ++at) {
        const char c = mail[at];
        const bool isPlain = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                             punctuation.find(c) != punctuation.npos;
        if (isPlain) {
            body += c;
        } else if (mail.substr(at).starts_with("\\n")) {
            body += "%0A";
            ++at;
        } else {
            constexpr std::string_view digits = "0123456789ABCDEF";
            const auto byte = static_cast<unsigned char>(c);
            body += '%';
            body += digits[byte >> 4];
            body += digits[byte & 15];
        }
    }
    return body;
}

} // namespace

/// A mail in a link: it is encoded byte by byte, comes out again as it was, and is a URL.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Broken UTF-8 becomes U+FFFD here: a mail that is not valid Unicode stops the program.
    const QString mail = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    static const QString start = invitationLinkText(QStringLiteral("a@x"), QString());
    const QString text = invitationLinkText(QStringLiteral("a@x"), mail);
    require(text.startsWith(start), "the mail is the last part");
    const QByteArray body = text.mid(start.size()).toLatin1();
    require(body.toStdString() == plainBody(mail.toStdString()), "the mail is encoded byte by byte");
    QString broken = mail;
    broken.replace(QStringLiteral("\\n"), QStringLiteral("\n"));
    require(QUrl::fromPercentEncoding(body) == broken, "the mail can be read back");
    require(invitationLink(QStringLiteral("a@x"), mail).toEncoded() == text.toLatin1(), "the URL has the text's bytes");
    return 0;
}
