// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/tour/Tour.h"

#include "app/tour/TourInput.h"
#include "intake/CandidateDetailUIView.h"
#include "modelserver/AppSettings.h"
#include "ui/PDFView.h"
#include "ui/SegmentedControl.h"

#include <QApplication>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr int stepLimitMs = 60'000;

[[noreturn]] void fail(const QString& step) {
    throw std::runtime_error(step.toStdString());
}

std::unique_ptr<QMimeData> mimeData(const QString& cv) {
    auto data = std::make_unique<QMimeData>();
    data->setUrls({QUrl::fromLocalFile(cv)});
    return data;
}

/// The dialogs over `window`, those below first.
QList<QDialog*> dialogsOver(const QWidget& window) {
    QList<QDialog*> dialogs;
    for (auto* dialog : window.findChildren<QDialog*>()) {
        if (dialog->isVisible()) {
            dialogs.append(dialog);
        }
    }
    return dialogs;
}

} // namespace

Tour::Tour(const QDir& out, const QSize& windowSize)
    : m_out(out)
    , m_windowSize(windowSize) {
    AppSettings& settings = AppSettings::shared();
    settings.setOllamaURL(m_companions.modelServerUrl());
    settings.setSelectedLLMModel(u"demo-texto:latest"_s);
    settings.setSelectedEmbeddingModel(u"demo-vectores:latest"_s);
    m_companions.fillStore();
    openWindow();
}

void Tour::openWindow() {
    if (m_app) {
        // Hidden and not gone: what it stores may still be under way.
        window().hide();
        m_earlier.push_back(std::move(m_app));
    }
    m_app = std::make_unique<DorvantelApp>(AppSettings::shared(), m_companions.recordsUrl());
    window().resize(m_windowSize);
    window().show();
    waitUntil(u"the candidates are listed"_s, [this] { return !window().model().dbRecords().empty(); });
}

void Tour::takeMainJob(const QString& cv) {
    picture(u"inicio"_s);
    drag(cv);
    picture(u"arrastrar"_s);
    drop(cv);
    picture(u"progreso"_s);
    waitForData();
    picture(u"datos-extraidos"_s);
    showPage(1);
    picture(u"datos-generados"_s);
    showPage(0);

    auto& name = dynamic_cast<QLineEdit&>(find(u"name"_s));
    name.selectAll();
    typeText(name, u"  maría josé lópez DEL VALLE"_s);
    picture(u"nombre-corregido"_s);
    const std::size_t before = window().model().dbRecords().size();
    press(u"ok"_s);
    waitUntil(u"the candidate is listed"_s, [&] { return window().model().dbRecords().size() == before + 1; });
    picture(u"guardado"_s);

    const QString stored = u"María José López Del Valle"_s;
    openWindow();
    waitUntil(u"the candidate is there after a restart"_s, [&] {
        if (std::ranges::any_of(window().model().dbRecords(), [&](const auto& r) { return r->name == stored; })) {
            return true;
        }
        openWindow(); // the first was quicker than the store
        return false;
    });
    clickCandidate(stored);
    lookAtCandidate();
    const std::size_t count = window().model().dbRecords().size();
    QTest::keyClick(window().findChild<QListView*>(u"candidateList"_s), Qt::Key_Delete);
    waitUntil(u"the question before deleting"_s, [this] { return window().findChild<QMessageBox*>() != nullptr; });
    picture(u"borrar"_s);
    answerDeleteAlert();
    waitUntil(u"the candidate is gone"_s, [&] { return window().model().dbRecords().size() == count - 1; });
    picture(u"borrado"_s);
}

void Tour::takeThrough(const QString& cv) {
    const QString name = QFileInfo(cv).completeBaseName();
    drag(cv);
    drop(cv);
    waitForData();
    picture(name + u"-extraidos"_s);
    showPage(1);
    picture(name + u"-generados"_s);
    press(u"ok"_s);
    if (window().intake().sheetIsShowing()) {
        press(u"cancel"_s);
    }
    waitUntil(u"the sheet is gone"_s, [this] { return !window().intake().sheetIsShowing(); });
}

void Tour::takeModelServerAway(const QString& cv) {
    m_companions.stopModelServer();
    drag(cv);
    drop(cv);
    waitUntil(u"the alert"_s, [this] { return window().intake().processingError().has_value(); });
    picture(u"error"_s);
    auto* alert = window().findChild<QMessageBox*>(u"errorAlert"_s);
    QTest::mouseClick(alert->buttons().first(), Qt::LeftButton);
    waitUntil(u"the alert is gone"_s, [this] { return !window().intake().processingError(); });
    QTest::keyClick(&find(u"validationSheet"_s), Qt::Key_Escape);
    waitUntil(u"the sheet is gone"_s, [this] { return !window().intake().sheetIsShowing(); });
    picture(u"tras-el-error"_s);
}

