// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/CommandLine.h"
#include "service/store/Schema.h"
#include "tests/service/MadeStore.h"
#include "tests/service/RecordsProcess.h"
#include "tests/support/Wait.h"

#include <algorithm>
#include <csignal>

#include <nlohmann/json.hpp>

using namespace dorvantel::service;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;
using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

/// The commands as somebody types them.
class CommandsProcess : public MadeStoreTest {
protected:
    struct Ended {
        ExitCode code;
        std::string output;
        std::string errors;
    };

    QString store() const { return QString::fromStdString(folder.store().string()); }
    std::string inFolder(const char* name) const { return (folder.path() / name).string(); }
    Ended run(const QStringList& arguments) const {
        RecordsProcess process(arguments + QStringList{u"--store"_s, store()});
        const auto code = static_cast<ExitCode>(process.exitCode());
        return {code, process.output(), process.errors()};
    }
    /// A command with the place of a file or folder of the test.
    Ended run(const char* command, const std::string& argument, const QStringList& more = {}) const {
        return run(QStringList{QString::fromUtf8(command), QString::fromStdString(argument)} + more);
    }
};

} // namespace

TEST_F(CommandsProcess, HelpOfEveryCommand) {
    for (const CommandText& text : commandTexts()) {
        RecordsProcess process({QString::fromUtf8(text.name.data(), std::ssize(text.name)), u"--help"_s});
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_EQ(process.output(), commandHelpText(text));
        EXPECT_EQ(process.errors(), "");
    }
}

TEST_F(CommandsProcess, BadCommandLine) {
    RecordsProcess process({u"destroy"_s});
    EXPECT_EQ(process.exitCode(), static_cast<int>(ExitCode::BadArguments));
    EXPECT_EQ(process.errors(), "dorvantel-records: there is no command destroy; --help shows all\n");
}

TEST_F(CommandsProcess, BackupRestoreAndCheckBesideAndWithoutTheService) {
    const std::string file = inFolder("backup.sqlite");
    {
        RecordsProcess service({u"--listen"_s, u"127.0.0.1:0"_s, u"--store"_s, store()});
        ASSERT_TRUE(service.waitUntilReady());
        const Ended backup = run("backup", file);
        EXPECT_EQ(backup.output, "backed up 2 candidates to " + file + "\n");
        EXPECT_EQ(backup.errors, "");
        EXPECT_EQ(backup.code, ExitCode::Stopped);
        const auto answer = service.client().Delete("/curriculums/bea@x");
        ASSERT_EQ(answer->status, 204);

        EXPECT_EQ(run({u"check"_s}).output,
                  folder.store().string() +
                      " is in order: 1 candidate, 4 earlier versions, 4 PDFs, 1 vector, schema version " +
                      std::to_string(migrations().size()) + "\n");
        const Ended refused = run("restore", file);
        EXPECT_EQ(refused.code, ExitCode::StoreUnusable);
        EXPECT_EQ(refused.errors, "dorvantel-records: " + folder.store().string() +
                                      ": another dorvantel-records uses this store; stop it first\n");
        service.sendSignal(SIGTERM);
        ASSERT_EQ(service.exitCode(), 0);
    }
    const Ended restored = run("restore", file);
    EXPECT_EQ(restored.code, ExitCode::Stopped);
    EXPECT_THAT(restored.output,
                StartsWith("restored 2 candidates from " + file + "\nthe store that was there is kept as " +
                           folder.store().string() + ".before-restore-"));
    EXPECT_THAT(run({u"check"_s}).output, HasSubstr(" is in order: 2 candidates, 3 earlier versions, "));
}

TEST_F(CommandsProcess, BackupDoesNotReplaceUnlessToldSo) {
    const std::string file = inFolder("backup.sqlite");
    ASSERT_EQ(run("backup", file).code, ExitCode::Stopped);
    const Ended refused = run("backup", file);
    EXPECT_EQ(refused.code, ExitCode::FileUnusable);
    EXPECT_EQ(refused.errors, "dorvantel-records: " + file + ": it exists already\n");
    EXPECT_EQ(run("backup", file, {u"--replace"_s}).code, ExitCode::Stopped);
}

TEST_F(CommandsProcess, RestoreOfWhatIsNoBackup) {
    const Ended refused = run("restore", inFolder("none"));
    EXPECT_EQ(refused.code, ExitCode::FileUnusable);
    EXPECT_EQ(refused.errors, "dorvantel-records: " + inFolder("none") + ": there is no such file\n");
    run("backup", inFolder("backup.sqlite"));
    SqliteDatabase(inFolder("backup.sqlite"), SqliteDatabase::Access::ReadWriteCreate)
        .execute("PRAGMA user_version = 99");
    EXPECT_EQ(run("restore", inFolder("backup.sqlite")).code, ExitCode::StoreNewer);
}

