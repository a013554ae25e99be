// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "search/InvitationLink.h"

#include "platform/Fatal.h"

#include <QRegularExpression>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

QString encodedBody(const QString& mail) {
    if (!mail.isValidUtf16()) {
        fatalError(u"an invitation cannot be percent-encoded"_s);
    }
    QByteArray encoded = QUrl::toPercentEncoding(mail, QByteArrayLiteral("!$&'()*+,:;=[]"));
    encoded.replace("%5Cn", "%0A");
    return QString::fromLatin1(encoded);
}

/// QUrl's own check lets non-ASCII letters pass and encodes them, so that the address would not stay as it is.
bool isURL(const QString& text) {
    static const QRegularExpression foreign(u"[^A-Za-z0-9\\-._~:/?#\\[\\]@!$&'()*+,;=%]|%(?![0-9A-Fa-f]{2})"_s);
    return !foreign.match(text).hasMatch() && QUrl(text, QUrl::StrictMode).isValid();
}

} // namespace

QString invitationCarbonCopy() {
    return QStringLiteral(DORVANTEL_INVITATION_CC);
}

QString invitationLinkText(const QString& email, const QString& invitationMail) {
    return u"mailto:"_s + email + u"?cc="_s + invitationCarbonCopy() +
           u"&subject=Invitaci%C3%B3n%20a%20entrevista%20a%20Ostrel&body="_s + encodedBody(invitationMail);
}

QUrl invitationLink(const QString& email, const QString& invitationMail) {
    const QString text = invitationLinkText(email, invitationMail);
    if (!isURL(text)) {
        // Without the text: it is a candidate's address and mail.
        fatalError(u"an invitation is not a URL"_s);
    }
    return QUrl(text, QUrl::StrictMode);
}

} // namespace dorvantel