void Tour::takeSettings() {
    m_app->openSettings();
    auto* settings = m_app->settingsView();
    picture(u"ajustes-servidor"_s, *settings);
    settings->setCurrentIndex(1);
    waitUntil(u"the models are listed"_s, [&] {
        const auto pickers = settings->findChildren<QComboBox*>();
        return !pickers.isEmpty() && std::ranges::all_of(pickers, [](const auto* one) { return one->count() > 1; });
    });
    picture(u"ajustes-modelos"_s, *settings);
    settings->close();
    m_app->showAbout();
    picture(u"acerca-de"_s);
    dialogsOver(window()).constLast()->close();
}

void Tour::drag(const QString& cv) {
    const auto data = mimeData(cv);
    QDragEnterEvent event(window().rect().center(), Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window(), &event);
    if (!event.isAccepted()) {
        fail(u"the window takes the drag of "_s + cv);
    }
    QTest::qWait(300); // the overlay fades in
}

void Tour::drop(const QString& cv) {
    const auto data = mimeData(cv);
    QDropEvent event(window().rect().center(), Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window(), &event);
    waitUntil(u"the sheet opens"_s, [this] { return window().intake().sheetIsShowing(); });
}

void Tour::waitForData() {
    waitUntil(u"the data is extracted"_s, [this] { return window().intake().dataExtracted(); });
}

void Tour::showPage(int page) {
    showTab(u"valuetype"_s, page);
}

void Tour::showTab(const QString& tags, int tab) {
    auto& control = dynamic_cast<SegmentedControl&>(find(tags));
    const QList<QAbstractButton*> segments = control.findChildren<QAbstractButton*>();
    QTest::mouseClick(segments[tab], Qt::LeftButton);
}

void Tour::lookAtCandidate() {
    auto& detail = dynamic_cast<CandidateDetailUIView&>(find(u"candidateDetail"_s));
    waitUntil(u"the CV of the candidate is there"_s, [&] { return detail.pdfDocument() != nullptr; });
    waitForFirstPage(detail);
    picture(u"detalle-pdf"_s);
    showTab(u"mainTagType"_s, 1);
    picture(u"detalle-texto"_s);
    showTab(u"mainTagType"_s, 2);
    picture(u"detalle-extraer-prompt"_s);
    showTab(u"extractTagType"_s, 1);
    picture(u"detalle-extraer-json"_s);
    showTab(u"mainTagType"_s, 3);
    picture(u"detalle-correo-prompt"_s);
    showTab(u"correoTagType"_s, 1);
    picture(u"detalle-correo-json"_s);
}

void Tour::press(const QString& objectName) {
    QTest::mouseClick(&find(objectName), Qt::LeftButton);
}

void Tour::clickCandidate(const QString& name) {
    auto& list = dynamic_cast<QListView&>(find(u"candidateList"_s));
    const QModelIndexList found =
        list.model()->match(list.model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
    if (found.isEmpty()) {
        fail(u"the list shows "_s + name);
    }
    list.scrollTo(found.first());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, list.visualRect(found.first()).center());
}

void Tour::answerDeleteAlert() {
    auto* alert = window().findChild<QMessageBox*>(u"deleteAlert"_s);
    QTest::mouseClick(alert->defaultButton(), Qt::LeftButton);
}

QWidget& Tour::find(const QString& objectName) const {
    for (auto* widget : window().findChildren<QWidget*>(objectName)) {
        if (widget->isVisible()) {
            return *widget;
        }
    }
    fail(u"there is no "_s + objectName);
}

void Tour::picture(const QString& name) {
    picture(name, window());
}

void Tour::picture(const QString& name, QWidget& window) {
    QTest::qWait(50); // what was asked to be painted is painted
    QPixmap pixmap = window.grab();
    QPainter painter(&pixmap);
    for (QDialog* dialog : dialogsOver(window)) {
        painter.fillRect(window.rect(), QColor(0, 0, 0, 60));
        const QPixmap sheet = dialog->grab();
        const QSizeF size = sheet.deviceIndependentSize();
        painter.drawPixmap(QPointF((window.width() - size.width()) / 2, (window.height() - size.height()) / 2), sheet);
    }
    painter.end();
    const QString path = m_out.filePath(u"%1-%2.png"_s.arg(++m_pictures, 2, 10, QLatin1Char('0')).arg(name));
    if (!pixmap.save(path)) {
        fail(u"the picture can be written to "_s + path);
    }
    std::fprintf(stderr, "%s\n", qUtf8Printable(path));
}

void Tour::waitForFirstPage(const QWidget& where) {
    waitUntil(u"the first page of the CV is drawn"_s, [&where] {
        const auto* view = where.findChild<PDFView*>();
        return view && view->pageState(0) == PDFView::PageState::Drawn;
    });
}

void Tour::waitUntil(const QString& what, const std::function<bool()>& condition) {
    if (!QTest::qWaitFor(condition, stepLimitMs)) {
        fail(what);
    }
}

} // namespace dorvantel
