// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/SqliteStoreFixture.h"

#include <thread>

using namespace dorvantel::service;
using namespace dorvantel::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

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
    for (unsigned i = 0; i < 300'000; ++i) {
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

TEST_F(SqliteStoreTest, BytesAreThoseOfTheFileAndOfItsLog) {
    SqliteStore store(folder.store(), "");
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    const auto log = fs::file_size(folder.store().string() + "-wal");
    ASSERT_GT(log, 0);
    EXPECT_EQ(store.status()->bytes, fs::file_size(folder.store()) + log);
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
