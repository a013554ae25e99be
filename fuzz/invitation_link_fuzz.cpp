// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Fuzz.h"
#include "search/InvitationLink.h"

#include <QUrl>

using namespace dorvantel;
using namespace dorvantel::fuzz;

/// A mail in a link: it comes out again as it was, but for the line breaks that a model wrote as two characters.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString mail = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (!mail.isValidUtf16()) {
        return 0; // the link's maker stops the program for it
    }
    const QString start = invitationLinkText(QStringLiteral("a@x"), QString());
    const QString text = invitationLinkText(QStringLiteral("a@x"), mail);
    require(text.startsWith(start), "the mail is the last part");
    const QString body = text.mid(start.size());
    QString broken = mail;
    broken.replace(QStringLiteral("\\n"), QStringLiteral("\n"));
    require(QUrl::fromPercentEncoding(body.toLatin1()) == broken, "the mail can be read back");
    require(invitationLink(QStringLiteral("a@x"), mail).toEncoded() == text.toLatin1(), "the URL has the text's bytes");
    return 0;
}
