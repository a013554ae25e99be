// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/Report.h"
#include "platform/PDFDocument.h"
#include "platform/ProcessPDFOpener.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <vector>

using namespace dorvantel;
using namespace dorvantel::bench;

namespace {

QByteArray onePage() {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    QPainter painter(&writer);
    painter.drawText(500, 500, QStringLiteral("Lucía Hernández Muñoz"));
    painter.end();
    return bytes;
}

struct Opening {
    double seconds = 0;
    double longestPause = 0; ///< seconds in which the event loop came to nothing else
    bool opened = false;
};

Opening open(ProcessPDFOpener& opener, const QByteArray& bytes) {
    Opening opening;
    QEventLoop loop;
    QElapsedTimer clock;
    double last = 0;
    const auto now = [&clock] { return static_cast<double>(clock.nsecsElapsed()) / 1e9; };
    const auto tick = [&] {
        opening.longestPause = std::max(opening.longestPause, now() - last);
        last = now();
    };
    QTimer heartbeat;
    QObject::connect(&heartbeat, &QTimer::timeout, &loop, tick);
    heartbeat.start(0);
    clock.start();
    opener.open(bytes, &loop, [&](const std::shared_ptr<PDFDocument>& document) {
        tick();
        opening.opened = document != nullptr;
        loop.quit();
    });
    loop.exec();
    opening.seconds = now();
    return opening;
}

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    ProcessPDFOpener opener(findPDFReader(QCoreApplication::applicationDirPath()));
    const QByteArray small = onePage();
    const QByteArray large = small + QByteArray(100'000'000, '\n');

    constexpr int repetitions = 9;
    std::vector<double> smallTimes;
    std::vector<double> pauses;
    for (int i = 0; i < repetitions; ++i) {
        const Opening quick = open(opener, small);
        const Opening slow = open(opener, large);
        if (!quick.opened || !slow.opened) {
            std::fputs("a PDF did not open\n", stderr);
            return EXIT_FAILURE;
        }
        smallTimes.push_back(quick.seconds * 1e3);
        pauses.push_back(slow.longestPause * 1e3);
    }
    const Report report(argc, argv);
    report.atMost("opening a PDF of one page, the reader's start included", median(smallTimes), 60, "ms");
    report.atMost("longest pause of the window while a PDF of 100 MB opens", std::ranges::max(pauses), 100, "ms");
    return EXIT_SUCCESS;
}
