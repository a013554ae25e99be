// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Confinement.h"
#include "platform/PDFPageFrames.h"
#include "platform/PDFPageReader.h"
#include "platform/PDFPageServer.h"
#include "platform/Sanitizers.h"

#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

#include <csignal>
#include <cstdlib>

#include <sys/prctl.h>
#include <sys/resource.h>

using namespace dorvantel;
using namespace Qt::StringLiterals;

namespace {

enum ExitCode { exitOpened = 0, exitNotOpened = 1, exitUsage = 2, exitNotConfined = 3 };

constexpr auto usage =
    "usage: dorvantel-pdf-reader               reads a PDF from standard input, writes its page texts as frames\n"
    "       dorvantel-pdf-reader --render      reads a PDF as a frame, then draws the pages that are asked for\n"
    "       dorvantel-pdf-reader --text FILE   writes the text of the PDF's pages, a form feed after each\n";

void setLimits(__rlimit_resource resource, const rlimit& limits) {
    if (setrlimit(resource, &limits) != 0) {
        std::abort();
    }
}

void limit(__rlimit_resource resource, rlim_t value) {
    setLimits(resource, {value, value});
}

constexpr rlim_t processorSeconds = 10;

/// What a PDF may cost, whatever is in it. Set before the first byte of it is read.
void limitThisProcess() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    limit(RLIMIT_CORE, 0);
    if (!isSanitized) {
        constexpr rlim_t addressSpace = 1U << 30U;
        limit(RLIMIT_AS, addressSpace);
    }
}

/// From here on; the processor time that was used up to now does not count.
void limitProcessorTimeFromNow() {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    const auto seconds = static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) + 1;
    setLimits(RLIMIT_CPU, {seconds + processorSeconds, RLIM_INFINITY});
}

/// The window comes first; where there is a processor left, this costs nothing.
void yieldToTheWindow() {
    constexpr int niceness = 5;
    setpriority(PRIO_PROCESS, 0, niceness);
}

/// No file can grow from here on; pipes are no files.
void forbidWritingFiles() {
    limit(RLIMIT_FSIZE, 0);
}

/// The last thing before the bytes of a PDF are looked at: all libraries are loaded by then.
bool confine() {
    const std::expected<void, std::string> confined = confineThisProcess();
    if (!confined) {
        QTextStream(stderr) << "dorvantel-pdf-reader: no PDF is opened, because "
                            << QString::fromStdString(confined.error()) << '\n';
    }
    return confined.has_value();
}

int writeFrames() {
    QFile input;
    QFile output;
    if (!input.open(stdin, QIODevice::ReadOnly) || !output.open(stdout, QIODevice::WriteOnly)) {
        return exitNotOpened;
    }
    const std::optional<QStringList> texts = readPageTexts(input.readAll());
    if (!texts) {
        return exitNotOpened;
    }
    const QByteArray frames = encodePageFrames(*texts);
    return output.write(frames) == frames.size() && output.flush() ? exitOpened : exitNotOpened;
}

int writeText(const QString& path) {
    QFile input(path);
    if (!input.open(QIODevice::ReadOnly)) {
        QTextStream(stderr) << path << ": " << input.errorString() << '\n';
        return exitNotOpened;
    }
    const QByteArray bytes = input.readAll();
    input.close();
    if (!confine()) {
        return exitNotConfined;
    }
    const std::optional<QStringList> texts = readPageTexts(bytes);
    if (!texts) {
        QTextStream(stderr) << path << ": not a PDF that opens\n";
        return exitNotOpened;
    }
    QTextStream output(stdout);
    for (const QString& text : *texts) {
        output << text << '\f';
    }
    return exitOpened;
}

} // namespace

int main(int argc, char** argv) {
    limitThisProcess();
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments == QStringList{u"--render"_s}) {
        forbidWritingFiles();
        yieldToTheWindow();
        limitProcessorTimeFromNow();
        if (!confine()) {
            return exitNotConfined;
        }
        return servePages(stdin, stdout, limitProcessorTimeFromNow) ? exitOpened : exitNotOpened;
    }
    limit(RLIMIT_CPU, processorSeconds);
    if (arguments.isEmpty()) {
        forbidWritingFiles();
        return confine() ? writeFrames() : exitNotConfined;
    }
    if (arguments.size() == 2 && arguments[0] == "--text"_L1) {
        return writeText(arguments[1]);
    }
    QTextStream(stderr) << usage;
    return exitUsage;
}
