// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/PeakMemory.h"
#include "bench/Report.h"
#include "bench/SampleBodies.h"
#include "bench/SimdjsonScan.h"
#include "records/WireRecords.h"

#include <QJsonDocument>

using namespace dorvantel;
using namespace dorvantel::bench;

namespace {

constexpr BodyShape manyRecords{.records = 100'000, .pdfBytes = 0};
constexpr BodyShape manyFiles{.records = 1'000, .pdfBytes = 100'000};
constexpr BodyShape manyRows{.records = 10'000, .pdfBytes = 0};
constexpr BodyShape rowsWithFiles{.records = 200, .pdfBytes = 100'000};
constexpr int downloadedBytes = 10'000'000;

struct Bodies {
    QByteArray list = padded(listBody(manyRecords));
    QByteArray listWithFiles = padded(listBody(manyFiles));
    QByteArray search = padded(searchBody(manyRows));
    QByteArray searchWithFiles = padded(searchBody(rowsWithFiles));
    QByteArray download = padded(fileBody(downloadedBytes));

    static QByteArray padded(QByteArray body) {
        body.reserve(body.size() + simdjsonPadding());
        return body;
    }
};

/// Megabytes beside the body while a list with PDFs is decoded.
double memoryBesideTheBody() {
    QByteArray body;
    const qint64 peak = peakMemory([&] { body = listBody(manyFiles); },
                                   [&] { benchmark::DoNotOptimize(decodeQueryResponse(body).value()); });
    const qsizetype bodySize = listBody(manyFiles).size();
    return static_cast<double>(peak - bodySize) / (1024 * 1024);
}

} // namespace

int main(int argc, char** argv) {
    const double besideBody = memoryBesideTheBody();
    const Bodies bodies;
    Report report(argc, argv);

    const auto list = report.measure("list", [&] { return decodeQueryResponse(bodies.list).value(); });
    const auto listScan = report.measure("list-scan", [&] { return simdjsonScan(bodies.list); });
    const auto listDom = report.measure("list-dom", [&] { return QJsonDocument::fromJson(bodies.list); });
    const auto files = report.measure("files", [&] { return decodeQueryResponse(bodies.listWithFiles).value(); });
    const auto filesScan = report.measure("files-scan", [&] { return simdjsonScan(bodies.listWithFiles); });
    const auto search = report.measure("search", [&] { return decodeSearchResponse(bodies.search).value(); });
    const auto searchScan = report.measure("search-scan", [&] { return simdjsonScan(bodies.search); });
    const auto rows = report.measure("rows", [&] { return decodeSearchResponse(bodies.searchWithFiles).value(); });
    const auto rowsScan = report.measure("rows-scan", [&] { return simdjsonScan(bodies.searchWithFiles); });
    const auto file = report.measure("file", [&] { return decodeFileResponse(bodies.download).value(); });
    const auto fileRead = report.measure("file-read", [&] { return simdjsonFileBytes(bodies.download); });
    report.run();

    report.atMost("list of 100 000 records: decode / simdjson scan", report.ratio(list, listScan), 3, "times");
    report.atLeast("list of 100 000 records: Qt JSON DOM / decode", report.ratio(listDom, list), 5, "times");
    report.atMost("list of 1 000 PDFs of 100 KB: decode / simdjson scan", report.ratio(files, filesScan), 1.5, "times");
    report.atMost("list of 1 000 PDFs of 100 KB: peak memory beside the body", besideBody, 64, "MB");
    report.atMost("search answer of 10 000 rows: decode / simdjson scan", report.ratio(search, searchScan), 3, "times");
    report.atMost("search answer of 200 PDFs of 100 KB: decode / simdjson scan", report.ratio(rows, rowsScan), 1.5,
                  "times");
    report.atMost("PDF of 10 MB from 36 MB of numbers: decode / simdjson read", report.ratio(file, fileRead), 1.5,
                  "times");
}
