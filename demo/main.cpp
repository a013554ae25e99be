// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/DemoModel.h"
#include "demo/DemoModelServer.h"

#include "platform/Log.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

enum ExitCode { Ended = 0, WrongUse = 2, CannotListen = 3, WrongScript = 4 };

struct Address {
    QString host;
    std::uint16_t port;
};

std::optional<Address> parseAddress(const QString& text) {
    const qsizetype colon = text.lastIndexOf(u':');
    bool isPort = false;
    const ushort port = text.mid(colon + 1).toUShort(&isPort);
    return colon > 0 && isPort ? std::optional(Address{text.left(colon), port}) : std::nullopt;
}

int fail(ExitCode code, const QString& message) {
    std::fprintf(stderr, "dorvantel-demo-model: %s\n", qUtf8Printable(message));
    return code;
}

// SIGTERM and SIGINT are blocked in every thread and taken here, so that no handler runs in the middle of anything.
sigset_t blockEndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

int serve(const Address& address, dorvantel::Script script) {
    const sigset_t endSignals = blockEndSignals();
    dorvantel::DemoModelServer server(std::move(script));
    const auto port = server.start(address.host, address.port);
    if (!port) {
        return fail(CannotListen, port.error());
    }
    dorvantel::logLine(u"dorvantel-demo-model: listening on %1 (a stand-in, no language model)"_s.arg(server.url()));
    int signal = 0;
    sigwait(&endSignals, &signal);
    server.stop();
    return Ended;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"dorvantel-demo-model"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(DORVANTEL_VERSION " (a stand-in, no language model)"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"A stand-in for a model server, for trying out and testing Dorvantel. It is no language model: it answers "
        "by rules and word lists.\nModels: %1 (chat), %2 (vectors). SIGTERM ends it.\n"
        "Exit status: 0 ended, 2 wrong use, 3 cannot listen, 4 wrong script."_s.arg(
            QLatin1String(dorvantel::demoTextModel), QLatin1String(dorvantel::demoEmbeddingModel)));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    const QCommandLineOption listen(u"listen"_s, u"Where to listen; port 0 is a free one, told in the ready line."_s,
                                    u"HOST:PORT"_s, u"127.0.0.1:11434"_s);
    const QCommandLineOption script(u"script"_s, u"Scripted answers for tests; docs/demo-model.md tells how."_s,
                                    u"FILE.json"_s);
    parser.addOptions({listen, script});
    if (!parser.parse(QCoreApplication::arguments())) {
        return fail(WrongUse, parser.errorText());
    }
    if (parser.isSet(help)) {
        parser.showHelp(Ended);
    }
    if (parser.isSet(version)) {
        parser.showVersion();
    }
    const std::optional<Address> address = parseAddress(parser.value(listen));
    if (!address || !parser.positionalArguments().isEmpty()) {
        return fail(WrongUse, address ? u"there are no arguments but options"_s : u"--listen wants HOST:PORT"_s);
    }
    if (!parser.isSet(script)) {
        return serve(*address, {});
    }
    std::expected<dorvantel::Script, QString> loaded = dorvantel::Script::load(parser.value(script));
    return loaded ? serve(*address, std::move(*loaded)) : fail(WrongScript, loaded.error());
}
