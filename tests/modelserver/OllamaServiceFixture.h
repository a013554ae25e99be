// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "modelserver/AppSettings.h"
#include "modelserver/OllamaService.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/Wait.h"

#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace dorvantel::test {

using namespace Qt::StringLiterals;
using Way = ScriptedReply::Way;

inline const QString formatText = u"No se han podido leer los datos porque no tienen el formato correcto."_s;
inline const QString missingText = u"No se han podido leer los datos porque faltan."_s;

inline ScriptedReply reply(const QByteArray& body, int status = 200) {
    return {.status = status, .body = body};
}

inline ScriptedReply way(Way way) {
    return {.body = R"({"model":"m","message":{"role":"assistant","content":"hola"},"done":true})", .way = way};
}

inline QByteArray chatBody(const QByteArray& content) {
    return R"({"model":"m","message":{"role":"assistant","content":")" + content + R"("},"done":true})";
}

/// A service with both models chosen, and what tests of its three kinds of call share.
struct OllamaServiceTest : testing::Test {
    QTemporaryDir folder;
    AppSettings settings{std::make_unique<QSettings>(folder.filePath(u"Dorvantel.conf"_s), QSettings::IniFormat)};
    NetworkHttpSession session;
    std::unique_ptr<OllamaService> service;

    OllamaServiceTest() {
        settings.setSelectedLLMModel(u"elegido"_s);
        settings.setSelectedEmbeddingModel(u"incrustador"_s);
        makeService();
    }

    void makeService(std::chrono::milliseconds timeout = std::chrono::seconds(60)) {
        service = std::make_unique<OllamaService>(session, settings, timeout);
    }

    template <typename Result>
    static Result await(const QFuture<Result>& future) {
        EXPECT_TRUE(waitUntil([&] { return future.isFinished(); }));
        EXPECT_EQ(future.resultCount(), 1);
        return future.result();
    }

    ModelResult<QString> chat(const QString& url) {
        settings.setOllamaURL(url);
        return await(service->chat({{u"user"_s, u"hola"_s}}, std::nullopt, 0.3));
    }

    ModelResult<QList<double>> embed(const QString& url) {
        settings.setOllamaURL(url);
        return await(service->generateEmbedding(u"contable"_s, std::nullopt));
    }

    /// What the user reads when a chat ends without a reply.
    QString chatFailure(const QString& url) {
        const ModelResult<QString> result = chat(url);
        return result ? u"no failure: "_s + *result : localizedDescription(result.error());
    }

    void load(const QString& url) {
        settings.setOllamaURL(url);
        service->fetchAvailableModels();
        EXPECT_TRUE(service->isLoadingModels());
        EXPECT_TRUE(waitUntil([this] { return !service->isLoadingModels(); }));
    }

    QStringList modelNames() const {
        QStringList names;
        for (const OllamaModel& model : service->availableModels()) {
            names += model.name;
        }
        return names;
    }
};

} // namespace dorvantel::test
