// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/AppSettings.h"
#include "modelserver/OllamaService.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Print.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using test::CapturedOutput;
using test::ScriptedReply;
using test::ScriptedRequest;
using test::ScriptedServer;
using test::waitUntil;

struct Recorded {
    QString file;
    QString endpoint;
    int status = 0;
    QByteArray body;
    QByteArray wireBody; ///< as it travelled, without the white space for readers; empty when there is none
};

/// What model servers of several versions really answered, listed in MANIFEST.tsv.
class RecordedServer : public testing::Test {
protected:
    void SetUp() override {
        const QString data = qEnvironmentVariable("DORVANTEL_TEST_DATA");
        if (data.isEmpty()) {
            GTEST_SKIP() << "DORVANTEL_TEST_DATA names no folder of recorded answers";
        }
        m_folder = QDir(data + u"/ollama"_s);
        const QList<QByteArray> rows = bytesOf(u"MANIFEST.tsv"_s).trimmed().split('\n').mid(1);
        for (const QByteArray& row : rows) {
            const QList<QByteArray> cells = row.split('\t');
            const QString file = QString::fromUtf8(cells[0]);
            const QString wire = u"wire/"_s + file;
            m_recorded.append({file, QString::fromUtf8(cells[1]), cells[2].toInt(), bytesOf(file),
                               m_folder.exists(wire) ? bytesOf(wire) : QByteArray()});
        }
        ASSERT_GT(m_recorded.size(), 50);
    }

    QByteArray bytesOf(const QString& name) const {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
        return file.readAll();
    }

    QList<Recorded> successes(const QString& prefix) const {
        QList<Recorded> found;
        for (const Recorded& recorded : m_recorded) {
            if (recorded.status == 200 && recorded.file.startsWith(prefix)) {
                found += recorded;
            }
        }
        EXPECT_GT(found.size(), 2);
        return found;
    }

    /// Every answer of the kind decodes, and its two forms to the same record.
    template <typename Record>
    void expectDecoding(const QString& prefix, Decoded<Record> (*decode)(const QByteArray&),
                        const QString& except = {}) const {
        for (const Recorded& recorded : successes(prefix)) {
            if (recorded.file != except) {
                const Decoded<Record> record = decode(recorded.body);
                EXPECT_TRUE(record) << qPrintable(recorded.file) << ": " << qPrintable(debugText(record.error()));
                EXPECT_TRUE(recorded.wireBody.isEmpty() || decode(recorded.wireBody) == record)
                    << qPrintable(recorded.file);
            }
        }
    }

    QDir m_folder;
    QList<Recorded> m_recorded;
    QTemporaryDir m_home;
    AppSettings m_settings{std::make_unique<QSettings>(m_home.filePath(u"a.conf"_s), QSettings::IniFormat)};
    NetworkHttpSession m_session;
    OllamaService m_service{m_session, m_settings};
};

TEST_F(RecordedServer, EveryListOfModelsDecodes) {
    expectDecoding(u"tags"_s, decodeModelsResponse);
}

TEST_F(RecordedServer, EveryAnswerAboutAModelDecodes) {
    expectDecoding(u"show"_s, decodeShowResponse);
}

TEST_F(RecordedServer, EveryChatDecodes) {
    expectDecoding(u"chat"_s, decodeChatResponse);
}

TEST_F(RecordedServer, EveryEmbeddingDecodesButTheOneThatIsNull) {
    expectDecoding(u"embed"_s, decodeEmbeddingResponse, u"embed-null.json"_s);
    const auto null = decodeEmbeddingResponse(bytesOf(u"embed-null.json"_s));
    ASSERT_FALSE(null);
    EXPECT_EQ(null.error().kind, DecodeError::Kind::ValueNotFound);
    EXPECT_EQ(null.error().path, (QStringList{u"embeddings"_s, u"Index 0"_s}));
}

TEST_F(RecordedServer, ChatsEndInTheirTextOrAsEmpty) {
    m_settings.setSelectedLLMModel(u"m"_s);
    for (const Recorded& recorded : successes(u"chat"_s)) {
        ScriptedServer server(ScriptedReply{.body = recorded.body});
        m_settings.setOllamaURL(server.url());
        const QFuture future = m_service.chat({}, std::nullopt, std::nullopt);
        ASSERT_TRUE(waitUntil([&] { return future.isFinished(); }));
        const QString content = decodeChatResponse(recorded.body)->message.content;
        const ModelResult<QString> expected =
            content.isEmpty() ? ModelResult<QString>(std::unexpected(OllamaError::emptyResponse())) : content;
        EXPECT_EQ(future.result(), expected) << qPrintable(recorded.file);
    }
}

