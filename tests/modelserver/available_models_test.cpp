// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/modelserver/OllamaServiceFixture.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"

namespace dorvantel::test {

using namespace Qt::StringLiterals;

struct FetchAvailableModels : OllamaServiceTest {
    QByteArray tags = R"({"models":[{"name":"a"},{"name":"b"},{"name":"c"}]})";
    ScriptedReply tagsReply = reply(tags);

    /// Answers the list with `tagsReply` and the question about model X with what `show` makes of X.
    ScriptedServer::Handler listing(std::function<ScriptedReply(const QByteArray&)> show) {
        return [this, show](const ScriptedRequest& request) {
            if (request.target.endsWith("/api/tags")) {
                return tagsReply;
            }
            return show(request.body.mid(9).chopped(2));
        };
    }
};

TEST_F(FetchAvailableModels, NothingIsKnownBeforeTheFirstLoad) {
    EXPECT_TRUE(service->availableModels().isEmpty());
    EXPECT_FALSE(service->isLoadingModels());
    EXPECT_EQ(service->modelError(), std::nullopt);
}

TEST_F(FetchAvailableModels, ListIsAPlainGetAndEachModelOneQuestion) {
    ScriptedServer server(listing([](const QByteArray&) { return reply(R"({"capabilities":["tools"]})"); }));
    load(server.url());
    ASSERT_EQ(server.requests().size(), 4);
    EXPECT_EQ(server.requests()[0].method, "GET");
    EXPECT_EQ(server.requests()[0].target, "/api/tags");
    EXPECT_TRUE(server.requests()[0].body.isEmpty());
    EXPECT_FALSE(server.requests()[0].headers.contains("content-type"));
    QStringList names = modelNames();
    names.sort();
    EXPECT_EQ(names, (QStringList{u"a"_s, u"b"_s, u"c"_s}));
    for (const OllamaModel& model : service->availableModels()) {
        EXPECT_EQ(model.capabilities, (ModelCapabilities{.supportsTools = true}));
    }
}

TEST_F(FetchAvailableModels, AddressWithATrailingSlashGivesADoubleSlash) {
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    load(server.url() + u'/');
    EXPECT_EQ(server.requests()[0].target, "//api/tags");
    EXPECT_EQ(server.requests()[1].target, "//api/show");
    EXPECT_EQ(service->availableModels().size(), 3);
}

TEST_F(FetchAvailableModels, NothingIsPublishedWhileQuestionsAreOpen) {
    ScriptedServer server(listing([](const QByteArray&) { return ScriptedReply{.body = "{}", .held = true}; }));
    settings.setOllamaURL(server.url());
    service->fetchAvailableModels();
    ASSERT_TRUE(waitUntil([&] { return server.heldCount() == 3; }));
    EXPECT_TRUE(service->isLoadingModels());
    EXPECT_TRUE(service->availableModels().isEmpty());
    while (server.release()) {
    }
    ASSERT_TRUE(waitUntil([&] { return !service->isLoadingModels(); }));
    EXPECT_EQ(service->availableModels().size(), 3);
}

TEST_F(FetchAvailableModels, QuestionThatFailsLeavesItsModelWithoutCapabilities) {
    for (const ScriptedReply& failure : {reply("", 500), reply("model not found", 404), way(Way::Cut)}) {
        ScriptedServer server(listing([&](const QByteArray& name) {
            return name == "b" ? failure : reply(R"({"capabilities":["embedding"]})");
        }));
        load(server.url());
        ASSERT_EQ(service->availableModels().size(), 3);
        for (const OllamaModel& model : service->availableModels()) {
            EXPECT_EQ(model.capabilities.supportsEmbedding, model.name != u"b") << qPrintable(model.name);
        }
        EXPECT_EQ(service->modelError(), std::nullopt);
    }
}

TEST_F(FetchAvailableModels, EmptyListIsASuccess) {
    tagsReply = reply(R"({"models":[]})");
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    load(server.url());
    EXPECT_TRUE(service->availableModels().isEmpty());
    EXPECT_EQ(service->modelError(), std::nullopt);
}

TEST_F(FetchAvailableModels, StatusIsNotLookedAt) {
    tagsReply = reply(tags, 503);
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    load(server.url());
    EXPECT_EQ(service->availableModels().size(), 3);
    EXPECT_EQ(service->modelError(), std::nullopt);
}

TEST_F(FetchAvailableModels, ErrorPageIsADecodingFailure) {
    for (const ScriptedReply& page : {reply("<html></html>", 502), reply("404 page not found", 404), reply("", 403)}) {
        tagsReply = page;
        ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
        load(server.url());
        EXPECT_EQ(service->modelError(), u"Failed to fetch models: "_s + formatText);
    }
    tagsReply = reply(R"({"error":"unauthorized"})", 401);
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    load(server.url());
    EXPECT_EQ(service->modelError(), u"Failed to fetch models: "_s + missingText);
}

TEST_F(FetchAvailableModels, TransportFailureIsToldWithItsDescription) {
    makeService(std::chrono::milliseconds(50));
    load(u"http://127.0.0.1:1"_s);
    EXPECT_EQ(service->modelError(), u"Failed to fetch models: Connection refused"_s);
    ScriptedServer cut(way(Way::Cut));
    load(cut.url());
    EXPECT_EQ(service->modelError(), u"Failed to fetch models: Connection closed"_s);
    ScriptedServer stalling(way(Way::Stall));
    load(stalling.url());
    EXPECT_EQ(service->modelError(), u"Failed to fetch models: Se ha agotado el tiempo de espera."_s);
}

TEST_F(FetchAvailableModels, AddressThatIsNoURLFailsAtOnce) {
    settings.setOllamaURL(u"http://no es una url"_s);
    service->fetchAvailableModels();
    EXPECT_EQ(service->modelError(), u"Invalid URL"_s);
    EXPECT_FALSE(service->isLoadingModels());
}

TEST_F(FetchAvailableModels, FailureKeepsTheListAndSuccessClearsTheError) {
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    load(server.url());
    EXPECT_EQ(service->availableModels().size(), 3);

    tagsReply = reply("<html></html>");
    load(server.url());
    EXPECT_EQ(service->availableModels().size(), 3);
    EXPECT_EQ(service->modelError(), u"Failed to fetch models: "_s + formatText);

    settings.setOllamaURL(u"http://no es una url"_s);
    service->fetchAvailableModels();
    EXPECT_EQ(service->availableModels().size(), 3);
    EXPECT_EQ(service->modelError(), u"Invalid URL"_s);

    tagsReply = reply(R"({"models":[{"name":"d"}]})");
    load(server.url());
    EXPECT_EQ(modelNames(), QStringList{u"d"_s});
    EXPECT_EQ(service->modelError(), std::nullopt);
}

TEST_F(FetchAvailableModels, ErrorStaysVisibleWhileTheNextLoadRuns) {
    settings.setOllamaURL(u"http://no es una url"_s);
    service->fetchAvailableModels();
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    settings.setOllamaURL(server.url());
    service->fetchAvailableModels();
    EXPECT_TRUE(service->isLoadingModels());
    EXPECT_EQ(service->modelError(), u"Invalid URL"_s);
    ASSERT_TRUE(waitUntil([this] { return !service->isLoadingModels(); }));
}

TEST_F(FetchAvailableModels, ChangesAreSignalledWhenAllOfThemAreMade) {
    ScriptedServer server(listing([](const QByteArray&) { return reply("{}"); }));
    settings.setOllamaURL(u"http://no es una url"_s);
    service->fetchAvailableModels();
    QStringList seen;
    const auto note = [&](const QString& signal) {
        seen += u"%1: %2 models, %3, %4"_s.arg(signal)
                    .arg(service->availableModels().size())
                    .arg(service->isLoadingModels() ? u"loading"_s : u"idle"_s,
                         service->modelError().value_or(u"no error"_s));
    };
    QObject::connect(service.get(), &OllamaService::availableModelsChanged, [&] { note(u"models"_s); });
    QObject::connect(service.get(), &OllamaService::isLoadingModelsChanged, [&] { note(u"loading"_s); });
    QObject::connect(service.get(), &OllamaService::modelErrorChanged, [&] { note(u"error"_s); });
    load(server.url());
    EXPECT_EQ(seen, (QStringList{u"loading: 0 models, loading, Invalid URL"_s, u"models: 3 models, idle, no error"_s,
                                 u"error: 3 models, idle, no error"_s, u"loading: 3 models, idle, no error"_s}));
}

TEST_F(FetchAvailableModels, LargeAnswerAboutAModelIsReadAndDropped) {
    QByteArray tokens = "\"t\"";
    tokens = (tokens + ',').repeated(50'000) + tokens;
    tagsReply = reply(R"({"models":[{"name":"a"}]})");
    ScriptedServer server(listing([&](const QByteArray&) {
        return reply(R"({"model_info":{"tokens":[)" + tokens + R"(]},"capabilities":["thinking"]})");
    }));
    load(server.url());
    ASSERT_EQ(service->availableModels().size(), 1);
    EXPECT_EQ(service->availableModels()[0].capabilities, (ModelCapabilities{.supportsThinking = true}));
}

namespace {

/// A session whose answers the test gives one by one, in the order it chooses.
class HeldSession final : public HttpSession {
public:
    void send(const HttpRequest& request, QObject*, std::function<void(HttpOutcome)> completion) override {
        requests.append(request);
        completions.append(std::move(completion));
    }
    void answer(qsizetype index, const QByteArray& body) { completions[index](HttpResponse{200, body}); }

    QList<HttpRequest> requests;
    QList<std::function<void(HttpOutcome)>> completions;
};

} // namespace

struct FetchAvailableModelsInOrder : testing::Test {
    QTemporaryDir folder;
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(u"Dorvantel.conf"_s), QSettings::IniFormat)};
    HeldSession session;
    OllamaService service{session, settings};

