// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/Report.h"
#include "bench/SampleBodies.h"
#include "bench/SimdjsonScan.h"
#include "records/WireRecords.h"

#include <QJsonDocument>

using namespace dorvantel;
using namespace dorvantel::bench;

namespace {

struct Bodies {
    QByteArray list = padded(listBody({.records = 100'000, .pdfBytes = 0}));
    QByteArray listWithFiles = padded(listBody({.records = 1'000, .pdfBytes = 100'000}));
    QByteArray search = padded(searchBody({.records = 20'000, .pdfBytes = 0}));

    static QByteArray padded(QByteArray body) {
        body.reserve(body.size() + simdjsonPadding());
        return body;
    }
};

} // namespace

int main(int argc, char** argv) {
    Report report(argc, argv);
    const Bodies bodies;

    const auto list = report.measure("list", [&] { return decodeQueryResponse(bodies.list).value(); });
    const auto listScan = report.measure("list-scan", [&] { return simdjsonScan(bodies.list); });
    const auto listDom = report.measure("list-dom", [&] { return QJsonDocument::fromJson(bodies.list); });
    const auto files = report.measure("files", [&] { return decodeQueryResponse(bodies.listWithFiles).value(); });
    const auto filesScan = report.measure("files-scan", [&] { return simdjsonScan(bodies.listWithFiles); });
    const auto search = report.measure("search", [&] { return decodeSearchResponse(bodies.search).value(); });
    const auto searchScan = report.measure("search-scan", [&] { return simdjsonScan(bodies.search); });
    report.run();

    report.atMost("list of 100 000 records: decode / simdjson scan", report.ratio(list, listScan), 3, "times");
    report.atLeast("list of 100 000 records: Qt JSON DOM / decode", report.ratio(listDom, list), 5, "times");
    report.atMost("list of 1 000 PDFs of 100 KB: decode / simdjson scan", report.ratio(files, filesScan), 1.5, "times");
    report.atMost("search answer of 20 000 rows: decode / simdjson scan", report.ratio(search, searchScan), 3, "times");
}
