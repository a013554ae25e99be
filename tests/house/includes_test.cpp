// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/support/Print.h"

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>

#include <functional>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// From where to where includes lead.
using Graph = QMap<QString, QStringList>;

/// Which rooms a room may include from, itself aside. docs/architecture.md says why.
const Graph allowedEdges = {
    {u"platform"_s, {}},
    {u"data"_s, {u"platform"_s}},
    {u"records"_s, {u"data"_s, u"platform"_s}},
    {u"ui"_s, {u"data"_s, u"platform"_s}},
    {u"modelserver"_s, {u"ui"_s, u"platform"_s}},
    {u"intake"_s, {u"data"_s, u"modelserver"_s, u"ui"_s, u"platform"_s}},
    {u"search"_s, {u"data"_s, u"modelserver"_s, u"ui"_s, u"platform"_s}},
    {u"app"_s, {u"records"_s, u"intake"_s, u"search"_s, u"data"_s, u"modelserver"_s, u"ui"_s, u"platform"_s}},
    {u"service"_s, {u"platform"_s}},
    {u"demo"_s, {u"data"_s, u"platform"_s}},
};

/// The same for the folders of the room service, and for what lies beside them.
const Graph allowedEdgesOfTheService = {
    {u"service/candidates"_s, {}},
    {u"service/ranking"_s, {}},
    {u"service/store"_s, {u"service/candidates"_s, u"service/ranking"_s}},
    {u"service/api"_s, {u"service/candidates"_s}},
    {u"service/http"_s, {u"service/api"_s}},
    {u"service/embedding"_s, {u"service/candidates"_s, u"service/http"_s}},
    {u"service"_s,
     {u"service/candidates"_s, u"service/ranking"_s, u"service/store"_s, u"service/api"_s, u"service/http"_s,
      u"service/embedding"_s}},
};

/// The rooms that the program with the window is made of.
const QStringList roomsOfTheWindow = {u"platform"_s,    u"data"_s,   u"records"_s, u"ui"_s,
                                      u"modelserver"_s, u"intake"_s, u"search"_s,  u"app"_s};

struct Include {
    QString file; ///< relative to the root
    QString target;
    bool quoted;
};

QList<Include> includesBelow(const QString& folder) {
    static const QRegularExpression directive(u"^\\s*#\\s*include\\s*([\"<])([^\">]+)[\">]"_s,
                                              QRegularExpression::MultilineOption);
    const QDir root(QStringLiteral(DORVANTEL_SOURCE_DIR));
    QList<Include> includes;
    QDirIterator files(root.filePath(folder), {u"*.h"_s, u"*.cpp"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
        const QString text = QString::fromUtf8(file.readAll());
        for (auto match = directive.globalMatch(text); match.hasNext();) {
            const QRegularExpressionMatch found = match.next();
            includes.append({root.relativeFilePath(file.fileName()), found.captured(2), found.captured(1) == "\""_L1});
        }
    }
    return includes;
}

QString roomOf(const QString& path) {
    return path.section(u'/', 0, 0);
}

QString folderOf(const QString& path) {
    return path.section(u'/', 0, -2);
}

void expectAllowed(const Graph& allowed, const Include& include, const QString& from, const QString& to) {
    if (include.quoted && from != to && allowed.contains(to)) {
        EXPECT_TRUE(allowed.value(from).contains(to))
            << qPrintable(include.file) << " may not include " << qPrintable(include.target);
    }
}

/// The way along a circle, back to where it begins; empty when there is none.
QStringList circleIn(const Graph& graph) {
    QStringList circle;
    QStringList way;
    QSet<QString> done;
    std::function<void(const QString&)> visit = [&](const QString& node) {
        if (way.contains(node)) {
            circle = way.mid(way.indexOf(node)) + QStringList{node};
        } else if (!done.contains(node)) {
            way.append(node);
            for (const QString& target : graph.value(node)) {
                visit(target);
            }
            way.removeLast();
            done.insert(node);
        }
    };
    for (const QString& node : graph.keys()) {
        visit(node);
    }
    return circle;
}

} // namespace

TEST(Includes, EveryRoomHasSources) {
    for (const QString& room : allowedEdges.keys()) {
        EXPECT_FALSE(includesBelow(room).isEmpty()) << qPrintable(room);
    }
}

TEST(Includes, OnlyAllowedEdgesBetweenRooms) {
    for (const QString& room : allowedEdges.keys()) {
        for (const Include& include : includesBelow(room)) {
            expectAllowed(allowedEdges, include, room, roomOf(include.target));
        }
    }
}

