// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "modelserver/ModelService.h"
#include "modelserver/WireTypes.h"
#include "platform/HttpSession.h"

#include <QObject>

#include <chrono>
#include <optional>

namespace dorvantel {

class AppSettings;

/// The client of the model server. Holds no connection: every call reads the settings afresh, so that a new address or
/// model applies to the next call. Nothing is retried. Lives on the UI thread; `session` and `settings` outlive it.
class OllamaService : public QObject, public ModelService {
    Q_OBJECT
    Q_PROPERTY(QList<OllamaModel> availableModels READ availableModels NOTIFY availableModelsChanged)
    Q_PROPERTY(bool isLoadingModels READ isLoadingModels NOTIFY isLoadingModelsChanged)
    Q_PROPERTY(std::optional<QString> modelError READ modelError NOTIFY modelErrorChanged)

public:
    /// `timeout` is how long a request waits while nothing comes.
    OllamaService(HttpSession& session, AppSettings& settings,
                  std::chrono::milliseconds timeout = std::chrono::seconds(60), QObject* parent = nullptr);

    /// The models of the last load that succeeded, in the order in which their capabilities became known.
    const QList<OllamaModel>& availableModels() const { return m_published.models; }
    bool isLoadingModels() const { return m_published.loading; }
    /// Why the last load failed, for people; absent after one that succeeded.
    const std::optional<QString>& modelError() const { return m_published.error; }

    /// Loads the server's models with their capabilities into the properties. Of loads that overlap, the last to end
    /// decides.
    void fetchAvailableModels();

    /// What the model can do; absent when the server does not say it, for whatever reason.
    QFuture<std::optional<ModelCapabilities>> fetchCapabilities(const QString& modelName);

    QFuture<ModelResult<QString>> chat(const QList<OllamaChatMessage>& messages, const std::optional<QString>& model,
                                       const std::optional<double>& temperature) override;

    QFuture<ModelResult<QList<double>>> generateEmbedding(const QString& text,
                                                          const std::optional<QString>& model) override;

Q_SIGNALS:
    void availableModelsChanged();
    void isLoadingModelsChanged();
    void modelErrorChanged();

private:
    struct Published {
        QList<OllamaModel> models;
        bool loading = false;
        std::optional<QString> error;
    };
    void publish(Published next);
    void endLoad(const QString& error);
    void collectCapabilities(const QList<OllamaModel>& models);
    std::optional<HttpRequest> requestFor(const QString& path) const;
    std::optional<HttpRequest> postFor(const QString& path) const;

    HttpSession& m_session;
    AppSettings& m_settings;
    const std::chrono::milliseconds m_timeout;
    Published m_published;
};

} // namespace dorvantel