TEST_F(RecordedServer, EmptyChatsAreTheKnownOnes) {
    QStringList empty;
    for (const Recorded& recorded : successes(u"chat"_s)) {
        if (decodeChatResponse(recorded.body)->message.content.isEmpty()) {
            empty += recorded.file;
        }
    }
    empty.sort();
    EXPECT_EQ(empty, (QStringList{u"chat-empty-stop.json"_s, u"chat-empty.json"_s, u"chat-load.json"_s,
                                  u"chat-unload.json"_s}));
}

TEST_F(RecordedServer, EveryErrorReadsAsItsStatusInAChatAndAnEmbedding) {
    m_settings.setSelectedLLMModel(u"m"_s);
    m_settings.setSelectedEmbeddingModel(u"m"_s);
    qsizetype tried = 0;
    for (const Recorded& recorded : m_recorded) {
        if (recorded.status == 200) {
            continue;
        }
        ScriptedServer server(ScriptedReply{.status = recorded.status, .body = recorded.body});
        m_settings.setOllamaURL(server.url());
        const QFuture chat = m_service.chat({}, std::nullopt, std::nullopt);
        const QFuture embedding = m_service.generateEmbedding(u"a"_s, std::nullopt);
        ASSERT_TRUE(waitUntil([&] { return chat.isFinished() && embedding.isFinished(); }));
        const QString text = u"Error de red: HTTP %1"_s.arg(recorded.status);
        EXPECT_EQ(localizedDescription(chat.result().error()), text) << qPrintable(recorded.file);
        EXPECT_EQ(localizedDescription(embedding.result().error()), text) << qPrintable(recorded.file);
        ++tried;
    }
    EXPECT_GT(tried, 20);
}

TEST_F(RecordedServer, EveryErrorFailsTheListOfModels) {
    for (const Recorded& recorded : m_recorded) {
        if (recorded.status == 200) {
            continue;
        }
        ScriptedServer server(ScriptedReply{.status = recorded.status, .body = recorded.body});
        m_settings.setOllamaURL(server.url());
        m_service.fetchAvailableModels();
        ASSERT_TRUE(waitUntil([this] { return !m_service.isLoadingModels(); }));
        const QString reason = recorded.file.endsWith(u".json")
                                   ? u"No se han podido leer los datos porque faltan."_s
                                   : u"No se han podido leer los datos porque no tienen el formato correcto."_s;
        EXPECT_EQ(m_service.modelError(), u"Failed to fetch models: "_s + reason) << qPrintable(recorded.file);
    }
}

TEST_F(RecordedServer, WholeServerIsListedWithItsCapabilities) {
    ScriptedServer server([this](const ScriptedRequest& request) {
        if (request.target == "/api/tags") {
            return ScriptedReply{.body = bytesOf(u"tags.json"_s)};
        }
        QString name = QString::fromUtf8(request.body.mid(9).chopped(2));
        name.replace(u':', u'-').replace(u'/', u'-');
        return ScriptedReply{.body = bytesOf(u"show-%1.json"_s.arg(name))};
    });
    m_settings.setOllamaURL(server.url());
    CapturedOutput output;
    m_service.fetchAvailableModels();
    ASSERT_TRUE(waitUntil([this] { return !m_service.isLoadingModels(); }));
    QHash<QString, ModelCapabilities> capabilities;
    for (const OllamaModel& model : m_service.availableModels()) {
        capabilities.insert(model.name, model.capabilities);
    }
    const QHash<QString, ModelCapabilities> expected{
        {u"nomic-embed-text:latest"_s, {.supportsEmbedding = true}},
        {u"qwen3:8b"_s, {.supportsTools = true, .supportsThinking = true}},
        {u"gemma3:4b"_s, {.supportsVision = true}},
        {u"gpt-oss:120b-cloud"_s, {.supportsTools = true, .supportsThinking = true}},
        {u"bge-m3:latest"_s, {.supportsEmbedding = true}},
        {u"llama3.2:3b"_s, {.supportsTools = true}},
        {u"dorvantel/seleccion-es:7b-q4_K_M"_s, {.supportsTools = true}},
        {u"importado-sin-detalles:latest"_s, {}},
    };
    EXPECT_EQ(capabilities, expected);
    EXPECT_EQ(output.lines().size(), 7); // the model without a list logs nothing
}

TEST_F(RecordedServer, VerboseAnswerAboutAModelIsReadAndDropped) {
    ScriptedServer server(ScriptedReply{.body = bytesOf(u"show-large-model-info.json"_s)});
    m_settings.setOllamaURL(server.url());
    const QFuture future = m_service.fetchCapabilities(u"llama3.2:3b"_s);
    ASSERT_TRUE(waitUntil([&] { return future.isFinished(); }));
    EXPECT_EQ(future.result(), (ModelCapabilities{.supportsTools = true}));
}

} // namespace
} // namespace dorvantel