TEST(Includes, OnlyAllowedEdgesBetweenTheFoldersOfTheService) {
    QSet<QString> foldersWithSources;
    for (const Include& include : includesBelow(u"service"_s)) {
        const QString folder = folderOf(include.file);
        EXPECT_TRUE(allowedEdgesOfTheService.contains(folder)) << "no rule for " << qPrintable(folder);
        expectAllowed(allowedEdgesOfTheService, include, folder, folderOf(include.target));
        foldersWithSources.insert(folder);
    }
    for (const QString& folder : allowedEdgesOfTheService.keys()) {
        EXPECT_TRUE(foldersWithSources.contains(folder)) << qPrintable(folder);
    }
}

TEST(Includes, NoCircleIsAllowed) {
    EXPECT_EQ(circleIn(allowedEdges), QStringList());
    EXPECT_EQ(circleIn(allowedEdgesOfTheService), QStringList());
}

TEST(Includes, QuotedIncludesAreWrittenFromTheRootAndExist) {
    const QDir root(QStringLiteral(DORVANTEL_SOURCE_DIR));
    for (const QString& room : allowedEdges.keys()) {
        for (const Include& include : includesBelow(room)) {
            const bool generated = include.target.endsWith(".moc"_L1) || include.target.startsWith("moc_"_L1);
            if (include.quoted && !generated) {
                EXPECT_TRUE(root.exists(include.target))
                    << qPrintable(include.file) << " includes " << qPrintable(include.target);
            }
        }
    }
}

TEST(Includes, ProductionCodeNeverIncludesTests) {
    for (const QString& room : allowedEdges.keys()) {
        for (const Include& include : includesBelow(room)) {
            EXPECT_NE(roomOf(include.target), u"tests"_s) << qPrintable(include.file);
        }
    }
}

TEST(Includes, WidgetsOnlyWhereViewsLive) {
    const QSet<QString> widgetless = {u"platform"_s, u"data"_s, u"records"_s, u"service"_s, u"demo"_s};
    static const QRegularExpression widgetHeader(
        u"^(QtWidgets/.*|Q(Application|Widget|MainWindow|Dialog|MessageBox|FileDialog|Label|PushButton|Layout|"
        "VBoxLayout|HBoxLayout|GridLayout|LineEdit|TextEdit|PlainTextEdit|ListView|Menu|MenuBar|Splitter|"
        "AbstractItemView|StyledItemDelegate|Style|ProgressBar|PdfView))$"_s);
    for (const QString& room : widgetless) {
        for (const Include& include : includesBelow(room)) {
            EXPECT_FALSE(widgetHeader.match(include.target).hasMatch())
                << qPrintable(include.file) << " includes " << qPrintable(include.target);
        }
    }
}

TEST(Includes, OnlyTheHttpSessionUsesTheNetworkAndOnlyAppSettingsTheSettingsFile) {
    static const QRegularExpression network(u"^(QtNetwork/.*|QNetwork.*|Q(Tcp|Udp|Ssl|Local|Abstract)S(ocket|erver)|"
                                            "QDns.*|httplib\\.h|sys/socket\\.h|curl/.*)$"_s);
    for (const QString& room : roomsOfTheWindow) {
        for (const Include& include : includesBelow(room)) {
            if (network.match(include.target).hasMatch()) {
                EXPECT_EQ(include.file, u"platform/HttpSession.cpp"_s) << qPrintable(include.target);
            }
            if (include.target == u"QSettings") {
                EXPECT_EQ(include.file, u"modelserver/AppSettings.cpp"_s);
            }
        }
    }
}

TEST(Includes, TheWindowsRoomsHaveNeitherLocksNorNestedEventLoops) {
    static const QRegularExpression waiting(
        u"^(mutex|shared_mutex|condition_variable|semaphore|latch|barrier|"
        "Q(Basic|Recursive)?Mutex|QMutexLocker|QReadWriteLock|QWaitCondition|QSemaphore|QEventLoop)$"_s);
    for (const QString& room : roomsOfTheWindow) {
        for (const Include& include : includesBelow(room)) {
            EXPECT_FALSE(waiting.match(include.target).hasMatch())
                << qPrintable(include.file) << " includes " << qPrintable(include.target);
        }
    }
}

TEST(Includes, NoFileIncludesItselfThroughOthers) {
    Graph graph;
    for (const QString& room : allowedEdges.keys()) {
        for (const Include& include : includesBelow(room)) {
            if (include.quoted) {
                graph[include.file].append(include.target);
            }
        }
    }
    EXPECT_EQ(circleIn(graph), QStringList());
}
