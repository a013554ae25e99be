// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Sanitizers.h"
#include "tests/service/FakeModelServer.h"
#include "tests/service/RecordsProcess.h"
#include "tests/service/ServiceSupport.h"
#include "tests/service/Versions.h"
#include "tests/support/Wait.h"

#include <atomic>
#include <csignal>
#include <random>
#include <thread>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace dorvantel::test;
using namespace Qt::StringLiterals;
using nlohmann::json;

namespace {

// A process under a sanitizer takes many times as long to start.
constexpr int rounds = dorvantel::isSanitized ? 15 : 200;
constexpr int clients = 4;
constexpr unsigned keysOfClient = 12;

FakeModelServer::Answer embed(const std::string& request) {
    const std::vector<float> vector = Versions::vector(Versions::versionIn(request));
    return FakeModelServer::vector({vector.begin(), vector.end()});
}

/// One client, whose candidates no other client touches: what it was told and what it cannot know.
struct Client {
    PossibleVersions possible;
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
            if (choose() % 4 == 0) {
                client.possible.mayBecome(email, std::nullopt);
                const auto answer = http.Delete("/curriculums/" + email);
                if (!answer) {
                    return;
                }
                EXPECT_TRUE(answer->status == 204 || answer->status == 404) << answer->status;
                client.possible.became(email, std::nullopt);
            } else {
                const int version = nextVersion++;
                client.possible.mayBecome(email, version);
                const auto answer =
                    http.Post("/curriculums", insertBody(versions.record(email, version)), "application/json");
                if (!answer) {
                    return;
                }
                EXPECT_EQ(answer->status, 201);
                client.possible.became(email, version);
                client.acknowledged.emplace_back(email, version);
            }
            ++answers;
            answers.notify_one();
        }
    }

    /// Every candidate must be one that it may be.
    void settle(const RecordsProcess& process) {
        std::vector<std::map<std::string, int>> current(clients);
        const json list = json::parse(process.client().Get("/curriculums")->body)["response"];
        for (const json& record : list) {
            const std::string email = record["email"];
            const auto client = static_cast<std::size_t>(std::stoi(email.substr(std::string("client-").size())));
            current.at(client)[email] = std::stoi(record["name"].get<std::string>());
        }
        for (std::size_t client = 0; client < clients; ++client) {
            state[client].possible.expect(std::move(current[client]));
        }
    }

    StoreFolder folder;
    Versions versions{40'000};
    FakeModelServer models{embed};
    std::vector<Client> state = std::vector<Client>(clients);
    std::atomic<int> nextVersion = 1;
    std::atomic<int> answers = 0;
    std::minstd_rand random{20'261'121};
};

} // namespace

TEST_F(KilledProcess, LosesNothingThatItAcknowledged) {
    const QStringList arguments{u"--listen"_s,          u"127.0.0.1:0"_s,
                                u"--store"_s,           QString::fromStdString(folder.store().string()),
                                u"--model-server"_s,    QString::fromStdString(models.url()),
                                u"--embedding-model"_s, u"m"_s};
    std::size_t vectorsSeen = 0;
    for (int round = 0; round < rounds; ++round) {
        RecordsProcess process(arguments);
        ASSERT_TRUE(process.waitUntilReady());
        settle(process);
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
        threads.clear();
        vectorsSeen += versions.expectSound(folder.store());
        ASSERT_FALSE(HasFailure()) << "in round " << round;
    }
    EXPECT_GT(vectorsSeen, 0U) << "there was little to see";
    RecordsProcess process(arguments);
    ASSERT_TRUE(process.waitUntilReady());
    settle(process);
    EXPECT_TRUE(waitUntil([&process] {
        return json::parse(process.client().Get("/health")->body)["vectorsPending"] == 0;
    })) << "candidates without a vector";
    process.sendSignal(SIGTERM);
    ASSERT_EQ(process.exitCode(), 0);
    versions.expectSound(folder.store());
    for (const Client& client : state) {
        versions.expectKept(folder.store(), client.acknowledged);
    }
}
