// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/CandidateVersions.h"

#include "service/store/NewFile.h"
#include "tests/service/MadeStore.h"

#include <fstream>

#include <nlohmann/json.hpp>
#include <unistd.h>

using namespace dorvantel::service;
using namespace dorvantel::test;
using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace fs = std::filesystem;

namespace {

class CandidateVersions : public MadeStoreTest {
protected:
    fs::path target() const { return folder.path() / "export"; }

    /// The files of the store in which the bytes occur.
    std::vector<std::string> filesWith(std::string_view bytes) const {
        std::vector<std::string> found;
        for (const fs::path& file : files()) {
            if (fs::is_regular_file(file) && fileBytes(file).find(bytes) != std::string::npos) {
                found.push_back(file.filename().string());
            }
        }
        return found;
    }
};

} // namespace

TEST_F(CandidateVersions, ExportHasEveryVersionOldestFirstWithItsPDF) {
    EXPECT_EQ(exportCandidate(folder.store(), "ana@x", target()), 3);
    const json versions = json::parse(fileBytes(target() / "candidate.json"))["versions"];
    ASSERT_EQ(versions.size(), 3U);
    const std::vector<std::pair<std::string, std::string>> expected{
        {"ana-1", "deleted"}, {"ana-2", "replaced"}, {"ana-3", "current"}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto& [version, state] = expected[i];
        EXPECT_EQ(versions[i]["name"], "Name " + version);
        EXPECT_EQ(versions[i]["profession"], "Profession of ana@x");
        EXPECT_EQ(versions[i]["email"], "ana@x");
        EXPECT_EQ(versions[i]["summarizedText"], "Summary of ana@x");
        EXPECT_EQ(versions[i]["invitationMail"], "Mail to ana@x");
        EXPECT_EQ(versions[i]["jsonCVData"], (json{{"gender", "Femenino"},
                                                   {"softSkills", {"Orden"}},
                                                   {"techSkills", {"Excel"}},
                                                   {"languages", {"Español"}}}));
        EXPECT_EQ(versions[i]["jsonCVDataText"],
                  makeRecord("x", {"Femenino", {"Orden"}, {"Excel"}, {"Español"}}).jsonCVData);
        EXPECT_EQ(versions[i]["state"], state);
        EXPECT_THAT(versions[i]["storedAt"].get<std::string>(), testing::MatchesRegex("20[0-9-]{8}T[0-9:]{8}Z"));
        EXPECT_EQ(versions[i].contains("endedAt"), state != "current");
        EXPECT_EQ(fileBytes(target() / versions[i]["file"].get<std::string>()), pdfText(version));
    }
    EXPECT_EQ(fs::status(target()).permissions(), fs::perms::owner_all);
    for (const auto& file : fs::directory_iterator(target())) {
        EXPECT_EQ(file.status().permissions(), fs::perms::owner_read | fs::perms::owner_write) << file;
    }
}

TEST_F(CandidateVersions, ExportHasWhatNoAnswerShows) {
    const std::string text =
        R"({"gender":"Femenino","softSkills":[],"techSkills":[],"languages":[],"address":"Calle 5"})";
    {
        SqliteStore store(folder.store(), "m");
        Record record = makeRecord("eva@x");
        record.jsonCVData = text;
        ASSERT_TRUE(store.insert(record));
    }
    ASSERT_EQ(exportCandidate(folder.store(), "eva@x", target()), 1);
    const json eva = json::parse(fileBytes(target() / "candidate.json"))["versions"][0];
    EXPECT_EQ(eva["jsonCVDataText"], text);
    EXPECT_FALSE(eva.contains("vector")) << "it waits for one";
    ASSERT_EQ(exportCandidate(folder.store(), "ana@x", folder.path() / "ana"), 3);
    const json versions = json::parse(fileBytes(folder.path() / "ana" / "candidate.json"))["versions"];
    EXPECT_EQ(versions[2]["vectorModel"], "m");
    EXPECT_EQ(versions[2]["vector"].get<std::vector<float>>(), (std::vector<float>{0.6F, 0.8F}));
    EXPECT_FALSE(versions[1].contains("vector"));
}

TEST_F(CandidateVersions, ExportOfWhomHasNoPDFOrIsDeletedOrUnknown) {
    EXPECT_EQ(exportCandidate(folder.store(), "bea@x", target() / ""), 1);
    EXPECT_FALSE(json::parse(fileBytes(target() / "candidate.json"))["versions"][0].contains("file"));
    EXPECT_EQ(exportCandidate(folder.store(), "carla@x", folder.path() / "deleted"), 1);
    EXPECT_EQ(exportCandidate(folder.store(), "Ana@x", folder.path() / "unknown"), 0);
    EXPECT_FALSE(fs::exists(folder.path() / "unknown"));
}

