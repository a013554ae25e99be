// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

namespace dorvantel {

/// Stands for the user's mail program while it lives: keeps the last link that was to be opened.
class MailCatcher : public QObject {
    Q_OBJECT

public:
    MailCatcher() { QDesktopServices::setUrlHandler(QStringLiteral("mailto"), this, "take"); }
    ~MailCatcher() override { QDesktopServices::unsetUrlHandler(QStringLiteral("mailto")); }

    Q_SLOT void take(const QUrl& url) { m_caught = url; }

    const QUrl& caught() const { return m_caught; }

private:
    QUrl m_caught;
};

} // namespace dorvantel
