// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/Report.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

using namespace dorvantel::bench;
using namespace Qt::StringLiterals;

namespace {

constexpr int limitMs = 30'000;

/// A display of its own, black where no window has painted, and a look at it from outside of the measured program.
class Display {
public:
    Display() {
        m_server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x800x24"_s, u"-br"_s,
                                   u"-nolisten"_s, u"tcp"_s});
        while (!m_server.canReadLine() && m_server.waitForReadyRead(limitMs)) {
        }
        m_name = ":" + m_server.readLine().trimmed();
        m_connection.reset(xcb_connect(m_name.constData(), nullptr));
    }

    ~Display() {
        m_connection.reset();
        m_server.terminate();
        m_server.waitForFinished(limitMs);
    }

    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    bool isUsable() const { return xcb_connection_has_error(m_connection.get()) == 0; }
    QString name() const { return QString::fromLatin1(m_name); }

    /// Waits until something is painted, or nothing is any more.
    bool waitFor(bool painted) const {
        QElapsedTimer clock;
        clock.start();
        while (isPainted() != painted) {
            if (clock.hasExpired(limitMs)) {
                return false;
            }
            // Short beside what is measured, long beside a look.
            std::this_thread::sleep_for(std::chrono::microseconds(500));
        }
        return true;
    }

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    /// One pixel tells: both windows fill all they have, are larger than this place is far from the corner, and no part
    /// of them is black there.
    bool isPainted() const {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data->root;
        const auto cookie = xcb_get_image(m_connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, root, 900, 600, 1, 1, ~0U);
        const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
            xcb_get_image_reply(m_connection.get(), cookie, nullptr), &std::free);
        if (!reply) {
            return false;
        }
        const std::uint8_t* pixel = xcb_get_image_data(reply.get());
        return pixel[0] != 0 || pixel[1] != 0 || pixel[2] != 0;
    }

    QProcess m_server;
    QByteArray m_name;
    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
};

/// Milliseconds from the start of a program beside this one to its first painted window; ends the program.
double startOf(const QString& program, const Display& display, const QString& home) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, display.name());
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    // Without a session bus libraries would start one for every window.
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"disabled:"_s);
    environment.insert(u"XDG_CONFIG_HOME"_s, home);
    environment.insert(u"XDG_RUNTIME_DIR"_s, home);
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer clock;
    clock.start();
    process.start(QCoreApplication::applicationDirPath() + u'/' + program, QStringList());
    const bool painted = display.waitFor(true);
    const double milliseconds = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    process.kill();
    process.waitForFinished(limitMs);
    if (!painted || !display.waitFor(false)) {
        std::fprintf(stderr, "%s showed no window, or kept it\n", qUtf8Printable(program));
        std::exit(EXIT_FAILURE);
    }
    return milliseconds;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir home;
    const Display display;
    if (!display.isUsable()) {
        std::fputs("Xvfb does not start\n", stderr);
        return EXIT_FAILURE;
    }
    constexpr int pairs = 21;
    const std::array<QString, 2> programs{u"dorvantel"_s, u"bare_window"_s};
    for (const QString& program : programs) {
        startOf(program, display, home.path()); // from here on both find their files in memory
    }
    std::array<std::vector<double>, 2> times;
    for (std::size_t i = 0; i < 2 * pairs; ++i) {
        // ABBA: what comes second in one pair comes first in the next.
        const std::size_t which = (i + 1) / 2 % 2;
        times[which].push_back(startOf(programs[which], display, home.path()));
    }
    std::fprintf(stderr, "program %.1f ms, bare window %.1f ms\n", median(times[0]), median(times[1]));
    const Report report(argc, argv);
    report.atMost("start to the first painted window, against a bare window", median(times[0]) / median(times[1]), 1.3,
                  "times");
    return EXIT_SUCCESS;
}