TEST_F(CandidateVersions, ExportWorksWhileAServiceRuns) {
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.remove("ana@x"));
    EXPECT_EQ(exportCandidate(folder.store(), "ana@x", target()), 3);
    EXPECT_EQ(json::parse(fileBytes(target() / "candidate.json"))["versions"][2]["state"], "deleted");
}

TEST_F(CandidateVersions, ExportGoesIntoANewOrEmptyFolderOnly) {
    fs::create_directory(target());
    EXPECT_EQ(exportCandidate(folder.store(), "ana@x", target()), 3);
    EXPECT_EQ(fs::status(target()).permissions(), fs::perms::owner_all);
    EXPECT_THROW(exportCandidate(folder.store(), "ana@x", target()), FileError);
    EXPECT_THROW(exportCandidate(folder.store(), "ana@x", folder.store()), FileError);
    EXPECT_THROW(exportCandidate(folder.store(), "ana@x", folder.path() / "no" / "folder"), FileError);
}

TEST_F(CandidateVersions, ErasedCandidateIsInNoByteOfTheStore) {
    const auto vector = [](std::vector<float> numbers) {
        return std::string(reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof(float));
    };
    const std::vector<std::string> traces{"ana@x",     "Name ana-1", "Name ana-3",  "Profession of ana", "ana-1/250",
                                          "ana-2/499", "ana-3/0\n",  "Mail to ana", vector({0.6F, 0.8F})};
    for (const std::string& trace : traces) {
        EXPECT_THAT(filesWith(trace), Not(IsEmpty())) << trace;
    }
    EXPECT_EQ(eraseCandidate(folder.store(), "ana@x"), 3);
    for (const std::string& trace : traces) {
        EXPECT_THAT(filesWith(trace), IsEmpty()) << trace;
    }
    EXPECT_THAT(filesWith("Name carla-1"), ElementsAre("records.sqlite")) << "the others stay";
    SqliteStore store(folder.store(), "m");
    EXPECT_THAT(emailsOf(store), ElementsAre("bea@x"));
    EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("bea@x"));
    EXPECT_EQ(value("PRAGMA integrity_check"), "ok");
}

TEST_F(CandidateVersions, ErasingClearsTheLogOfAServiceThatWasKilled) {
    // A copy of the files under a running service is what a killed one leaves.
    const fs::path killed = folder.path() / "killed" / "records.sqlite";
    {
        SqliteStore store(folder.store(), "m");
        Record record = makeRecord("dora@x");
        record.file = pdfText("dora-1");
        ASSERT_TRUE(store.insert(record));
        fs::create_directory(killed.parent_path());
        for (const char* const suffix : {"", "-wal"}) {
            fs::copy_file(folder.store().string() + suffix, killed.string() + suffix);
        }
    }
    ASSERT_EQ(eraseCandidate(folder.store(), "dora@x"), 1);
    ASSERT_THAT(filesWith("dora-1/499"), Not(IsEmpty()));
    EXPECT_EQ(eraseCandidate(killed, "dora@x"), 1);
    EXPECT_THAT(filesWith("dora"), IsEmpty());
}

TEST_F(CandidateVersions, ErasingRemovesWhatAKilledRestorationLeft) {
    fs::copy_file(folder.store(), folder.store().string() + ".part-aB3xYz");
    ASSERT_EQ(eraseCandidate(folder.store(), "ana@x"), 3);
    EXPECT_THAT(filesWith("ana-3/499"), IsEmpty());
}

TEST_F(CandidateVersions, ErasingByRootRemovesWhatItsKilledRestorationLeftToTheStoresOwner) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root makes files for others";
    }
    constexpr uid_t somebody = 12'345;
    const std::string part = folder.store().string() + ".part-aB3xYz";
    fs::copy_file(folder.store(), part);
    for (const std::string& file : {folder.store().string(), part}) {
        ASSERT_EQ(chown(file.c_str(), somebody, somebody), 0);
    }
    ASSERT_EQ(eraseCandidate(folder.store(), "ana@x"), 3);
    EXPECT_THAT(filesWith("ana-3/499"), IsEmpty());
}

