// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/Report.h"
#include "data/RecordsService.h"
#include "platform/PDFOpener.h"
#include "platform/PDFPageRenderer.h"
#include "platform/URLOpener.h"
#include "search/SearchResultDetailUIView.h"
#include "ui/Style.h"

#include <QApplication>
#include <QPixmap>
#include <QScrollBar>

#include <malloc.h>

using namespace dorvantel;
using namespace Qt::StringLiterals;

namespace {

constexpr int resultCount = 10'000;

/// Rows ask for nothing until a button is pressed.
struct SilentRecords final : RecordsService {
    void fetchAll(Completion<std::vector<DBRecordPointer>>) override {}
    void fetchPDF(const QString&, Completion<std::optional<QByteArray>>) override {}
    void insertResume(const DBRecordRepresentation&, Completion<DBRecord>) override {}
    void deleteResume(const QString&) override {}
    void search(const QString&, Completion<std::shared_ptr<IdentifiableSearchResponse>>) override {}
};
struct SilentPDFs final : PDFOpener {
    void open(const QByteArray&, QObject*, Completion) override {}
    std::unique_ptr<PDFPageRenderer> makeRenderer(std::shared_ptr<const PDFDocument>) const override { return nullptr; }
};
struct SilentURLs final : URLOpener {
    bool open(const QUrl&) override { return true; }
};

IdentifiableSearchResponse answer() {
    SearchResponse response;
    for (int i = 0; i < resultCount; ++i) {
        QueryResult row;
        row.name = u"María de los Ángeles Fernández %1"_s.arg(i);
        row.profession = u"Contable"_s;
        row.summarizedText = u"Diez años de experiencia en contabilidad. "_s.repeated(8);
        row.jsonCVData = {i % 2 ? u"Masculino"_s : u"Femenino"_s, {u"Liderazgo"_s}, {u"Excel"_s}, {u"Español"_s}};
        row.score = static_cast<float>(i % 101);
        response.result.push_back(std::move(row));
    }
    return IdentifiableSearchResponse(std::move(response));
}

double heapInUse() {
    return static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd);
}

/// The list in a window the size of a large screen, with the answer in it.
class Shown {
public:
    explicit Shown(const IdentifiableSearchResponse& response) {
        list.resize(1000, 1400);
        list.show();
        fill(response);
    }
    void fill(const IdentifiableSearchResponse& response) {
        list.setRows(std::ssize(response.result), SearchResultDetailUIView::closedHeight,
                     [&response, this](qsizetype index, QWidget* parent) {
                         return new SearchResultDetailUIView(response.result[static_cast<std::size_t>(index)],
                                                             static_cast<int>(index % 2), {records, pdfs, urls},
                                                             parent);
                     });
    }
    void paint() {
        list.grab();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    SilentRecords records;
    SilentPDFs pdfs;
    SilentURLs urls;
    LazyRowList list;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    applyApplicationLook(application);
    const IdentifiableSearchResponse response = answer();
    Shown shown(response);
    shown.paint();

    bench::Report report(argc, argv);
    const auto painted = report.measure("paint-10000-results", [&] {
        shown.fill(response);
        shown.paint();
    });
    const auto scrolled = report.measure("scroll-by-a-notch", [&] {
        QScrollBar& bar = *shown.list.verticalScrollBar();
        bar.setValue(bar.value() < bar.maximum() / 2 ? bar.value() + 3 * bar.singleStep() : 0);
        shown.paint();
    });
    report.run();
    report.atMost("paint 10 000 results", report.seconds(painted) * 1000, 100, "ms");
    report.atMost("scroll 10 000 results by a notch", report.seconds(scrolled) * 1000, 16, "ms");

    const double before = heapInUse();
    Shown second(response);
    second.paint();
    report.atMost("memory of a result that is not open", (heapInUse() - before) / resultCount, 4096, "bytes");
}
