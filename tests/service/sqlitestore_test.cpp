// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/SqliteStore.h"

#include "service/Schema.h"
#include "tests/service/ServiceSupport.h"

#include <csignal>
#include <fstream>
#include <thread>

#include <gmock/gmock.h>
#include <sys/resource.h>

using namespace dorvantel::service;
using namespace dorvantel::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

class SqliteStoreTest : public testing::Test {
protected:
    /// A look into the file beside the store.
    std::string value(const std::string& sql) const {
        return SqliteDatabase(folder.store().string(), SqliteDatabase::Access::ReadOnly).text(sql);
    }

    static Plan having(std::vector<Predicate> predicates) {
        return {std::move(predicates), std::nullopt, std::nullopt};
    }
    static Plan similarTo(std::vector<float> vector, std::vector<Predicate> predicates = {}) {
        return {std::move(predicates), std::move(vector), 5};
    }

    StoreFolder folder;
};

std::string pdfOf(Store& store, std::string_view email) {
    const auto pdf = store.pdf(email);
    return !*pdf ? "unknown" : (**pdf).bytes.value_or("none");
}

} // namespace

TEST_F(SqliteStoreTest, ListsWhatWasInsertedInThatOrder) {
    SqliteStore store(folder.store(), "");
    Record record = makeRecord("b@x", {"Masculino", {"A"}, {"B", "O'C"}, {"D"}});
    ASSERT_TRUE(store.insert(record));
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    EXPECT_THAT(
        rowsOf(store),
        ElementsAre(FoundRow{"Name of b@x", "Profession of b@x", "b@x", "Summary of b@x", "Mail to b@x",
                             R"({"gender":"Masculino","softSkills":["A"],"techSkills":["B","O'C"],"languages":["D"]})",
                             100},
                    FoundRow{"Name of a@x", "Profession of a@x", "a@x", "Summary of a@x", "Mail to a@x",
                             R"({"gender":"Femenino","softSkills":[],"techSkills":[],"languages":[]})", 100}));
}

TEST_F(SqliteStoreTest, EmptyStoreListsNothing) {
    SqliteStore store(folder.store(), "");
    EXPECT_THAT(rowsOf(store), IsEmpty());
}

TEST_F(SqliteStoreTest, KeepsTheCVTextByteForByte) {
    SqliteStore store(folder.store(), "");
    Record record = makeRecord("a@x");
    record.jsonCVData = R"({"gender":"Femenino","softSkills":["O\'B", "\0"],"techSkills":[],"languages":[]})";
    ASSERT_TRUE(store.insert(record));
    EXPECT_EQ(value("SELECT cv_text FROM record"), record.jsonCVData);
}

TEST_F(SqliteStoreTest, PDFIsGivenBackAsItWas) {
    SqliteStore store(folder.store(), "");
    Record record = makeRecord("a@x");
    std::string bytes;
    for (int i = 0; i < 300'000; ++i) {
        bytes += static_cast<char>(i * i);
    }
    record.file = bytes;
    ASSERT_TRUE(store.insert(record));
    record = makeRecord("b@x");
    record.file = "";
    ASSERT_TRUE(store.insert(record));
    ASSERT_TRUE(store.insert(makeRecord("c@x")));
    EXPECT_EQ(pdfOf(store, "a@x"), bytes);
    EXPECT_EQ(pdfOf(store, "b@x"), "");
    EXPECT_EQ(pdfOf(store, "c@x"), "none");
    EXPECT_EQ(pdfOf(store, "d@x"), "unknown");
}

TEST_F(SqliteStoreTest, SameEmailReplacesAndKeepsTheEarlierVersionWithItsPDF) {
    SqliteStore store(folder.store(), "");
    Record record = makeRecord("a@x", {"Femenino", {}, {"Old"}, {}});
    record.file = "old bytes";
    ASSERT_TRUE(store.insert(record));
    ASSERT_TRUE(store.insert(makeRecord("b@x")));
    record = makeRecord("a@x", {"Femenino", {}, {"New"}, {}});
    record.name = "New name";
    ASSERT_TRUE(store.insert(record));

    EXPECT_THAT(emailsOf(store), ElementsAre("b@x", "a@x"));
    EXPECT_EQ(rowsOf(store)[1].name, "New name");
    EXPECT_EQ(pdfOf(store, "a@x"), "none");
    EXPECT_THAT(emailsOf(store, having({{Trait::TechSkill, "Old"}})), IsEmpty());
    EXPECT_THAT(emailsOf(store, having({{Trait::TechSkill, "New"}})), ElementsAre("a@x"));
    EXPECT_EQ(value("SELECT name || '|' || ended_by || '|' || CAST(bytes AS TEXT) || '|' || (ended_at >= stored_at) "
                    "FROM history JOIN pdf ON record = id WHERE email = 'a@x'"),
              "Name of a@x|replaced|old bytes|1");
}

