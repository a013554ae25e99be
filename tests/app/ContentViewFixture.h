// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "app/ContentView.h"
#include "tests/support/FakeModelService.h"
#include "tests/support/FakePDFOpener.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/FakeURLOpener.h"
#include "tests/support/Wait.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QFile>
#include <QListView>
#include <QMessageBox>
#include <QMimeData>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

inline DBRecordPointer candidate(const QString& name, const QString& email) {
    auto record = std::make_shared<DBRecordRepresentation>();
    record->name = name;
    record->profession = u"Contable"_s;
    record->email = email;
    return record;
}

class ContentViewTest : public testing::Test {
protected:
    void SetUp() override {
        window.resize(900, 600);
        window.show();
        list = window.findChild<QListView*>(u"candidateList"_s);
    }

    void load(std::vector<DBRecordPointer> candidates) {
        const std::size_t count = candidates.size();
        records.answerFetchAll(std::move(candidates));
        ASSERT_TRUE(waitUntil([&] { return window.model().dbRecords().size() == count; }));
    }
    void loadThree() {
        load({candidate(u"Ana"_s, u"ana@example.com"_s), candidate(u"Blas"_s, u"blas@example.com"_s),
              candidate(u"Carla"_s, u"carla@example.com"_s)});
    }
    void click(int row) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualRect(list->model()->index(row, 0)).center());
    }
    /// The row of the n-th candidate: the search entry and the header come first.
    static int row(int candidate) { return 2 + candidate; }

    template <typename Dialog>
    Dialog* shown(const QString& name) {
        auto* dialog = window.findChild<Dialog*>(name);
        return dialog && dialog->isVisible() ? dialog : nullptr;
    }
    QMessageBox* deleteAlert() { return shown<QMessageBox>(u"deleteAlert"_s); }
    QMessageBox* errorAlert() { return shown<QMessageBox>(u"errorAlert"_s); }
    QWidget* sheet() { return shown<QDialog>(u"validationSheet"_s); }
    QWidget* detail() { return window.findChild<QStackedWidget*>(u"detail"_s)->currentWidget(); }

    QString file(const QString& name, const QByteArray& bytes) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }
    bool dragEnter(const QStringList& paths) {
        setUrls(paths);
        QDragEnterEvent event({10, 10}, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
        return event.isAccepted();
    }
    /// As the platform does it: what is dropped has been dragged over the window before.
    bool drop(const QStringList& paths) {
        dragEnter(paths);
        QDropEvent event({10, 10}, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QApplication::sendEvent(&window, &event);
        return event.isAccepted();
    }
    /// Every file that was asked for has been read, and who asked has been told.
    static void waitForLoads() {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
    }
    void setUrls(const QStringList& paths) {
        QList<QUrl> urls;
        for (const QString& path : paths) {
            urls.append(QUrl::fromLocalFile(path));
        }
        mime.setUrls(urls);
    }

    FakeRecordsService records;
    FakeModelService models;
    FakePDFOpener pdfs;
    FakeURLOpener urlOpener;
    QTemporaryDir folder;
    QMimeData mime;
    ContentView window{{records, models, pdfs, urlOpener}};
    QListView* list = nullptr;
};

} // namespace dorvantel::test
