// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/Schema.h"

#include "tests/service/ServiceSupport.h"

#include <array>

#include <gtest/gtest.h>

using namespace dorvantel::service;
using dorvantel::test::StoreFolder;

namespace {

SqliteDatabase openFile(const StoreFolder& folder) {
    return {folder.store().string(), SqliteDatabase::Access::ReadWriteCreate};
}

SchemaError::Kind refusalOf(const SqliteDatabase& database, std::span<const Migration> steps) {
    try {
        migrate(database, steps);
    } catch (const SchemaError& error) {
        return error.kind();
    }
    ADD_FAILURE() << "it was migrated";
    return {};
}

} // namespace

TEST(Migrate, EmptyFileGetsTheNewestVersion) {
    const StoreFolder folder;
    const auto database = openFile(folder);
    migrate(database, migrations());
    EXPECT_EQ(database.number("PRAGMA user_version"), std::ssize(migrations()));
    EXPECT_EQ(database.number("SELECT count(*) FROM record"), 0);
}

TEST(Migrate, IsNothingForTheNewestVersion) {
    const StoreFolder folder;
    const auto database = openFile(folder);
    migrate(database, migrations());
    const auto changes = database.number("PRAGMA schema_version");
    migrate(database, migrations());
    EXPECT_EQ(database.number("PRAGMA schema_version"), changes);
}

TEST(Migrate, GoesFromEachVersionOverTheStepsThatAreMissing) {
    const StoreFolder folder;
    const auto database = openFile(folder);
    const std::array<Migration, 3> steps{"CREATE TABLE a (x)", "INSERT INTO a VALUES (1)", "INSERT INTO a VALUES (2)"};
    migrate(database, std::span(steps).first(1));
    migrate(database, steps);
    migrate(database, steps);
    EXPECT_EQ(database.number("PRAGMA user_version"), 3);
    EXPECT_EQ(database.text("SELECT group_concat(x) FROM a"), "1,2");
}

TEST(Migrate, FailingStepLeavesTheOldVersionAsItWas) {
    const StoreFolder folder;
    const auto database = openFile(folder);
    const std::array<Migration, 3> steps{"CREATE TABLE a (x)", "INSERT INTO a VALUES (1)", "no statement"};
    migrate(database, std::span(steps).first(1));
    EXPECT_THROW(migrate(database, steps), SqliteError);
    EXPECT_EQ(database.number("PRAGMA user_version"), 1);
    EXPECT_EQ(database.number("SELECT count(*) FROM a"), 0);
}

TEST(Migrate, StepThatLeavesRowsWithoutWhatTheyReferToIsUndone) {
    const StoreFolder folder;
    const auto database = openFile(folder);
    const std::array<Migration, 2> steps{"CREATE TABLE a (x INTEGER PRIMARY KEY)",
                                         "CREATE TABLE b (x REFERENCES a (x)); INSERT INTO b VALUES (1);"};
    EXPECT_EQ(refusalOf(database, steps), SchemaError::Kind::Damaged);
    EXPECT_EQ(database.number("SELECT count(*) FROM sqlite_schema"), 0);
}

TEST(Migrate, NewerVersionIsRefusedAndSaysBoth) {
    const StoreFolder folder;
    const auto database = openFile(folder);
    migrate(database, migrations());
    database.execute("PRAGMA user_version = 99");
    try {
        migrate(database, migrations());
        FAIL();
    } catch (const SchemaError& error) {
        EXPECT_EQ(error.kind(), SchemaError::Kind::Newer);
        EXPECT_EQ(std::string(error.what()), "the store has schema version 99, this program knows versions up to " +
                                                 std::to_string(migrations().size()) + "; a newer program made it");
    }
    EXPECT_EQ(database.number("PRAGMA user_version"), 99);
}

TEST(Migrate, DatabaseOfAnotherProgramIsLeftAlone) {
    const StoreFolder folder;
    const auto database = openFile(folder);
    database.execute("CREATE TABLE other (x)");
    EXPECT_EQ(refusalOf(database, migrations()), SchemaError::Kind::Foreign);
    database.execute("PRAGMA user_version = 1");
    EXPECT_EQ(refusalOf(database, migrations()), SchemaError::Kind::Foreign);
    EXPECT_EQ(database.number("SELECT count(*) FROM sqlite_schema"), 1);
}

TEST(Migrate, ImpossibleVersionIsDamage) {
    const StoreFolder folder;
    const auto database = openFile(folder);
    migrate(database, migrations());
    database.execute("PRAGMA user_version = -1");
    EXPECT_EQ(refusalOf(database, migrations()), SchemaError::Kind::Damaged);
}