TEST_F(SqliteStoreTest, DeletedRecordMovesToHistory) {
    SqliteStore store(folder.store(), "");
    ASSERT_TRUE(store.insert(makeRecord("a@x", {"Femenino", {}, {"Excel"}, {}})));
    ASSERT_TRUE(store.insert(makeRecord("b@x")));
    EXPECT_EQ(store.remove("a@x"), true);
    EXPECT_EQ(store.remove("a@x"), false);
    EXPECT_EQ(store.remove("c@x"), false);
    EXPECT_THAT(emailsOf(store), ElementsAre("b@x"));
    EXPECT_EQ(pdfOf(store, "a@x"), "unknown");
    EXPECT_EQ(value("SELECT email || ended_by FROM history"), "a@xdeleted");
    EXPECT_EQ(value("SELECT count(*) FROM trait WHERE value = 'Excel'"), "0");
}

TEST_F(SqliteStoreTest, VersionsAreNeverNumberedTwice) {
    SqliteStore store(folder.store(), "");
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(store.insert(makeRecord("a@x")));
        ASSERT_TRUE(store.remove("a@x"));
    }
    EXPECT_EQ(value("SELECT group_concat(id) FROM history"), "1,2,3");
}

TEST_F(SqliteStoreTest, EmailsAreComparedByteForByte) {
    SqliteStore store(folder.store(), "");
    const std::string withNul("a@x\0", 4);
    for (const std::string& email : {std::string("a@x"), std::string("A@x"), std::string("a@x "), withNul}) {
        ASSERT_TRUE(store.insert(makeRecord(email)));
    }
    EXPECT_THAT(emailsOf(store), ElementsAre("a@x", "A@x", "a@x ", withNul));
    EXPECT_EQ(store.remove(withNul), true);
    EXPECT_THAT(emailsOf(store), ElementsAre("a@x", "A@x", "a@x "));
}

TEST_F(SqliteStoreTest, AllConditionsMustHold) {
    SqliteStore store(folder.store(), "");
    ASSERT_TRUE(store.insert(makeRecord("1", {"Femenino", {"S"}, {"A", "B"}, {"L"}})));
    ASSERT_TRUE(store.insert(makeRecord("2", {"Masculino", {"S"}, {"A", "B"}, {"L"}})));
    ASSERT_TRUE(store.insert(makeRecord("3", {"Femenino", {"A"}, {"B", "S", "L"}, {}})));
    ASSERT_TRUE(store.insert(makeRecord("4", {"Femenino", {"S"}, {"B", "A", "A"}, {"L"}})));
    EXPECT_THAT(emailsOf(store, having({{Trait::TechSkill, "A"}})), ElementsAre("1", "2", "4"));
    EXPECT_THAT(emailsOf(store, having({{Trait::Gender, "Femenino"}, {Trait::TechSkill, "B"}})),
                ElementsAre("1", "3", "4"));
    EXPECT_THAT(emailsOf(store, having({{Trait::Gender, "Femenino"},
                                        {Trait::TechSkill, "A"},
                                        {Trait::TechSkill, "B"},
                                        {Trait::SoftSkill, "S"},
                                        {Trait::Language, "L"}})),
                ElementsAre("1", "4"));
    EXPECT_THAT(emailsOf(store, having({{Trait::Language, "L"}, {Trait::Language, "M"}})), IsEmpty());
    EXPECT_THAT(emailsOf(store, having({{Trait::Language, "L"}, {Trait::Language, "L"}})), ElementsAre("1", "2", "4"));
    EXPECT_EQ(rowsOf(store, having({{Trait::Language, "L"}}))[0].score, 100);
}

