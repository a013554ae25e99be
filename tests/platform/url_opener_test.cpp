// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/URLOpener.h"

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;

class Catcher : public QObject {
    Q_OBJECT

public:
    Catcher() { QDesktopServices::setUrlHandler(u"mailto"_s, this, "take"); }
    ~Catcher() override { QDesktopServices::unsetUrlHandler(u"mailto"_s); }

    Q_SLOT void take(const QUrl& url) { taken.append(url); }

    QList<QUrl> taken;
};

TEST(DesktopURLOpener, HandsTheURLToTheDesktop) {
    Catcher catcher;
    DesktopURLOpener opener;
    const QUrl url(u"mailto:a@example.org?body=x%20y"_s, QUrl::StrictMode);
    EXPECT_TRUE(static_cast<URLOpener&>(opener).open(url));
    EXPECT_EQ(catcher.taken, QList<QUrl>{url});
}

TEST(DesktopURLOpener, SaysWhenTheDesktopHasNoProgramForTheURL) {
    DesktopURLOpener opener;
    EXPECT_FALSE(static_cast<URLOpener&>(opener).open(QUrl(u"nobody-knows:this"_s)));
}

} // namespace
} // namespace dorvantel

#include "url_opener_test.moc"
