// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Log.h"
#include "service/Commands.h"
#include "service/Options.h"
#include "service/embedding/EmbeddingQueue.h"
#include "service/http/HttpServer.h"
#include "service/http/OpenFiles.h"
#include "service/store/NewFile.h"
#include "service/store/Schema.h"
#include "service/store/SqliteStore.h"

#include <QString>

#include <csignal>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include <malloc.h>
#include <sys/stat.h>

using namespace dorvantel::service;

namespace {

/// One line on standard error. One call, so that lines of different threads never mix.
void log(std::string_view line) {
    const std::string text = "dorvantel-records: " + std::string(line) + "\n";
    std::fwrite(text.data(), 1, text.size(), stderr);
}

/// What ends the program when it is asked to. Blocked in every thread, so that only the wait for them sees them.
sigset_t blockEndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

/// Stops the server; another signal meanwhile means that it shall wait for nobody.
void stop(HttpServer& server, const sigset_t& signals) {
    std::thread second([&] {
        int received = 0;
        sigwait(&signals, &received);
        server.hurry();
    });
    server.stop();
    pthread_kill(second.native_handle(), SIGTERM); // nothing is left to hurry, and no signal may ever come
    second.join();
}

/// The settings with no more connections than the process can have files for.
HttpServer::Settings withinOpenFiles(HttpServer::Settings settings) {
    const std::size_t possible = connectionsWithin(raiseOpenFileLimit());
    if (possible < settings.connections.open) {
        settings.connections.open = possible;
        log("the limit of open files leaves room for " + std::to_string(possible) + " connections at once");
    }
    return settings;
}

ExitCode serve(const Options& options, const std::filesystem::path& path) {
    const sigset_t signals = blockEndSignals();
    // The address first: when another service has it, the store is left alone.
    HttpServer server(withinOpenFiles(options.http), log);
    if (const auto bound = server.bind(); !bound) {
        log(bound.error());
        return ExitCode::AddressUnusable;
    }
    SqliteStore store(path, options.embeddingModel, log);
    std::unique_ptr<EmbeddingQueue> queue;
    if (!options.embeddingModel.empty()) {
        queue = std::make_unique<EmbeddingQueue>(store, options.modelServer, options.embeddingModel,
                                                 EmbeddingQueue::Pauses{}, log);
    }
    const RecordsApi api(store, [&queue] {
        if (queue) {
            queue->wake();
        }
    });
    server.start(api);
    dorvantel::logLine(QString::fromStdString("dorvantel-records is ready at " + server.url()));

    int received = 0;
    sigwait(&signals, &received);
    stop(server, signals);
    return ExitCode::Stopped;
}

/// Runs `work` on the store; what it throws becomes a line and an exit code.
ExitCode reporting(const std::filesystem::path& path, const std::function<ExitCode()>& work) {
    try {
        return work();
    } catch (const SchemaError& error) {
        log(path.string() + ": " + error.what());
        return error.kind() == SchemaError::Kind::Newer ? ExitCode::StoreNewer : ExitCode::StoreUnusable;
    } catch (const StoreFileError& error) {
        log(error.what());
        return ExitCode::StoreUnusable;
    } catch (const SqliteError& error) {
        log(path.string() + ": " + error.what());
        return ExitCode::StoreUnusable;
    } catch (const std::exception& error) {
        log(error.what());
        return ExitCode::Failed;
    }
}

void print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

ExitCode runOn(const std::optional<std::filesystem::path>& named,
               const std::function<ExitCode(const std::filesystem::path&)>& work) {
    const auto path = named ? named : defaultStorePath();
    if (!path) {
        log("there is no home folder to keep the store in; name a file with --store");
        return ExitCode::StoreUnusable;
    }
    return reporting(*path, [&] { return work(*path); });
}

/// A command that is asked to end removes what it has not finished, and ends as if nobody had caught the signal. What
/// it changes within a store is safe by itself.
void abandonNewFilesOnSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action{};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler != SIG_IGN) { // such as under nohup
            sigaddset(&signals, signal);
        }
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals] {
        int received = 0;
        if (sigwait(&signals, &received) == 0) {
            abandonNewFiles();
            std::signal(received, SIG_DFL);
            pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
            std::raise(received);
        }
    }).detach();
}

ExitCode runCommandLine(const std::vector<std::string_view>& arguments) {
    const auto line = parseCommandLine(arguments);
    if (!line) {
        log(line.error());
        return ExitCode::BadArguments;
    }
    if (line->showHelp) {
        print(commandHelpText(*line->text));
        return ExitCode::Stopped;
    }
    abandonNewFilesOnSignals();
    return runOn(line->store, [&](const std::filesystem::path& path) {
        return runCommand(*line, path, {[](std::string_view result) { print(std::string(result) + "\n"); }, log});
    });
}

ExitCode run(const std::vector<std::string_view>& arguments) {
    if (!arguments.empty() && !arguments.front().starts_with("-")) {
        return runCommandLine(arguments);
    }
    const auto options = parseOptions(arguments);
    if (!options) {
        log(options.error());
        return ExitCode::BadArguments;
    }
    if (options->showHelp || options->showVersion) {
        print(options->showHelp ? helpText() : "dorvantel-records " DORVANTEL_VERSION "\n");
        return ExitCode::Stopped;
    }
    return runOn(options->store, [&](const std::filesystem::path& path) { return serve(*options, path); });
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGXFSZ, SIG_IGN); // a limit on the size of files is an error like a full disk, not the end
    // Every connection has a thread, and what each frees would otherwise stay with one of many heaps.
    mallopt(M_ARENA_MAX, 2);
    umask(S_IRWXG | S_IRWXO); // whatever SQLite makes beside the store is its owner's alone
    return static_cast<int>(run({argv + 1, argv + argc}));
}
