// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/longrun/Recruiter.h"

#include "app/DorvantelApp.h"
#include "intake/CandidateDetailUIView.h"
#include "search/LazyRowList.h"
#include "search/SearchResultDetailUIView.h"
#include "tests/longrun/Usage.h"
#include "tests/support/Typing.h"
#include "tests/support/Wait.h"
#include "ui/PDFView.h"
#include "ui/SegmentedControl.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <QAbstractButton>
#include <QApplication>
#include <QDragEnterEvent>
#include <QFile>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>

#include <ctime>
#include <stdexcept>

namespace dorvantel::test {

using namespace Qt::StringLiterals;

namespace {

class Stopwatch {
public:
    Recruiter::Step step() const {
        return {now(CLOCK_MONOTONIC) - m_start, now(CLOCK_THREAD_CPUTIME_ID) - m_workStart};
    }

private:
    static double now(clockid_t clock) {
        timespec time{};
        clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    }

    double m_start = now(CLOCK_MONOTONIC);
    double m_workStart = now(CLOCK_THREAD_CPUTIME_ID);
};

constexpr int limitMs = 60'000;
constexpr int rowsBeforeCandidates = 2;
constexpr int mostRepeatedSearches = 3;

void waitFor(const char* what, const std::function<bool()>& condition) {
    if (!waitUntil(condition, limitMs)) {
        throw std::runtime_error(std::string("within a minute: ") + what);
    }
}

/// A click as the user's, on whatever is at its middle.
void click(QWidget& widget) {
    QTest::mouseClick(&widget, Qt::LeftButton);
}

nlohmann::json healthOf(const QString& recordsUrl) {
    const QUrl url(recordsUrl);
    httplib::Client client(url.host().toStdString(), url.port());
    const httplib::Result answer = client.Get("/health");
    return answer ? nlohmann::json::parse(answer->body, nullptr, false) : nlohmann::json();
}

} // namespace

Recruiter::Recruiter(const QString& realCvs)
    : m_settings(std::make_unique<QSettings>(m_folder.filePath(u"settings.conf"_s), QSettings::IniFormat))
    , m_cvs(realCvs) {
    m_settings.setOllamaURL(m_companions.modelServerUrl());
    m_settings.setSelectedLLMModel(u"demo-texto:latest"_s);
    m_settings.setSelectedEmbeddingModel(u"demo-vectores:latest"_s);
    m_companions.fillStore();
    m_program = std::make_unique<DorvantelApp>(m_settings, m_companions.recordsUrl());
    window().show();
    waitFor("the candidates are listed", [this] { return !model().dbRecords().empty(); });
    showSearch();
}

Recruiter::Step Recruiter::takeIn() {
    QFile cv(m_folder.filePath(u"cv.pdf"_s));
    if (!cv.open(QIODevice::WriteOnly) || cv.write(m_cvs.pdf(m_takenIn++)) < 0) {
        throw std::runtime_error("the CV cannot be written");
    }
    cv.close();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(cv.fileName())});
    const std::size_t before = model().dbRecords().size();

    const Stopwatch watch;
    QDragEnterEvent enter(window().rect().center(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window(), &enter);
    QDropEvent drop(window().rect().center(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window(), &drop);
    waitFor("the data is extracted", [this] { return window().intake().dataExtracted(); });
    correctSheet();
    press(u"ok"_s);
    waitFor("the candidate is listed", [&] { return model().dbRecords().size() == before + 1; });
    return watch.step();
}

/// Gives the candidate an e-mail of its own, so that nobody replaces anybody, and whatever the CV does not say.
void Recruiter::correctSheet() {
    const auto write = [this](const QString& name, const QString& text) {
        auto& field = dynamic_cast<QLineEdit&>(find(name));
        field.selectAll();
        typeText(field, text);
    };
    const SheetValues& values = window().intake().values();
    write(u"email"_s, u"persona.%1@example.com"_s.arg(m_takenIn));
    if (values.name.trimmed().isEmpty()) {
        write(u"name"_s, u"Sin Nombre"_s);
    }
    if (values.profession.trimmed().isEmpty()) {
        write(u"profession"_s, u"Sin profesión"_s);
    }
    showTab(u"valuetype"_s, 1);
    if (values.summarizedText.trimmed().isEmpty()) {
        typeText(find(u"summarizedText"_s), u"Un currículum sin texto."_s);
    }
    showTab(u"valuetype"_s, 0);
}

Recruiter::Step Recruiter::searchByDescription() {
    showSearch();
    typeText(find(u"freeText"_s), m_cvs.description(m_searches++));
    const Step step = pressSearch();
    lookAtFirstResult();
    press(u"clearButton"_s);
    return step;
}

void Recruiter::searchBySkill() {
    showSearch();
    typeText(*find(u"techSkills"_s).findChild<QLineEdit*>(), u"excel,"_s);
    pressSearch();
    press(u"clearButton"_s);
}

void Recruiter::searchForEverybody() {
    showSearch();
    pressSearch();
    press(u"clearButton"_s);
}

Recruiter::Step Recruiter::pressSearch() {
    const auto* results = window().findChild<LazyRowList*>(u"results"_s);
    const auto areThere = [&] { return results->isVisible(); };
    constexpr int patienceMs = 15'000;
    const Stopwatch watch;
    press(u"searchButton"_s);
    if (!waitUntil(areThere, patienceMs)) {
        // A search that fails leaves everything as it was; the program says why in its log, and one presses again.
        if (++m_repeatedSearches > mostRepeatedSearches) {
            throw std::runtime_error("searches fail again and again");
        }
        press(u"searchButton"_s);
        waitFor("the results are there", areThere);
    }
    return watch.step();
}

void Recruiter::lookAtFirstResult() const {
    auto& results = dynamic_cast<LazyRowList&>(find(u"results"_s));
    if (results.count() == 0) {
        throw std::runtime_error("a search by description finds someone");
    }
    LazyRow& first = *results.row(0);
    click(*first.findChild<QAbstractButton*>(u"disclosure"_s));
    click(*first.findChild<QAbstractButton*>(u"cv"_s));
    waitFor("the preview opens", [this] {
        auto* preview = window().findChild<QDialog*>(u"pdfPreview"_s);
        return preview && preview->isVisible();
    });
    waitForFirstPage(*window().findChild<QDialog*>(u"pdfPreview"_s));
    press(u"close"_s);
    click(*first.findChild<QAbstractButton*>(u"invite"_s));
}

Recruiter::Step Recruiter::lookAtAndDelete() {
    const auto count = static_cast<int>(model().dbRecords().size());
    clickRow(rowsBeforeCandidates + (m_deleted++ % 2 == 0 ? 0 : count / 2));
    auto& detail = dynamic_cast<CandidateDetailUIView&>(find(u"candidateDetail"_s));
    waitFor("the CV of the candidate is there", [&] { return detail.pdfDocument() != nullptr; });
    waitForFirstPage(detail);
    constexpr int tabs = 4;
    for (int tab = 1; tab < tabs; ++tab) {
        showTab(u"mainTagType"_s, tab);
    }
    showTab(u"correoTagType"_s, 1);

    const Stopwatch watch;
    QTest::keyClick(&list(), Qt::Key_Delete);
    QMessageBox* alert = nullptr;
    waitFor("the question before deleting",
            [&] { return (alert = window().findChild<QMessageBox*>(u"deleteAlert"_s)) != nullptr; });
    click(*alert->defaultButton());
    waitFor("the candidate is gone", [&] { return model().dbRecords().size() == static_cast<std::size_t>(count - 1); });
    return watch.step();
}

void Recruiter::rest() {
    showSearch();
    press(u"clearButton"_s);
    waitFor("the records service has done everything", [this] {
        const nlohmann::json health = healthOf(m_companions.recordsUrl());
        return health.value("records", std::size_t{0}) == model().dbRecords().size() &&
               health.value("vectorsPending", 1) == 0;
    });
    constexpr int servers = 2;
    waitFor("no process reads a PDF", [] { return childProcesses() <= servers; });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QListView& Recruiter::list() const {
    return dynamic_cast<QListView&>(find(u"candidateList"_s));
}

QWidget& Recruiter::find(const QString& name) const {
    for (auto* widget : window().findChildren<QWidget*>(name)) {
        if (widget->isVisible()) {
            return *widget;
        }
    }
    throw std::runtime_error("there is no " + name.toStdString());
}

void Recruiter::press(const QString& name) const {
    click(find(name));
}

void Recruiter::showTab(const QString& tags, int tab) const {
    click(*find(tags).findChildren<QAbstractButton*>()[tab]);
}

void Recruiter::clickRow(int row) const {
    // The offscreen platform has no window manager that would do so when a dialog closes.
    window().activateWindow();
    waitFor("the window is the active one", [this] { return window().isActiveWindow(); });
    const QModelIndex index = list().model()->index(row, 0);
    list().scrollTo(index);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, list().visualRect(index).center());
}

void Recruiter::showSearch() const {
    clickRow(0);
    waitFor("the search is shown", [this] { return window().findChild<QWidget*>(u"search"_s) != nullptr; });
}

void Recruiter::waitForFirstPage(const QWidget& where) const {
    waitFor("the first page of the CV is drawn", [&where] {
        const auto* view = where.findChild<PDFView*>();
        return view && view->pageState(0) == PDFView::PageState::Drawn;
    });
}

} // namespace dorvantel::test
