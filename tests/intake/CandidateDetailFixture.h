// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "intake/CandidateDetailUIView.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Drawn.h"
#include "tests/support/FakePDFOpener.h"
#include "tests/support/FakeRecordsService.h"
#include "tests/support/Print.h"
#include "tests/support/SamplePDF.h"
#include "ui/PDFKitView.h"
#include "ui/SegmentedControl.h"
#include "ui/Spinner.h"
#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTest>

#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

/// A stored candidate without a PDF yet, and the view of it once show() was called.
class CandidateDetailTest : public testing::Test {
protected:
    CandidateDetailTest() {
        record->email = u"ana@example.org"_s;
        record->jsonCVData = {u"Femenino"_s, {u"Orden"_s}, {u"R"_s}, {u"Español"_s}};
        record->invitationMail = u"Estimada Sra. \"Ana\":"_s;
    }

    void show() {
        view = std::make_unique<CandidateDetailUIView>(record, records, opener);
        view->resize(700, 500);
        view->show();
    }
    /// The PDF has been fetched and opened before the view is made.
    void showLoaded(const QStringList& pageTexts) {
        record->file = textPDF(QByteArrayList(pageTexts.size(), "x"));
        record->keepDocument(std::make_shared<PDFDocument>(*record->file, pageTexts));
        show();
    }
    void deliver(const QStringList& pageTexts) {
        records.answerFetchPDF(textPDF({"x"}));
        opener.succeed(0, pageTexts);
    }
    void choose(const QString& tags, int index) {
        auto* control = view->findChild<SegmentedControl*>(tags);
        QTest::mouseClick(control->findChildren<QAbstractButton*>()[index], Qt::LeftButton);
    }
    void chooseMain(mainTagTypes tag) { choose(u"mainTagType"_s, static_cast<int>(tag)); }

    template <typename Widget>
    Widget* visible() const {
        for (auto* widget : view->findChildren<Widget*>()) {
            if (widget->isVisible()) {
                return widget;
            }
        }
        return nullptr;
    }
    QPlainTextEdit* textView() const { return visible<QPlainTextEdit>(); }
    QString text() const { return textView() ? textView()->toPlainText() : QString(); }
    QString notice() const { return visible<QLabel>() ? visible<QLabel>()->text() : QString(); }
    QColor noticeColour() const { return visible<QLabel>()->palette().color(QPalette::WindowText); }
    static bool looksLike(SymbolView& shown, const QString& symbol, int points) {
        SymbolView expected(symbol, QColor(colours::secondaryText), points);
        return drawn(shown, shown.size()) == drawn(expected, {points, points});
    }
    /// How many of the text view's pixels have exactly that colour.
    int pixels(const QColor& colour) const {
        const QImage image = textView()->viewport()->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                count += image.pixelColor(x, y) == colour ? 1 : 0;
            }
        }
        return count;
    }
    static QStringList labels(const SegmentedControl* tags) {
        QStringList labels;
        for (const auto* button : tags->findChildren<QAbstractButton*>()) {
            labels.append(button->text());
        }
        return labels;
    }

    FakeRecordsService records;
    FakePDFOpener opener;
    DBRecordPointer record = std::make_shared<DBRecordRepresentation>();
    std::unique_ptr<CandidateDetailUIView> view;
};

} // namespace dorvantel::test