TEST_F(SqliteStoreTest, ValuesAreComparedByteForByte) {
    SqliteStore store(folder.store(), "");
    const std::vector<std::string> values{"Excel",
                                          "excel",
                                          "Excel ",
                                          "",
                                          "O'Reilly",
                                          "\"",
                                          "\\",
                                          "\n",
                                          "😀",
                                          "e\u0301",
                                          "\u00e9",
                                          std::string("a\0b", 3),
                                          std::string("a\0c", 3),
                                          "a",
                                          "%",
                                          "*"};
    for (std::size_t i = 0; i < values.size(); ++i) {
        ASSERT_TRUE(store.insert(makeRecord(std::to_string(i), {"Femenino", {}, {values[i]}, {}})));
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_THAT(emailsOf(store, having({{Trait::TechSkill, values[i]}})), ElementsAre(std::to_string(i)));
    }
}

TEST_F(SqliteStoreTest, BestLimitsAStructuredAnswer) {
    SqliteStore store(folder.store(), "");
    for (int i = 0; i < 7; ++i) {
        ASSERT_TRUE(store.insert(makeRecord(std::to_string(i))));
    }
    EXPECT_THAT(emailsOf(store, {{}, std::nullopt, 5}), ElementsAre("0", "1", "2", "3", "4"));
    EXPECT_THAT(emailsOf(store, {{{Trait::Gender, "Femenino"}}, std::nullopt, 2}), ElementsAre("0", "1"));
}

TEST_F(SqliteStoreTest, AnswerIsTheStoreAsItWasWhenItBegan) {
    SqliteStore store(folder.store(), "");
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    ASSERT_TRUE(store.insert(makeRecord("b@x")));
    for (const Plan& plan : {Plan{}, having({{Trait::Gender, "Femenino"}})}) {
        const auto rows = store.run(plan);
        ASSERT_TRUE(store.remove("a@x"));
        ASSERT_TRUE(store.insert(makeRecord("c@x")));
        std::vector<std::string> emails;
        Row row;
        while (*(*rows)->next(row)) {
            emails.emplace_back(row.email);
        }
        EXPECT_THAT(emails, ElementsAre("a@x", "b@x"));
        ASSERT_TRUE(store.remove("c@x"));
        ASSERT_TRUE(store.remove("b@x"));
        ASSERT_TRUE(store.insert(makeRecord("a@x")));
        ASSERT_TRUE(store.insert(makeRecord("b@x")));
    }
}

TEST_F(SqliteStoreTest, EverythingIsThereAfterReopening) {
    {
        SqliteStore store(folder.store(), "m");
        Record record = makeRecord("a@x", {"Femenino", {}, {"Excel"}, {}});
        record.file = "bytes";
        ASSERT_TRUE(store.insert(record));
        ASSERT_EQ(store.putVector(queuedId(store, "a@x"), {1, 0}), true);
    }
    EXPECT_FALSE(fs::exists(folder.store().string() + "-wal"));
    SqliteStore store(folder.store(), "m");
    EXPECT_EQ(pdfOf(store, "a@x"), "bytes");
    EXPECT_THAT(emailsOf(store, having({{Trait::TechSkill, "Excel"}})), ElementsAre("a@x"));
    EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("a@x"));
    EXPECT_EQ(queuedId(store, "a@x"), 0);
}

TEST_F(SqliteStoreTest, FilesAreTheirOwnersAlone) {
    std::ofstream(folder.store()).close();
    fs::permissions(folder.store(), fs::perms::all);
    const fs::path nested = folder.path() / "new" / "folders" / "records.sqlite";
    for (const fs::path& path : {folder.store(), nested}) {
        SqliteStore store(path, "");
        ASSERT_TRUE(store.insert(makeRecord("a@x")));
        for (const char* const suffix : {"", "-wal", "-shm", ".lock"}) {
            EXPECT_EQ(fs::status(path.string() + suffix).permissions(), fs::perms::owner_read | fs::perms::owner_write)
                << path << suffix;
        }
    }
    EXPECT_EQ(fs::status(folder.path() / "new").permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(folder.path() / "new" / "folders").permissions(), fs::perms::owner_all);
}

