// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TokenClipboard.h"

#include <QRegularExpression>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView tokensFormat("application/x-dorvantel-tokens");

const QRegularExpression& ends() {
    static const QRegularExpression expression(u"[,\\n\\r\\t]"_s);
    return expression;
}

/// One token per piece between NULs, so that a token may hold whatever ends one in a text.
QByteArray encoded(const QStringList& tokens) {
    return tokens.join(QChar(u'\0')).toUtf8();
}

QStringList decoded(const QByteArray& bytes) {
    return QString::fromUtf8(bytes).split(QChar(u'\0'), Qt::SkipEmptyParts);
}

} // namespace

qsizetype lastTokenEnd(const QString& text) {
    return text.lastIndexOf(ends());
}

QStringList tokenTexts(const QString& text) {
    QStringList tokens;
    for (const QString& part : text.split(ends())) {
        if (const QString token = part.trimmed(); !token.isEmpty()) {
            tokens.append(token);
        }
    }
    return tokens;
}

std::unique_ptr<QMimeData> mimeDataOfTokens(const QStringList& tokens) {
    auto data = std::make_unique<QMimeData>();
    data->setText(tokens.join(u", "_s));
    data->setData(tokensFormat, encoded(tokens));
    return data;
}

QStringList tokensInMimeData(const QMimeData& data) {
    if (data.hasFormat(tokensFormat)) {
        return decoded(data.data(tokensFormat));
    }
    return lastTokenEnd(data.text()) >= 0 ? tokenTexts(data.text()) : QStringList();
}

} // namespace dorvantel
