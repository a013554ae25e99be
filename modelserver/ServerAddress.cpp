// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/ServerAddress.h"

#include <QUrl>

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;

QString withoutOuterBlanks(const QString& text) {
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    const auto begin = std::find_if_not(text.begin(), text.end(), isBlank);
    const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), isBlank).base();
    return QString(begin, end - begin);
}

std::expected<QString, QString> checkedServerAddress(const QString& typed) {
    const QString address = withoutOuterBlanks(typed);
    if (!address.startsWith(u"http://"_s) && !address.startsWith(u"https://"_s)) {
        return std::unexpected(u"URL must start with http:// or https://"_s);
    }
    if (!QUrl(address, QUrl::StrictMode).isValid()) {
        return std::unexpected(u"Invalid URL format"_s);
    }
    return address;
}

} // namespace dorvantel