TEST_F(SqliteStoreTest, SecondServiceOnTheSameFileIsRefused) {
    const SqliteStore store(folder.store(), "");
    try {
        const SqliteStore second(folder.store(), "");
        FAIL();
    } catch (const StoreFileError& error) {
        EXPECT_EQ(std::string(error.what()), folder.store().string() + ": another dorvantel-records uses this store");
    }
}

TEST_F(SqliteStoreTest, StoreThatIsNoDatabaseIsRefusedAndLeftAlone) {
    std::ofstream(folder.store()) << std::string(4'096, 'x');
    EXPECT_THROW(SqliteStore(folder.store(), ""), SqliteError);
    EXPECT_EQ(fs::file_size(folder.store()), 4'096U);
}

TEST_F(SqliteStoreTest, DatabaseOfAnotherProgramIsRefusedWithItsContentUntouched) {
    SqliteDatabase(folder.store().string(), SqliteDatabase::Access::ReadWriteCreate).execute("CREATE TABLE mine (x)");
    const auto bytes = [this] {
        std::ifstream file(folder.store(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    const std::string before = bytes();
    EXPECT_THROW(SqliteStore(folder.store(), ""), SchemaError);
    EXPECT_EQ(bytes(), before);
}

TEST_F(SqliteStoreTest, FolderOrFileInTheWayIsRefused) {
    EXPECT_THROW(SqliteStore(folder.path(), ""), StoreFileError);
    std::ofstream(folder.path() / "file").close();
    EXPECT_THROW(SqliteStore(folder.path() / "file" / "records.sqlite", ""), StoreFileError);
}

TEST_F(SqliteStoreTest, LockOfAnotherProgramIsReportedAsBusyAndChangesNothing) {
    SqliteStore store(folder.store(), "");
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    const SqliteDatabase other(folder.store().string(), SqliteDatabase::Access::ReadWriteCreate);
    other.execute("BEGIN IMMEDIATE");
    const auto stored = store.insert(makeRecord("b@x"));
    ASSERT_FALSE(stored);
    EXPECT_EQ(stored.error().kind, StoreError::Kind::Busy);
    other.execute("ROLLBACK");
    EXPECT_TRUE(store.insert(makeRecord("c@x")));
    EXPECT_THAT(emailsOf(store), ElementsAre("a@x", "c@x"));
}

TEST_F(SqliteStoreTest, ShortLockOfAnotherProgramIsWaitedFor) {
    SqliteStore store(folder.store(), "");
    const SqliteDatabase other(folder.store().string(), SqliteDatabase::Access::ReadWriteCreate);
    other.execute("BEGIN IMMEDIATE");
    std::thread insert([&] { EXPECT_TRUE(store.insert(makeRecord("a@x"))); });
    other.execute("COMMIT");
    insert.join();
    EXPECT_THAT(emailsOf(store), ElementsAre("a@x"));
}

TEST_F(SqliteStoreTest, NoRoomIsReportedAndChangesNothing) {
    SqliteStore store(folder.store(), "");
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    Record large = makeRecord("b@x");
    large.file = std::string(1'000'000, 'x');
    // A limit of the process on file sizes is what a full disk looks like from here.
    struct rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, SIG_IGN);
    const struct rlimit small{400'000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const auto stored = store.insert(large);
    setrlimit(RLIMIT_FSIZE, &before);
    ASSERT_FALSE(stored);
    EXPECT_THAT(emailsOf(store), ElementsAre("a@x"));
    EXPECT_TRUE(store.insert(large));
    EXPECT_THAT(emailsOf(store), ElementsAre("a@x", "b@x"));
}

TEST_F(SqliteStoreTest, InsertedCandidateWaitsForItsVector) {
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.insert(makeRecord("a@x", {"Femenino", {"S"}, {"T"}, {"L"}})));
    ASSERT_TRUE(store.insert(makeRecord("b@x")));
    const auto first = *store.nextUnembedded(0);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->profession, "Profession of a@x");
    EXPECT_EQ(first->summarizedText, "Summary of a@x");
    EXPECT_EQ(first->cvData, (CVData{"Femenino", {"S"}, {"T"}, {"L"}}));
    const auto second = *store.nextUnembedded(first->id);
    EXPECT_EQ(second->profession, "Profession of b@x");
    EXPECT_EQ(*store.nextUnembedded(second->id), std::nullopt);
}

TEST_F(SqliteStoreTest, RanksByScoreAndBreaksTiesByInsertion) {
    SqliteStore store(folder.store(), "m");
    const std::vector<std::pair<std::string, std::vector<float>>> candidates{
        {"east", {1, 0}}, {"north", {0, 1}}, {"west", {-1, 0}}, {"north2", {0, 1}}, {"south", {0, -1}}, {"none", {}}};
    for (const auto& [email, vector] : candidates) {
        ASSERT_TRUE(store.insert(makeRecord(email)));
    }
    // In another order than the insertions, which alone must count.
    for (const std::size_t i : {4U, 3U, 0U, 2U, 1U}) {
        ASSERT_EQ(store.putVector(queuedId(store, candidates[i].first), candidates[i].second), true);
    }
    EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("east", "north", "north2", "south", "west"));
    const auto rows = rowsOf(store, similarTo({0, 0.5F}));
    EXPECT_EQ(rows[0].email, "north");
    EXPECT_EQ(rows[0].score, 75);
    EXPECT_EQ(rows[1].email, "north2");
    EXPECT_EQ(rows[2].email, "east");
    EXPECT_EQ(rows[2].score, 50);
    EXPECT_EQ(rows[3].email, "west");
    EXPECT_EQ(rows[4].score, 25);
}

TEST_F(SqliteStoreTest, ScoresAreClamped) {
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    ASSERT_TRUE(store.putVector(1, {1, 0}));
    EXPECT_EQ(rowsOf(store, similarTo({7, 0}))[0].score, 100);
    EXPECT_EQ(rowsOf(store, similarTo({-7, 0}))[0].score, 0);
}

TEST_F(SqliteStoreTest, ConditionsNarrowTheRanking) {
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.insert(makeRecord("a@x", {"Femenino", {}, {"A"}, {}})));
    ASSERT_TRUE(store.insert(makeRecord("b@x", {"Masculino", {}, {"A"}, {}})));
    ASSERT_TRUE(store.insert(makeRecord("c@x", {"Masculino", {}, {"A"}, {}}))); // has no vector
    ASSERT_TRUE(store.putVector(1, {1, 0}));
    ASSERT_TRUE(store.putVector(2, {0, 1}));
    EXPECT_THAT(emailsOf(store, similarTo({1, 0}, {{Trait::Gender, "Masculino"}})), ElementsAre("b@x"));
    EXPECT_THAT(emailsOf(store, similarTo({1, 0}, {{Trait::TechSkill, "A"}})), ElementsAre("a@x", "b@x"));
    EXPECT_THAT(emailsOf(store, similarTo({1, 0}, {{Trait::TechSkill, "B"}})), IsEmpty());
}

TEST_F(SqliteStoreTest, QueryVectorOfAnotherLengthNamesBoth) {
    SqliteStore store(folder.store(), "m");
    EXPECT_THAT(rowsOf(store, similarTo({1, 0, 0})), IsEmpty());
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    ASSERT_TRUE(store.putVector(1, {1, 0}));
    for (const std::vector<float>& query : {std::vector<float>{1, 0, 0}, std::vector<float>{}}) {
        const auto rows = store.run(similarTo(query, {{Trait::Gender, "Nobody"}}));
        ASSERT_FALSE(rows);
        EXPECT_EQ(rows.error().kind, StoreError::Kind::VectorLength);
        EXPECT_EQ(rows.error().message,
                  "the query vector has " + std::to_string(query.size()) + " numbers, the stored vectors have 2");
    }
}

TEST_F(SqliteStoreTest, NewVectorOfAnotherLengthIsRefused) {
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    ASSERT_TRUE(store.insert(makeRecord("b@x")));
    ASSERT_TRUE(store.putVector(1, {1, 0}));
    EXPECT_EQ(store.putVector(2, {1, 0, 0}).error().message, "the new vector has 3 numbers, the stored vectors have 2");
    EXPECT_EQ(queuedId(store, "b@x"), 2);
}

TEST_F(SqliteStoreTest, ReplacedAndDeletedRecordsLeaveTheRanking) {
    SqliteStore store(folder.store(), "m");
    for (const char* const email : {"a@x", "b@x", "c@x"}) {
        ASSERT_TRUE(store.insert(makeRecord(email)));
        ASSERT_TRUE(store.putVector(queuedId(store, email), {1, 0}));
    }
    ASSERT_TRUE(store.remove("a@x"));
    ASSERT_TRUE(store.insert(makeRecord("b@x")));
    EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("c@x"));
    EXPECT_EQ(store.putVector(2, {1, 0}), false) << "the replaced version";
    ASSERT_EQ(store.putVector(queuedId(store, "b@x"), {0, 1}), true);
    EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("c@x", "b@x"));
    EXPECT_EQ(value("SELECT count(*) FROM vector"), "2");
}

