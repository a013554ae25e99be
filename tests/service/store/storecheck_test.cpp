// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/store/StoreCheck.h"

#include "service/store/Schema.h"
#include "service/store/StoreFile.h"
#include "tests/service/MadeStore.h"

#include <fstream>

using namespace dorvantel::service;
using namespace dorvantel::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

class StoreCheck : public MadeStoreTest {
protected:
    std::vector<std::string> problems() const { return report().problems; }
    StoreReport report() const { return checkStore(openForReading(folder.store().string())); }
};

} // namespace

TEST_F(StoreCheck, SoundStoreIsCounted) {
    const StoreReport found = report();
    EXPECT_THAT(found.problems, IsEmpty());
    EXPECT_EQ(found.version, std::ssize(migrations()));
    EXPECT_EQ(found.candidates, 2);
    EXPECT_EQ(found.earlier, 3);
    EXPECT_EQ(found.pdfs, 4);
    EXPECT_EQ(found.vectors, 2);
}

TEST_F(StoreCheck, WorksWhileAServiceRuns) {
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.insert(makeRecord("new@x")));
    EXPECT_EQ(report().candidates, 3);
    EXPECT_THAT(problems(), IsEmpty());
}

TEST_F(StoreCheck, DamagedFileIsFound) {
    std::fstream file(folder.store(), std::ios::in | std::ios::out | std::ios::binary);
    const auto size = static_cast<std::streamoff>(std::filesystem::file_size(folder.store()));
    for (std::streamoff page = 2 * 4'096; page < size; page += 4'096) {
        file.seekp(page);
        file << std::string(16, '\x7f');
    }
    file.close();
    EXPECT_THAT(problems(), testing::Contains(StartsWith("the file is damaged: ")));
}

TEST_F(StoreCheck, CVDataThatCannotBeReadIsFoundInTheHistoryToo) {
    change("UPDATE record SET cv_json = '{\"gender\":\"secret\"' WHERE email = 'bea@x'; "
           "UPDATE history SET cv_json = 'secret' WHERE email = 'carla@x'");
    EXPECT_THAT(problems(), testing::UnorderedElementsAre(
                                "the CV data of version 5 cannot be read: it is not the text of a JSON object",
                                "the CV data of version 2 cannot be read: it is not the text of a JSON object"));
}

TEST_F(StoreCheck, SearchTermsThatAreMissingOrWrongAreFound) {
    const std::string problem = "the search terms of version 4 are not those of its CV data";
    change("DELETE FROM trait WHERE record = 4 AND value = 'Excel'");
    EXPECT_THAT(problems(), ElementsAre(problem));
    change("INSERT INTO trait VALUES (1, 'Excel', 4), (2, 'Excel', 4)");
    EXPECT_THAT(problems(), ElementsAre(problem));
    change("DELETE FROM trait WHERE record = 4 AND kind = 2 AND value = 'Excel'");
    EXPECT_THAT(problems(), IsEmpty());
}

TEST_F(StoreCheck, RepeatedAndUnusualTermsAreInOrder) {
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.insert(makeRecord("new@x", {"", {"a", "a"}, {std::string("nul\0nul", 7), ""}, {"\"'\n"}})));
    EXPECT_THAT(problems(), IsEmpty());
}

TEST_F(StoreCheck, CandidateThatNeitherHasAVectorNorWaitsForOneIsFound) {
    change("DELETE FROM vector WHERE record = 4");
    EXPECT_THAT(problems(), ElementsAre("1 candidates neither have a vector nor wait for one"));
    change("INSERT INTO embedding_queue VALUES (4)");
    EXPECT_THAT(problems(), IsEmpty());
}

TEST_F(StoreCheck, VectorsOfAnotherShapeAreFound) {
    change("UPDATE vector SET floats = x'0000803F0000' WHERE record = 5");
    EXPECT_THAT(problems(), ElementsAre("the vector of version 5 has 6 bytes, the first of its model has 8"));
    change("UPDATE vector SET floats = x'0000803F0000803F' WHERE record = 5");
    EXPECT_THAT(problems(), ElementsAre("the vector of version 5 has not the length one"));
    change("UPDATE vector SET floats = x'0000C07F00000000' WHERE record = 5");
    EXPECT_THAT(problems(), ElementsAre("the vector of version 5 has not the length one"));
    change("UPDATE vector SET floats = x'' WHERE record = 4");
    EXPECT_THAT(problems(), testing::Contains("the vector of version 4 has 0 bytes, the first of its model has 0"));
}

TEST_F(StoreCheck, VectorsOfAnotherModelMayHaveAnotherShape) {
    change("UPDATE vector SET floats = x'0000803F', model = 'other' WHERE record = 5");
    EXPECT_THAT(problems(), IsEmpty());
}

TEST_F(StoreCheck, RowsWithoutWhatTheyReferToAreFound) {
    change("PRAGMA foreign_keys = OFF; INSERT INTO trait VALUES (0, 'x', 99); INSERT INTO pdf VALUES (98, x'00')");
    EXPECT_THAT(problems(), ElementsAre("1 rows refer to missing ones", "1 PDFs belong to no candidate"));
}

TEST_F(StoreCheck, WhatIsNoStoreIsRefused) {
    EXPECT_THROW(openForReading((folder.path() / "none").string()), StoreFileError);
    change("PRAGMA application_id = 1");
    EXPECT_THROW(openForReading(folder.store().string()), SchemaError);
    std::ofstream(folder.path() / "text") << std::string(4'096, 'x');
    EXPECT_THROW(openForReading((folder.path() / "text").string()), SqliteError);
}