    void startLoad(const QByteArray& tags) {
        const qsizetype index = session.requests.size();
        service.fetchAvailableModels();
        session.answer(index, tags);
    }
    bool waitForRequests(qsizetype count) {
        return waitUntil([this, count] { return session.requests.size() == count; });
    }
    QStringList names() const {
        QStringList result;
        for (const OllamaModel& model : service.availableModels()) {
            result += model.name;
        }
        return result;
    }
};

TEST_F(FetchAvailableModelsInOrder, AnswersInReverseOrderGiveAReversedList) {
    startLoad(R"({"models":[{"name":"a"},{"name":"b"},{"name":"c"}]})");
    ASSERT_TRUE(waitForRequests(4));
    session.answer(3, "{}");
    session.answer(2, "{}");
    session.answer(1, "{}");
    ASSERT_TRUE(waitUntil([this] { return !service.isLoadingModels(); }));
    EXPECT_EQ(names(), (QStringList{u"c"_s, u"b"_s, u"a"_s}));
}

TEST_F(FetchAvailableModelsInOrder, NothingIsPublishedBeforeTheLastAnswer) {
    startLoad(R"({"models":[{"name":"a"},{"name":"b"}]})");
    ASSERT_TRUE(waitForRequests(3));
    session.answer(2, "{}");
    QCoreApplication::processEvents();
    EXPECT_EQ(names(), QStringList());
    EXPECT_TRUE(service.isLoadingModels());
    session.answer(1, "{}");
    ASSERT_TRUE(waitUntil([this] { return !service.isLoadingModels(); }));
    EXPECT_EQ(names(), (QStringList{u"b"_s, u"a"_s}));
}

TEST_F(FetchAvailableModelsInOrder, OfLoadsThatOverlapTheLastToEndWins) {
    startLoad(R"({"models":[{"name":"primero"}]})");
    ASSERT_TRUE(waitForRequests(2));
    startLoad(R"({"models":[{"name":"segundo"}]})");
    ASSERT_TRUE(waitForRequests(4));
    session.answer(3, "{}");
    ASSERT_TRUE(waitUntil([this] { return !service.isLoadingModels(); }));
    EXPECT_EQ(names(), QStringList{u"segundo"_s});
    session.answer(1, "{}");
    ASSERT_TRUE(waitUntil([this] { return names() == QStringList{u"primero"_s}; }));
    EXPECT_FALSE(service.isLoadingModels());
}

TEST_F(FetchAvailableModelsInOrder, EveryRequestWaitsAMinute) {
    startLoad(R"({"models":[{"name":"a"}]})");
    service.chat({}, u"m"_s, std::nullopt);
    service.generateEmbedding(u"a"_s, u"m"_s);
    ASSERT_TRUE(waitForRequests(4));
    for (const HttpRequest& request : session.requests) {
        EXPECT_EQ(request.timeout, std::chrono::seconds(60));
    }
}

} // namespace dorvantel::test