TEST_F(CandidateVersions, ErasingOneOfManyLeavesNothingBetweenTheOthers) {
    {
        SqliteStore store(folder.store(), "m");
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < 120; ++i) {
                Record record =
                    makeRecord("p" + std::to_string(i) + "@x", {"Femenino", {}, {"skill" + std::to_string(i)}, {}});
                record.file = std::string(static_cast<std::size_t>(i * 37), 'x') + "pdf of p" + std::to_string(i) + ".";
                ASSERT_TRUE(store.insert(record));
                if (i % 7 == round) {
                    ASSERT_TRUE(store.remove(record.email));
                }
            }
        }
    }
    for (int i = 0; i < 120; i += 17) {
        const std::string person = "p" + std::to_string(i);
        ASSERT_EQ(eraseCandidate(folder.store(), person + "@x"), 3);
        for (const std::string& trace :
             {person + "@x", "pdf of " + person + ".", "\"skill" + std::to_string(i) + "\""}) {
            EXPECT_THAT(filesWith(trace), IsEmpty()) << trace;
        }
    }
    EXPECT_EQ(value("PRAGMA integrity_check"), "ok");
}

TEST_F(CandidateVersions, NobodyIsErasedUnderAnotherSpelling) {
    for (const char* const email : {"Ana@x", "ana@x ", "ana@", "%", "nobody@x"}) {
        EXPECT_EQ(eraseCandidate(folder.store(), email), 0) << email;
    }
    SqliteStore store(folder.store(), "m");
    EXPECT_THAT(emailsOf(store), ElementsAre("ana@x", "bea@x"));
}

TEST_F(CandidateVersions, ErasingAgainFinishesWhatWasCutOff) {
    change("PRAGMA secure_delete = OFF; DELETE FROM pdf WHERE record IN (SELECT id FROM record WHERE email = 'ana@x'); "
           "DELETE FROM record WHERE email = 'ana@x'");
    ASSERT_THAT(filesWith("ana-3/499"), Not(IsEmpty()));
    EXPECT_EQ(eraseCandidate(folder.store(), "nobody@x"), 0);
    EXPECT_THAT(filesWith("ana-3/499"), IsEmpty());
}

TEST_F(CandidateVersions, StoreInUseIsNotChanged) {
    SqliteStore store(folder.store(), "m");
    EXPECT_THROW(eraseCandidate(folder.store(), "ana@x"), StoreInUse);
    EXPECT_THROW(forgetVectors(folder.store()), StoreInUse);
    EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("bea@x", "ana@x"));
}

TEST_F(CandidateVersions, ReaderOfAnOlderStateKeepsAnErasureFromBeingCalledDone) {
    change("PRAGMA journal_mode = WAL");
    const SqliteDatabase reader(folder.store().string(), SqliteDatabase::Access::ReadOnly);
    reader.execute("BEGIN");
    ASSERT_EQ(reader.number("SELECT count(*) FROM record"), 2);
    EXPECT_THROW(eraseCandidate(folder.store(), "ana@x"), SqliteError);
    reader.execute("COMMIT");
    EXPECT_EQ(eraseCandidate(folder.store(), "ana@x"), 0);
    EXPECT_THAT(filesWith("ana-3/499"), IsEmpty());
}

TEST_F(CandidateVersions, ForgottenVectorsAreQueuedAnew) {
    EXPECT_EQ(forgetVectors(folder.store()), 2);
    SqliteStore store(folder.store(), "m");
    EXPECT_THAT(rowsOf(store, similarTo({1, 0})), IsEmpty());
    EXPECT_NE(queuedId(store, "ana@x"), 0);
    EXPECT_NE(queuedId(store, "bea@x"), 0);
}

TEST_F(CandidateVersions, NoCommandMakesAStore) {
    const fs::path none = folder.path() / "none" / "records.sqlite";
    EXPECT_THROW(eraseCandidate(none, "a"), StoreFileError);
    EXPECT_THROW(forgetVectors(none), StoreFileError);
    EXPECT_THROW(exportCandidate(none, "a", target()), StoreFileError);
    EXPECT_FALSE(fs::exists(none.parent_path()));
}

TEST_F(CandidateVersions, NoCommandMakesAStoreOfAnEmptyFile) {
    const fs::path empty = folder.path() / "empty";
    std::ofstream(empty).close();
    EXPECT_THROW(eraseCandidate(empty, "a"), StoreFileError);
    EXPECT_THROW(forgetVectors(empty), StoreFileError);
    EXPECT_EQ(fileBytes(empty), "");
    EXPECT_FALSE(fs::exists(empty.string() + ".lock"));
}
