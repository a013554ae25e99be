// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Sanitizers.h"
#include "service/Options.h"
#include "service/store/Schema.h"
#include "service/store/SqliteStore.h"
#include "tests/service/FakeModelServer.h"
#include "tests/service/RawClient.h"
#include "tests/service/RecordsProcess.h"
#include "tests/service/ServiceSupport.h"
#include "tests/support/Wait.h"

#include <csignal>
#include <fstream>
#include <future>
#include <latch>
#include <thread>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/resource.h>

using namespace dorvantel::service;
using namespace dorvantel::test;
using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

constexpr const char* jsonType = "application/json";

class ProcessTest : public testing::Test {
protected:
    QStringList arguments(const QStringList& more = {}) const {
        return QStringList{QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"), QStringLiteral("--store"),
                           QString::fromStdString(folder.store().string())} +
               more;
    }

    static int insert(const RecordsProcess& process, const Record& record) {
        const auto answer = process.client().Post("/curriculums", insertBody(record), jsonType);
        return answer ? answer->status : 0;
    }
    static std::vector<std::string> emails(const RecordsProcess& process) {
        std::vector<std::string> found;
        const json list = json::parse(process.client().Get("/curriculums")->body);
        for (const json& record : list["response"]) {
            found.push_back(record["email"]);
        }
        return found;
    }

    StoreFolder folder;
};

int code(ExitCode exitCode) {
    return static_cast<int>(exitCode);
}

} // namespace

TEST_F(ProcessTest, ReadyLineNamesTheUrlAndIsAllThatIsPrinted) {
    RecordsProcess process(arguments());
    ASSERT_TRUE(process.waitUntilReady());
    EXPECT_EQ(process.url(), "http://127.0.0.1:" + std::to_string(process.port()) + "/curriculums");
    EXPECT_EQ(insert(process, makeRecord("secret@x")), 201);
    EXPECT_THAT(emails(process), testing::ElementsAre("secret@x"));
    process.client().Get("/curriculums/secret@x/file");
    process.client().Post("/curriculums/search", "{\"sql\":\"secret\"}", jsonType);
    process.client().Post("/curriculums", "secret", jsonType);
    process.sendSignal(SIGTERM);
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_EQ(process.output(), "");
    EXPECT_EQ(process.errors(), "");
}

TEST_F(ProcessTest, EverythingIsThereAfterARestart) {
    Record record = makeRecord("a@x", {"Femenino", {}, {"Excel"}, {}});
    record.file = std::string("%PDF\0\xff", 6);
    {
        RecordsProcess process(arguments());
        ASSERT_TRUE(process.waitUntilReady());
        ASSERT_EQ(insert(process, record), 201);
        process.sendSignal(SIGTERM);
        ASSERT_EQ(process.exitCode(), 0);
    }
    RecordsProcess process(arguments());
    ASSERT_TRUE(process.waitUntilReady());
    EXPECT_THAT(emails(process), testing::ElementsAre("a@x"));
    EXPECT_EQ(process.client().Get("/curriculums/a@x/file")->body, "{\"file\":[37,80,68,70,0,255]}");
}

TEST_F(ProcessTest, BothEndSignalsCloseTheStoreInOrder) {
    for (const int signal : {SIGTERM, SIGINT}) {
        RecordsProcess process(arguments());
        ASSERT_TRUE(process.waitUntilReady());
        ASSERT_EQ(insert(process, makeRecord("a@x")), 201);
        EXPECT_TRUE(fs::exists(folder.store().string() + "-wal"));
        process.sendSignal(signal);
        EXPECT_EQ(process.exitCode(), code(ExitCode::Stopped));
        EXPECT_FALSE(fs::exists(folder.store().string() + "-wal"));
    }
}

