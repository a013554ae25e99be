// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/Commands.h"

#include "service/store/Backup.h"
#include "service/store/CandidateVersions.h"
#include "service/store/StoreCheck.h"
#include "service/store/StoreFile.h"

namespace dorvantel::service {

namespace {

std::string counted(std::int64_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string candidates(std::int64_t count) {
    return counted(count, "candidate", "candidates");
}

ExitCode runBackup(const CommandLine& line, const std::filesystem::path& store, const CommandOutput& output) {
    const auto count = backUp(store, line.argument, line.isReplacing);
    output.result("backed up " + candidates(count) + " to " + line.argument);
    return ExitCode::Stopped;
}

ExitCode runRestore(const CommandLine& line, const std::filesystem::path& store, const CommandOutput& output) {
    const Restored restored = restore(line.argument, store);
    output.result("restored " + candidates(restored.candidates) + " from " + line.argument);
    if (restored.keptAside) {
        output.result("the store that was there is kept as " + restored.keptAside->string());
    }
    return ExitCode::Stopped;
}

ExitCode runCheck(const std::filesystem::path& store, const CommandOutput& output) {
    const StoreReport report = checkStore(openForReading(store.string()));
    for (const std::string& problem : report.problems) {
        output.problem(store.string() + ": " + problem);
    }
    if (!report.problems.empty()) {
        return ExitCode::StoreUnusable;
    }
    output.result(store.string() + " is in order: " + candidates(report.candidates) + ", " +
                  counted(report.earlier, "earlier version, ", "earlier versions, ") +
                  counted(report.pdfs, "PDF, ", "PDFs, ") + counted(report.vectors, "vector, ", "vectors, ") +
                  "schema version " + std::to_string(report.version));
    return ExitCode::Stopped;
}

/// What a command that names a candidate did with its versions.
ExitCode reportVersions(std::int64_t versions, const std::string& done, const CommandOutput& output) {
    if (versions == 0) {
        output.problem("no candidate with this e-mail");
        return ExitCode::NoCandidate;
    }
    output.result(done + " " + counted(versions, "version", "versions"));
    return ExitCode::Stopped;
}

ExitCode runErase(const CommandLine& line, const std::filesystem::path& store, const CommandOutput& output) {
    const ExitCode code = reportVersions(eraseCandidate(store, line.argument), "erased", output);
    if (code == ExitCode::Stopped) {
        output.result("backups and stores kept aside may still hold the candidate: erase it there with --store");
    }
    return code;
}

} // namespace

ExitCode runCommand(const CommandLine& line, const std::filesystem::path& store, const CommandOutput& output) {
    try {
        switch (line.text->command) {
        case Command::Backup:
            return runBackup(line, store, output);
        case Command::Restore:
            return runRestore(line, store, output);
        case Command::Check:
            return runCheck(store, output);
        case Command::Export:
            return reportVersions(exportCandidate(store, line.argument, *line.to),
                                  "exported to " + line.to->string() + ":", output);
        case Command::Erase:
            return runErase(line, store, output);
        case Command::Reembed:
            break;
        }
        output.result(candidates(forgetVectors(store)) + " will get new vectors when the service runs");
        return ExitCode::Stopped;
    } catch (const StoreInUse& error) {
        output.problem(std::string(error.what()) + "; stop it first");
        return ExitCode::StoreUnusable;
    } catch (const FileError& error) {
        output.problem(error.what());
        return ExitCode::FileUnusable;
    }
}

} // namespace dorvantel::service