TEST_F(SqliteStoreTest, AnotherModelStartsAnewAndKeepsItsVectorsApart) {
    {
        SqliteStore store(folder.store(), "old");
        ASSERT_TRUE(store.insert(makeRecord("a@x")));
        ASSERT_TRUE(store.putVector(1, {1, 0}));
    }
    SqliteStore store(folder.store(), "new");
    EXPECT_THAT(rowsOf(store, similarTo({1, 0})), IsEmpty());
    ASSERT_EQ(queuedId(store, "a@x"), 1);
    ASSERT_TRUE(store.putVector(1, {0, 0, 1}));
    EXPECT_THAT(emailsOf(store, similarTo({0, 0, 1})), ElementsAre("a@x"));
    EXPECT_EQ(value("SELECT model FROM vector"), "new");
}

TEST_F(SqliteStoreTest, WithoutAModelASemanticPlanGivesNoRows) {
    {
        SqliteStore store(folder.store(), "m");
        ASSERT_TRUE(store.insert(makeRecord("a@x")));
        ASSERT_TRUE(store.putVector(1, {1, 0}));
    }
    {
        SqliteStore store(folder.store(), "");
        EXPECT_THAT(rowsOf(store, similarTo({1, 0})), IsEmpty());
        EXPECT_THAT(rowsOf(store, similarTo({1, 0, 0})), IsEmpty());
        ASSERT_TRUE(store.insert(makeRecord("b@x")));
    }
    SqliteStore store(folder.store(), "m");
    EXPECT_THAT(emailsOf(store, similarTo({1, 0})), ElementsAre("a@x"));
    EXPECT_EQ(queuedId(store, "b@x"), 2);
}