TEST_F(ProcessTest, EndSignalFinishesWhatRuns) {
    RecordsProcess process(arguments());
    ASSERT_TRUE(process.waitUntilReady());
    for (int i = 0; i < 60; ++i) {
        Record record = makeRecord(std::to_string(i));
        record.summarizedText = std::string(100'000, 'x');
        ASSERT_EQ(insert(process, record), 201);
    }
    // More than the sockets' buffers hold, so that the answer still runs when the signal comes.
    bool isSignalled = false;
    std::string body;
    const auto answer = process.client().Get("/curriculums", [&](const char* data, std::size_t size) {
        if (!std::exchange(isSignalled, true)) {
            process.sendSignal(SIGTERM);
        }
        body.append(data, size);
        return true;
    });
    ASSERT_TRUE(answer) << to_string(answer.error());
    EXPECT_EQ(json::parse(body)["response"].size(), 60U);
    EXPECT_EQ(process.exitCode(), code(ExitCode::Stopped));
}

TEST_F(ProcessTest, SecondEndSignalCutsWhoStillReadsAndClosesTheStoreInOrder) {
    RecordsProcess process(arguments());
    ASSERT_TRUE(process.waitUntilReady());
    Record record = makeRecord("a@x");
    record.file = std::string(8'000'000, 'x');
    ASSERT_EQ(insert(process, record), 201);
    const RawClient slow(process.port());
    slow.send("GET /curriculums/a@x/file HTTP/1.1\r\nHost: localhost\r\n\r\n");
    ASSERT_TRUE(waitUntil([&slow] { return !slow.isSilent(); }));
    process.sendSignal(SIGTERM);
    ASSERT_TRUE(waitUntil([&process] { return process.client().Get("/health")->status == 503; }));
    const auto begin = std::chrono::steady_clock::now();
    process.sendSignal(SIGTERM);
    EXPECT_EQ(process.exitCode(), code(ExitCode::Stopped));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, HttpServer::Settings().stopPatience);
    EXPECT_FALSE(fs::exists(folder.store().string() + "-wal"));
    EXPECT_EQ(slow.receiveAll().find("]}"), std::string::npos) << "half an answer must not look whole";
}

