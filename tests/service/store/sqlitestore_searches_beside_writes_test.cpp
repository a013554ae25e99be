// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/SqliteStoreFixture.h"

#include <atomic>
#include <random>
#include <set>
#include <thread>

using namespace dorvantel::service;
using namespace dorvantel::test;

namespace {

constexpr unsigned candidates = 40;
constexpr std::size_t dimension = 70;

/// The vector of number `seed`, always the same.
std::vector<float> vectorOf(unsigned seed) {
    std::mt19937 random(seed);
    std::vector<float> vector(dimension);
    std::ranges::generate(vector, [&random] { return static_cast<float>(random() % 2'001) / 8'000 - 0.125F; });
    return vector;
}

std::string emailOf(unsigned number) {
    return std::to_string(number) + "@x";
}

} // namespace

TEST_F(SqliteStoreTest, SearchesStayExactWhileVectorsComeAndGo) {
    SqliteStore store(folder.store(), "m");
    const auto embedAll = [&store] {
        for (std::int64_t id = 0; const auto waiting = *store.nextUnembedded(id);) {
            id = *waiting;
            const std::string email = (*store.unembedded(id))->email;
            EXPECT_TRUE(store.putVector(id, vectorOf(static_cast<unsigned>(std::stoul(email)))));
        }
    };
    for (unsigned i = 0; i < candidates; ++i) {
        ASSERT_TRUE(store.insert(makeRecord(emailOf(i))));
    }
    embedAll();

    std::atomic<bool> isWriting = true;
    std::atomic<int> searches = 0;
    const auto search = [&](unsigned seed) {
        while (isWriting) {
            const std::vector<float> query = vectorOf(seed++);
            std::set<std::string> seen;
            float last = 100;
            const auto rows = rowsOf(store, similarTo(query));
            EXPECT_EQ(rows.size(), 5U);
            for (const FoundRow& row : rows) {
                const auto own = vectorOf(static_cast<unsigned>(std::stoul(row.email)));
                EXPECT_EQ(row.score, scoreOf(dotProduct(own, query))) << row.email;
                EXPECT_LE(row.score, last);
                EXPECT_TRUE(seen.insert(row.email).second) << row.email;
                last = row.score;
            }
            ++searches;
        }
    };
    {
        const std::jthread first(search, 1'000);
        const std::jthread second(search, 2'000'000);
        std::mt19937 random(7);
        for (int round = 0; round < 60 || searches < 50; ++round) {
            const unsigned number = static_cast<unsigned>(random()) % candidates;
            if (round % 3 == 0) {
                EXPECT_TRUE(store.remove(emailOf(number)));
            }
            EXPECT_TRUE(store.insert(makeRecord(emailOf(number))));
            embedAll();
        }
        isWriting = false;
    }
    EXPECT_EQ(rowsOf(store, similarTo(vectorOf(1))).size(), 5U);
}