TEST_F(SqliteStoreTest, ReadersAndWritersTogetherSeeWholeRecords) {
    SqliteStore store(folder.store(), "m");
    std::atomic<bool> isDone = false;
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            while (!isDone) {
                for (const FoundRow& row : rowsOf(store, similarTo({1, 0}, {{Trait::Gender, "Femenino"}}))) {
                    EXPECT_EQ(row.name, "Name of " + row.email);
                    EXPECT_EQ(row.score, 100);
                }
                rowsOf(store);
            }
        });
    }
    for (int round = 0; round < 60; ++round) {
        const std::string email = std::to_string(round % 7);
        ASSERT_TRUE(store.insert(makeRecord(email)));
        ASSERT_TRUE(store.putVector(queuedId(store, email), {1, 0}));
        if (round % 3 == 0) {
            ASSERT_TRUE(store.remove(email));
        }
    }
    isDone = true;
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(value("PRAGMA integrity_check"), "ok");
}

TEST(DefaultStorePath, IsInTheUsersDataFolder) {
    const QByteArray data = qgetenv("XDG_DATA_HOME");
    const QByteArray home = qgetenv("HOME");
    qputenv("XDG_DATA_HOME", "/data");
    EXPECT_EQ(defaultStorePath(), "/data/dorvantel/records.sqlite");
    qputenv("XDG_DATA_HOME", "relative");
    qputenv("HOME", "/home/ana");
    EXPECT_EQ(defaultStorePath(), "/home/ana/.local/share/dorvantel/records.sqlite");
    qunsetenv("XDG_DATA_HOME");
    EXPECT_EQ(defaultStorePath(), "/home/ana/.local/share/dorvantel/records.sqlite");
    qputenv("HOME", "");
    EXPECT_EQ(defaultStorePath(), std::nullopt);
    qputenv("HOME", home);
    qputenv("XDG_DATA_HOME", data);
}
