// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Sanitizers.h"
#include "service/Sqlite.h"
#include "tests/service/RecordsProcess.h"
#include "tests/service/ServiceSupport.h"

#include <atomic>
#include <csignal>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <thread>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace dorvantel::service;
using namespace dorvantel::test;
using namespace Qt::StringLiterals;
using nlohmann::json;

namespace {

// A process under a sanitizer takes many times as long to start.
constexpr int rounds = dorvantel::isSanitized ? 15 : 200;
constexpr int clients = 4;
constexpr unsigned keysOfClient = 3;

/// The PDF of a version, which its number determines: from 0 to 40 KB that no compression or repetition makes alike.
std::string pdfOf(int version) {
    std::minstd_rand random(static_cast<unsigned>(version) + 1);
    std::string bytes(random() % 40'000, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(random());
    }
    return bytes;
}

/// What may be current under an e-mail: a version, or none. More than one where an answer was cut off.
using Possible = std::set<std::optional<int>>;

/// One client's candidates, which no other client touches: what it was told and what it cannot know.
struct Client {
    std::map<std::string, Possible> possible;
    std::vector<std::pair<std::string, int>> acknowledged; ///< e-mail and version of every insert answered with 201
};

class KilledProcess : public testing::Test {
protected:
    /// Sends inserts and deletes until the process does not answer any more.
    void run(int number, int port, unsigned seed) {
        std::minstd_rand choose(seed);
        httplib::Client http("127.0.0.1", port);
        http.set_keep_alive(true);
        http.set_tcp_nodelay(true);
        Client& client = state[static_cast<std::size_t>(number)];
        for (;;) {
            const std::string email =
                "client-" + std::to_string(number) + "-" + std::to_string(choose() % keysOfClient);
            Possible& possible = client.possible.try_emplace(email, Possible{std::nullopt}).first->second;
            if (choose() % 4 == 0) {
                possible.insert(std::nullopt);
                const auto answer = http.Delete("/curriculums/" + email);
                if (!answer) {
                    return;
                }
                EXPECT_TRUE(answer->status == 204 || answer->status == 404) << answer->status;
                possible = {std::nullopt};
            } else {
                const int version = nextVersion++;
                Record record = makeRecord(email, {"Femenino", {}, {"Excel"}, {}});
                record.name = std::to_string(version);
                record.file = pdfOf(version);
                possible.insert(version);
                const auto answer = http.Post("/curriculums", insertBody(record), "application/json");
                if (!answer) {
                    return;
                }
                EXPECT_EQ(answer->status, 201);
                possible = {version};
                client.acknowledged.emplace_back(email, version);
            }
            ++answers;
            answers.notify_one();
        }
    }

    /// Every candidate must be one that it may be; from now on it is known which.
    void settle(const RecordsProcess& process) {
        std::map<std::string, int> current;
        const json list = json::parse(process.client().Get("/curriculums")->body)["response"];
        for (const json& record : list) {
            current[record["email"]] = std::stoi(record["name"].get<std::string>());
        }
        for (Client& client : state) {
            for (auto& [email, possible] : client.possible) {
                const auto found = current.find(email);
                const auto version = found == current.end() ? std::nullopt : std::optional(found->second);
                ASSERT_TRUE(possible.contains(version)) << email << " is " << version.value_or(0);
                possible = {version};
                current.erase(email);
            }
        }
        EXPECT_TRUE(current.empty()) << "candidates that nobody inserted";
    }

    /// Every version that was acknowledged is current or in the history, with its PDF.
    void expectEveryVersion() const {
        const SqliteDatabase database(folder.store().string(), SqliteDatabase::Access::ReadOnly);
        SqliteStatement find(database, "SELECT bytes FROM (SELECT id, email, name FROM record UNION ALL "
                                       "SELECT id, email, name FROM history) JOIN pdf ON record = id "
                                       "WHERE email = ? AND name = ?");
        for (const Client& client : state) {
            for (const auto& [email, version] : client.acknowledged) {
                const std::string name = std::to_string(version);
                find.bind(0, std::string_view(email));
                find.bind(1, std::string_view(name));
                ASSERT_TRUE(find.step()) << email << " " << version;
                ASSERT_TRUE(find.blob(0) == pdfOf(version)) << email << " " << version;
                find.reset();
            }
        }
        EXPECT_EQ(database.text("PRAGMA integrity_check"), "ok");
        EXPECT_EQ(database.number("SELECT count(*) FROM pragma_foreign_key_check"), 0);
    }

    StoreFolder folder;
    std::vector<Client> state = std::vector<Client>(clients);
    std::atomic<int> nextVersion = 1;
    std::atomic<int> answers = 0;
    std::minstd_rand random{20'261'121};
};

} // namespace

TEST_F(KilledProcess, LosesNothingThatItAcknowledged) {
    const QStringList arguments{u"--listen"_s, u"127.0.0.1:0"_s, u"--store"_s,
                                QString::fromStdString(folder.store().string())};
    for (int round = 0; round < rounds; ++round) {
        RecordsProcess process(arguments);
        ASSERT_TRUE(process.waitUntilReady());
        settle(process);
        ASSERT_FALSE(HasFatalFailure()) << "in round " << round;
        const int end = answers + 1 + static_cast<int>(random() % 30);
        std::vector<std::jthread> threads;
        for (int client = 0; client < clients; ++client) {
            threads.emplace_back([this, client, port = process.port(), seed = random()] {
                run(client, port, static_cast<unsigned>(seed));
            });
        }
        for (int now = answers; now < end; now = answers) {
            answers.wait(now);
        }
        process.sendSignal(SIGKILL);
        EXPECT_EQ(process.exitCode(), -1);
    }
    RecordsProcess process(arguments);
    ASSERT_TRUE(process.waitUntilReady());
    settle(process);
    process.sendSignal(SIGTERM);
    ASSERT_EQ(process.exitCode(), 0);
    expectEveryVersion();
}