TEST_F(ProcessTest, LowLimitOfOpenFilesMakesFewerConnectionsAndNoErrors) {
    constexpr std::size_t connections = 21;
    {
        SqliteStore store(folder.store(), "");
        for (int i = 0; i < 60; ++i) {
            Record record = makeRecord(std::to_string(i));
            record.summarizedText = std::string(100'000, 'x');
            ASSERT_TRUE(store.insert(record));
        }
    }
    RecordsProcess process(arguments(), [] {
        const rlimit few{128, 128};
        setrlimit(RLIMIT_NOFILE, &few);
    });
    ASSERT_TRUE(process.waitUntilReady());
    EXPECT_EQ(process.errors(), "dorvantel-records: the limit of open files leaves room for 21 connections at once\n");
    std::vector<RawClient> readers;
    for (std::size_t i = 0; i < connections; ++i) {
        readers.emplace_back(process.port());
        readers.back().send("GET /curriculums HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
    }
    // All answers are longer than what goes into the buffers, so all run by the time that each has begun.
    EXPECT_TRUE(waitUntil([&] { return std::ranges::none_of(readers, &RawClient::isSilent); }));
    EXPECT_EQ(RawClient(process.port()).receiveAll(), "") << "one more than there is room for";
    // All at once: the service waits only so long for a client that does not read.
    std::vector<std::future<std::string>> answers;
    for (const RawClient& reader : readers) {
        answers.push_back(std::async(std::launch::async, &RawClient::receiveAll, &reader));
    }
    for (std::future<std::string>& answer : answers) {
        EXPECT_THAT(answer.get(),
                    testing::AllOf(testing::StartsWith("HTTP/1.1 200 "), testing::EndsWith("\r\n0\r\n\r\n")));
    }
    EXPECT_EQ(process.errors(), "");
}

TEST_F(ProcessTest, SoftLimitOfOpenFilesIsRaised) {
    RecordsProcess process(arguments(), [] {
        rlimit limit{};
        getrlimit(RLIMIT_NOFILE, &limit);
        limit.rlim_cur = 32;
        setrlimit(RLIMIT_NOFILE, &limit);
    });
    ASSERT_TRUE(process.waitUntilReady());
    std::vector<RawClient> silent;
    for (int i = 0; i < 64; ++i) {
        silent.emplace_back(process.port());
    }
    EXPECT_EQ(insert(process, makeRecord("a@x")), 201);
}

TEST_F(ProcessTest, MemoryStaysBoundedWhateverManyClientsSendAndLeaveUnread) {
    if (dorvantel::isSanitized) {
        GTEST_SKIP() << "a sanitizer keeps what was freed, or notes of its own on all memory";
    }
    constexpr std::size_t mebibyte = std::size_t{1024} * 1024;
    constexpr int clients = 24;
    {
        SqliteStore store(folder.store(), "");
        Record record = makeRecord("a@x");
        record.file = std::string(16 * mebibyte, 'x');
        ASSERT_TRUE(store.insert(record));
    }
    RecordsProcess process(arguments());
    ASSERT_TRUE(process.waitUntilReady());
    std::vector<RawClient> readers;
    for (int i = 0; i < clients; ++i) {
        readers.emplace_back(process.port());
        readers.back().send("GET /curriculums/a@x/file HTTP/1.1\r\nHost: localhost\r\n\r\n");
    }
    EXPECT_TRUE(waitUntil([&] { return std::ranges::none_of(readers, &RawClient::isSilent); }));
    // The parser needs the most for the least that a number can take.
    std::string zeros = "{\"x\":[0";
    while (zeros.size() < 6 * mebibyte) {
        zeros += ",0";
    }
    zeros += "]}";
    std::vector<std::jthread> senders;
    for (int i = 0; i < clients; ++i) {
        senders.emplace_back([&] {
            const auto answer = process.client().Post("/curriculums", zeros, jsonType);
            EXPECT_TRUE(answer && answer->status == 422);
        });
    }
    senders.clear();
    // Without bounds it is 384 MiB for the readers, and up to 2 GiB for the senders.
    EXPECT_LT(process.mostMemory(), 400 * mebibyte);
}

TEST_F(ProcessTest, PortInUse) {
    RecordsProcess first(arguments());
    ASSERT_TRUE(first.waitUntilReady());
    const StoreFolder other;
    const std::string address = "127.0.0.1:" + std::to_string(first.port());
    RecordsProcess second({QStringLiteral("--listen"), QString::fromStdString(address), QStringLiteral("--store"),
                           QString::fromStdString(other.store().string())});
    EXPECT_EQ(second.exitCode(), code(ExitCode::AddressUnusable));
    EXPECT_EQ(second.errors(),
              "dorvantel-records: cannot listen on " + address + ": the port is in use by another program\n");
    EXPECT_FALSE(fs::exists(other.store())) << "its store is not touched";
}

TEST_F(ProcessTest, StoreInUse) {
    RecordsProcess first(arguments());
    ASSERT_TRUE(first.waitUntilReady());
    RecordsProcess second(arguments());
    EXPECT_EQ(second.exitCode(), code(ExitCode::StoreUnusable));
    EXPECT_EQ(second.errors(),
              "dorvantel-records: " + folder.store().string() + ": another dorvantel-records uses this store\n");
}

TEST_F(ProcessTest, StoreThatCannotBeWritten) {
    std::ofstream(folder.path() / "file").close();
    const std::string path = (folder.path() / "file" / "records.sqlite").string();
    RecordsProcess process({QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"), QStringLiteral("--store"),
                            QString::fromStdString(path)});
    EXPECT_EQ(process.exitCode(), code(ExitCode::StoreUnusable));
    EXPECT_THAT(process.errors(),
                testing::StartsWith("dorvantel-records: " + path + ".lock: the file cannot be written: "));
}

TEST_F(ProcessTest, StoreThatIsNoDatabase) {
    std::ofstream(folder.store()) << std::string(4'096, 'x');
    RecordsProcess process(arguments());
    EXPECT_EQ(process.exitCode(), code(ExitCode::StoreUnusable));
    EXPECT_EQ(process.errors(), "dorvantel-records: " + folder.store().string() + ": file is not a database\n");
}

TEST_F(ProcessTest, StoreOfANewerSchema) {
    {
        const SqliteStore store(folder.store(), "");
        SqliteDatabase(folder.store().string(), SqliteDatabase::Access::ReadWriteCreate)
            .execute("PRAGMA user_version = 99");
    }
    RecordsProcess process(arguments());
    EXPECT_EQ(process.exitCode(), code(ExitCode::StoreNewer));
    EXPECT_EQ(process.errors(), "dorvantel-records: " + folder.store().string() +
                                    ": the store has schema version 99, this program knows versions up to " +
                                    std::to_string(migrations().size()) + "; a newer program made it\n");
}

TEST_F(ProcessTest, BadArguments) {
    RecordsProcess process({QStringLiteral("--nothing")});
    EXPECT_EQ(process.exitCode(), code(ExitCode::BadArguments));
    EXPECT_EQ(process.errors(), "dorvantel-records: there is no option --nothing; --help shows all\n");
}

TEST_F(ProcessTest, HelpAndVersionArePrintedAndEndIt) {
    RecordsProcess help({QStringLiteral("--help")});
    EXPECT_EQ(help.exitCode(), 0);
    EXPECT_EQ(help.output(), helpText());
    RecordsProcess version({QStringLiteral("--version")});
    EXPECT_EQ(version.exitCode(), 0);
    EXPECT_THAT(version.output(), testing::MatchesRegex("dorvantel-records [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(ProcessTest, StoreIsInTheUsersDataFolderByDefault) {
    RecordsProcess process({QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0")});
    ASSERT_TRUE(process.waitUntilReady());
    EXPECT_TRUE(fs::exists(*defaultStorePath()));
    EXPECT_THAT(emails(process), IsEmpty());
}

TEST_F(ProcessTest, VectorsComeFromTheModelServerThatIsNamed) {
    const FakeModelServer server([](const std::string&) { return FakeModelServer::vector({0, 3}); });
    RecordsProcess process(arguments({QStringLiteral("--embedding-model"), QStringLiteral("m"),
                                      QStringLiteral("--model-server"), QString::fromStdString(server.url())}));
    ASSERT_TRUE(process.waitUntilReady());
    ASSERT_EQ(insert(process, makeRecord("a@x")), 201);
    const json search{{"sql", "select name,profession,email,summarizedText,invitationMail,jsonCVData,GREATEST(0, "
                              "LEAST(100, (dot_product(vector, JSON_ARRAY_PACK('[1.0,0.0]')) + 1) * 50)) AS score from "
                              "curriculums ORDER BY score DESC LIMIT 5"}};
    json result;
    ASSERT_TRUE(waitUntil([&] {
        result = json::parse(process.client().Post("/curriculums/search", search.dump(), jsonType)->body)["result"];
        return !result.empty();
    }));
    EXPECT_EQ(result[0]["email"], "a@x");
    EXPECT_EQ(result[0]["score"], 50);
}

TEST_F(ProcessTest, EndSignalDoesNotWaitForAModelServerThatStalls) {
    std::latch arrived(1);
    std::latch released(1);
    const FakeModelServer server([&](const std::string&) {
        arrived.count_down();
        released.wait();
        return FakeModelServer::vector({1});
    });
    RecordsProcess process(arguments({QStringLiteral("--embedding-model"), QStringLiteral("m"),
                                      QStringLiteral("--model-server"), QString::fromStdString(server.url())}));
    ASSERT_TRUE(process.waitUntilReady());
    ASSERT_EQ(insert(process, makeRecord("a@x")), 201);
    arrived.wait();
    process.sendSignal(SIGTERM);
    EXPECT_EQ(process.exitCode(), 0);
    released.count_down();
}