TEST_F(CommandsProcess, CommandThatIsAskedToEndLeavesNothingHalfMade) {
    const std::string file = inFolder("backup.sqlite");
    run("backup", file);
    const auto hasPart = [this] {
        return std::ranges::any_of(
            files(), [](const fs::path& path) { return path.string().find(".part-") != std::string::npos; });
    };
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        // Keeps the command waiting for the backup.
        const SqliteDatabase reader(file, SqliteDatabase::Access::ReadWriteCreate);
        reader.execute("BEGIN EXCLUSIVE");
        RecordsProcess process({u"restore"_s, QString::fromStdString(file), u"--store"_s, store()});
        ASSERT_TRUE(waitUntil(hasPart));
        process.sendSignal(signal);
        EXPECT_EQ(process.exitCode(), -1) << "it ends by the signal";
        EXPECT_FALSE(hasPart());
    }
    EXPECT_EQ(value("SELECT count(*) FROM record"), "2");
}

TEST_F(CommandsProcess, CheckNamesWhatIsWrong) {
    change("UPDATE record SET cv_json = 'secret' WHERE email = 'bea@x'");
    const Ended found = run({u"check"_s});
    EXPECT_EQ(found.code, ExitCode::StoreUnusable);
    EXPECT_EQ(found.output, "");
    EXPECT_EQ(found.errors, "dorvantel-records: " + folder.store().string() +
                                ": the CV data of version 5 cannot be read: it is not the text of a JSON object\n");
}

TEST_F(CommandsProcess, CheckOfAMissingStoreMakesNone) {
    fs::remove(folder.store());
    const Ended found = run({u"check"_s});
    EXPECT_EQ(found.code, ExitCode::StoreUnusable);
    EXPECT_EQ(found.errors, "dorvantel-records: " + folder.store().string() + ": there is no store\n");
    EXPECT_FALSE(fs::exists(folder.store()));
}

TEST_F(CommandsProcess, Export) {
    const std::string target = inFolder("export");
    const QStringList to{u"--to"_s, QString::fromStdString(target)};
    EXPECT_EQ(run("export", "ana@x", to).output, "exported to " + target + ": 3 versions\n");
    EXPECT_EQ(json::parse(fileBytes(fs::path(target) / "candidate.json"))["versions"].size(), 3U);
    EXPECT_EQ(run("export", "ana@x", to).code, ExitCode::FileUnusable);
    const Ended nobody = run("export", "nobody@x", to);
    EXPECT_EQ(nobody.code, ExitCode::NoCandidate);
    EXPECT_EQ(nobody.errors, "dorvantel-records: no candidate with this e-mail\n");
}

TEST_F(CommandsProcess, Erase) {
    const Ended erased = run("erase", "ana@x");
    EXPECT_EQ(erased.code, ExitCode::Stopped);
    EXPECT_EQ(erased.output,
              "erased 3 versions\n"
              "backups and stores kept aside may still hold the candidate: erase it there with --store\n");
    const Ended again = run("erase", "ana@x");
    EXPECT_EQ(again.code, ExitCode::NoCandidate);
    EXPECT_EQ(again.errors, "dorvantel-records: no candidate with this e-mail\n");
    EXPECT_THAT(fileBytes(folder.store()), testing::Not(HasSubstr("ana@x")));
}

TEST_F(CommandsProcess, EraseAndReembedWantTheServiceStopped) {
    RecordsProcess service({u"--listen"_s, u"127.0.0.1:0"_s, u"--store"_s, store()});
    ASSERT_TRUE(service.waitUntilReady());
    for (const Ended& refused : {run("erase", "ana@x"), run({u"reembed"_s})}) {
        EXPECT_EQ(refused.code, ExitCode::StoreUnusable);
        EXPECT_EQ(refused.errors, "dorvantel-records: " + folder.store().string() +
                                      ": another dorvantel-records uses this store; stop it first\n");
    }
}

TEST_F(CommandsProcess, Reembed) {
    EXPECT_EQ(run({u"reembed"_s}).output, "2 candidates will get new vectors when the service runs\n");
    EXPECT_EQ(value("SELECT count(*) FROM vector"), "0");
    EXPECT_EQ(value("SELECT count(*) FROM embedding_queue"), "2");
}
