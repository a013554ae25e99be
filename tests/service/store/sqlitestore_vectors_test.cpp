// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Sanitizers.h"
#include "tests/service/FullDisk.h"
#include "tests/service/SqliteStoreFixture.h"

#include <cstdlib>
#include <fstream>
#include <memory>

#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace dorvantel::service;
using namespace dorvantel::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// While it lives, the process gets no more than `bytes` of memory beside what it has.
class LittleMemory {
public:
    explicit LittleMemory(std::size_t bytes) {
        malloc_trim(0); // what was freed before is not beside it
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        getrlimit(RLIMIT_AS, &m_before);
        const rlimit limit{.rlim_cur = pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) + bytes,
                           .rlim_max = m_before.rlim_max};
        setrlimit(RLIMIT_AS, &limit);
    }
    LittleMemory(const LittleMemory&) = delete;
    LittleMemory& operator=(const LittleMemory&) = delete;
    ~LittleMemory() { setrlimit(RLIMIT_AS, &m_before); }

private:
    rlimit m_before{};
};

std::vector<float> axis(std::size_t dimension, std::size_t direction) {
    std::vector<float> vector(dimension);
    vector[direction] = 1;
    return vector;
}

} // namespace

TEST_F(SqliteStoreTest, VectorThatTheMemoryDoesNotHoldIsNotStoredEither) {
    if (dorvantel::isSanitized) {
        GTEST_SKIP() << "a sanitizer takes its memory beforehand";
    }
    constexpr std::size_t dimension = 4'096; // its first row takes 40 MB
    SqliteStore store(folder.store(), "m");
    ASSERT_TRUE(store.insert(makeRecord("a@x")));
    const std::int64_t id = queuedId(store, "a@x");
    {
        const LittleMemory memory(std::size_t{16} << 20);
        const std::unique_ptr<void, decltype(&std::free)> possible(std::malloc(std::size_t{32} << 20), std::free);
        if (possible) {
            GTEST_SKIP() << "this process has freed enough before";
        }
        EXPECT_THROW((void)store.putVector(id, axis(dimension, 0)), std::bad_alloc);
    }
    EXPECT_EQ(value("SELECT count(*) FROM vector"), "0");
    EXPECT_EQ(store.status()->vectorsPending, 1);
    EXPECT_THAT(emailsOf(store, similarTo(axis(dimension, 0))), IsEmpty());
    EXPECT_EQ(store.putVector(id, axis(2, 0)), true) << "even of another length";
    EXPECT_THAT(emailsOf(store, similarTo(axis(2, 0))), ElementsAre("a@x"));
}

TEST_F(SqliteStoreTest, VectorThatTheDiskDoesNotHoldIsNotRankedEither) {
    SqliteStore store(folder.store(), "m");
    for (const char* const email : {"a@x", "b@x"}) {
        ASSERT_TRUE(store.insert(makeRecord(email)));
    }
    const std::int64_t first = queuedId(store, "a@x");
    const std::int64_t second = queuedId(store, "b@x");
    ASSERT_EQ(store.putVector(first, {1, 0}), true);
    {
        const FullDisk disk;
        EXPECT_EQ(store.putVector(first, {0, 1}).error().kind, StoreError::Kind::Full);
        EXPECT_EQ(store.putVector(second, {0, 1}).error().kind, StoreError::Kind::Full);
    }
    const auto rows = rowsOf(store, similarTo({1, 0}));
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].email, "a@x");
    EXPECT_EQ(rows[0].score, 100);
    EXPECT_EQ(store.status()->vectorsPending, 1);
    ASSERT_EQ(store.putVector(second, {0, 1}), true);
    EXPECT_THAT(emailsOf(store, similarTo({0, 1})), ElementsAre("b@x", "a@x"));
}
