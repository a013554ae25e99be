// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/Report.h"
#include "platform/PDFDocument.h"
#include "platform/ProcessPDFOpener.h"
#include "ui/PDFKitView.h"
#include "ui/PDFView.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QPainter>
#include <QPdfWriter>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>

using namespace dorvantel;
using namespace dorvantel::bench;
using namespace std::chrono_literals;

namespace {

/// Pages of so many lines that each takes the PDF library a second.
std::shared_ptr<const PDFDocument> heavyDocument() {
    constexpr int pages = 5;
    constexpr int lines = 100'000;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        QPainter painter(&writer);
        QRandomGenerator random(1);
        const auto anywhere = [&] { return QPoint(random.bounded(writer.width()), random.bounded(writer.height())); };
        for (int page = 0; page < pages; ++page) {
            if (page > 0) {
                writer.newPage();
            }
            for (int line = 0; line < lines; ++line) {
                painter.drawLine(anywhere(), anywhere());
            }
        }
    }
    return std::make_shared<PDFDocument>(bytes, QStringList(pages, QString()));
}

/// The longest time in which the event loop comes to nothing else, in milliseconds.
class Pauses {
public:
    Pauses() {
        QObject::connect(&m_heartbeat, &QTimer::timeout, &m_heartbeat, [this] { tick(); });
        m_clock.start();
    }

    /// Runs the event loop for so long, `atStart` from inside it.
    void watch(std::chrono::milliseconds duration, const std::function<void()>& atStart) {
        QEventLoop loop;
        m_last = now();
        m_heartbeat.start(0);
        QTimer::singleShot(0, &loop, atStart);
        QTimer::singleShot(duration, &loop, &QEventLoop::quit);
        loop.exec();
        m_heartbeat.stop();
    }
    double longest() const { return m_longest; }

private:
    double now() const { return static_cast<double>(m_clock.nsecsElapsed()) / 1e6; }
    void tick() {
        m_longest = std::max(m_longest, now() - m_last);
        m_last = now();
    }

    QTimer m_heartbeat;
    QElapsedTimer m_clock;
    double m_last = 0;
    double m_longest = 0;
};

struct Figures {
    double use; ///< while it is shown, scrolled and resized
    double close;
};

Figures measure(const std::shared_ptr<const PDFDocument>& document, const PDFOpener& pdfs) {
    Pauses use;
    Pauses close;
    for (int repetition = 0; repetition < 3; ++repetition) {
        auto view = std::make_unique<PDFKitView>(document, pdfs);
        view->resize(1100, 720);
        use.watch(3s, [&view] { view->show(); });
        QScrollBar* bar = view->pdfView()->verticalScrollBar();
        QTimer scrolling;
        QObject::connect(&scrolling, &QTimer::timeout,
                         [bar] { bar->setValue(bar->value() < bar->maximum() ? bar->value() + 20 : 0); });
        use.watch(3s, [&scrolling] { scrolling.start(10ms); });
        scrolling.stop();
        use.watch(1s, [&view] { view->resize(1500, 900); });
        // A page is being drawn right now, whatever was drawn before.
        view->pdfView()->verticalScrollBar()->setValue(repetition == 0 ? 0 : bar->maximum() / repetition);
        close.watch(1s, [&view] { view.reset(); });
    }
    return {use.longest(), close.longest()};
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const ProcessPDFOpener pdfs(findPDFReader(QCoreApplication::applicationDirPath()));
    const Report report(argc, argv);
    const Figures heavy = measure(heavyDocument(), pdfs);
    report.atMost("longest pause of the window while heavy PDF pages are shown and scrolled", heavy.use, 100, "ms");
    report.atMost("longest pause of the window while a heavy PDF page is closed", heavy.close, 100, "ms");

    QFile bomb(qEnvironmentVariable("DORVANTEL_TEST_DATA") + QStringLiteral("/odd/bitmap-bomb-35000px.pdf"));
    if (bomb.open(QIODevice::ReadOnly)) {
        const auto document = std::make_shared<PDFDocument>(bomb.readAll(), QStringList{QString()});
        const Figures hostile = measure(document, pdfs);
        report.atMost("longest pause of the window while a render bomb is shown", hostile.use, 100, "ms");
        report.atMost("longest pause of the window while a render bomb is closed", hostile.close, 100, "ms");
    }
    return EXIT_SUCCESS;
}
