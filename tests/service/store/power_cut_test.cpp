// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Sanitizers.h"
#include "tests/service/RecordedDisk.h"
#include "tests/service/ServiceSupport.h"
#include "tests/service/Versions.h"

#include "service/store/SqliteStore.h"

#include <algorithm>
#include <atomic>
#include <fstream>
#include <limits>
#include <thread>

#include <gmock/gmock.h>

using namespace dorvantel::service;
using namespace dorvantel::test;

namespace {

constexpr int cuts = dorvantel::isSanitized ? 40 : 200;
constexpr int lives = 3; ///< of the store, each closed in order
constexpr int clients = 3;
constexpr int changesInALife = 25; ///< of each client
constexpr unsigned keysOfClient = 5;

/// What a client asked the store for, and between which steps of the disk the store did it.
struct Change {
    std::string email;
    std::optional<int> version = {}; ///< none: deleted
    std::size_t begin = 0;
    std::size_t end = 0;
};

class PowerCut : public testing::Test {
protected:
    /// Fills the store from several threads, so that commits are shared, and gives it vectors meanwhile.
    void use(const std::filesystem::path& path, const RecordedDisk& disk) {
        SqliteStore store(path, "m");
        std::atomic<int> running = clients;
        std::vector<std::jthread> threads;
        for (std::size_t client = 0; client < clients; ++client) {
            threads.emplace_back([&, client, choose = std::minstd_rand(random())]() mutable {
                for (int i = 0; i < changesInALife; ++i) {
                    change(store, disk, client, choose);
                }
                --running;
            });
        }
        for (std::int64_t last = 0; running > 0;) {
            const auto waiting = *store.nextUnembedded(last);
            last = waiting.value_or(0);
            if (const auto candidate = *store.unembedded(last)) {
                ASSERT_TRUE(store.putVector(last, Versions::vector(Versions::versionIn(candidate->profession))));
            }
        }
    }

    void change(SqliteStore& store, const RecordedDisk& disk, std::size_t client, std::minstd_rand& choose) {
        Change change{.email = std::to_string(client) + "-" + std::to_string(choose() % keysOfClient)};
        if (choose() % 5 != 0) {
            change.version = nextVersion++;
        }
        const Record record = versions.record(change.email, change.version.value_or(0));
        change.begin = disk.stepCount();
        if (change.version) {
            EXPECT_TRUE(store.insert(record));
        } else {
            EXPECT_TRUE(store.remove(change.email));
        }
        change.end = disk.stepCount();
        changes[client].push_back(std::move(change));
    }

    /// The store after a cut behind so many steps has all that was done by then, whole, and works.
    void expectNothingLost(const std::filesystem::path& path, std::size_t steps) {
        PossibleVersions possible;
        std::vector<std::pair<std::string, int>> acknowledged;
        for (const std::vector<Change>& ofClient : changes) {
            for (const Change& change : ofClient) {
                if (change.end <= steps) {
                    possible.became(change.email, change.version);
                    if (change.version) {
                        acknowledged.emplace_back(change.email, *change.version);
                    }
                } else if (change.begin < steps) {
                    possible.mayBecome(change.email, change.version);
                }
            }
        }
        {
            SqliteStore store(path, "m");
            std::map<std::string, int> current;
            for (const FoundRow& row : rowsOf(store)) {
                current[row.email] = std::stoi(row.name);
            }
            possible.expect(current);
            EXPECT_TRUE(store.insert(versions.record("after the cut", 1'000'000)));
        }
        versions.expectSound(path);
        acknowledged.emplace_back("after the cut", 1'000'000);
        versions.expectKept(path, acknowledged);
    }

    /// Anywhere, and as often around the few steps that make others certain.
    std::vector<std::size_t> placesForCuts(const std::vector<DiskStep>& steps) {
        std::vector<std::size_t> syncs;
        for (std::size_t i = 0; i < steps.size(); ++i) {
            if (std::holds_alternative<DiskStep::Synced>(steps[i].what)) {
                syncs.push_back(i);
            }
        }
        std::vector<std::size_t> places;
        for (int i = 0; i < cuts; i += 2) {
            places.push_back(random() % (steps.size() + 1));
            places.push_back(std::min(syncs[random() % syncs.size()] + random() % 4, steps.size()));
        }
        std::ranges::sort(places);
        return places;
    }

    Versions versions{150'000};
    std::minstd_rand random{20'261'121};
    std::atomic<int> nextVersion = 1;
    std::vector<std::vector<Change>> changes = std::vector<std::vector<Change>>(clients);
};

} // namespace

TEST_F(PowerCut, TakesNothingThatWasAcknowledgedAndLeavesNothingHalf) {
    RecordedDisk disk;
    const StoreFolder folder;
    for (int life = 0; life < lives; ++life) {
        use(folder.store(), disk);
    }
    const std::vector<DiskStep> steps = disk.end();
    const auto places = placesForCuts(steps);
    DiskBeforeCut before;
    std::size_t done = 0;
    for (const std::size_t place : places) {
        for (; done < place; ++done) {
            before.apply(steps[done]);
        }
        const StoreFolder after;
        before.cut(after.path(), random);
        expectNothingLost(after.store(), place);
        ASSERT_FALSE(HasFailure()) << "cut behind step " << place << " of " << steps.size();
    }
}
