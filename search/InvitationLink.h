// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace dorvantel {

/// Who gets a copy of every invitation: an e-mail address, fixed when the program is built.
QString invitationCarbonCopy();

/// The "mailto:" link that opens an invitation to `email` in the user's mail program, as text. The address goes in as
/// it is. The mail is percent-encoded but for the letters, digits and punctuation that a host name may hold, so an
/// ampersand in it ends the body early. A backslash and an n that a language model left in the mail become a line
/// break. Stops the program for a mail that is not valid Unicode.
QString invitationLinkText(const QString& email, const QString& invitationMail);

/// The same as a URL. Stops the program when the text is none, for example for an address with a blank in it: nothing
/// half-built is ever opened.
QUrl invitationLink(const QString& email, const QString& invitationMail);

} // namespace dorvantel
