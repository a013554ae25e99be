// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/OllamaService.h"

#include "modelserver/AppSettings.h"
#include "modelserver/Capabilities.h"
#include "modelserver/ModelServerCall.h"
#include "platform/Log.h"

#include <memory>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

using ModelList = std::expected<OllamaModelsResponse, QString>;

template <typename Result>
QFuture<Result> finishedFuture(Result result) {
    QPromise<Result> promise;
    promise.start();
    promise.addResult(std::move(result));
    promise.finish();
    return promise.future();
}

template <typename Value>
QFuture<ModelResult<Value>> failedFuture(OllamaError error) {
    return finishedFuture(ModelResult<Value>(std::unexpected(std::move(error))));
}

/// The record in what came back, for the calls that look at the status. A body with another status is not read.
template <typename Record>
ModelResult<Record> readAnswer(const HttpOutcome& outcome, Decoded<Record> (*decode)(const QByteArray&)) {
    if (!outcome) {
        return std::unexpected(OllamaError::networkError({{}, 0, outcome.error().description}));
    }
    if (const int status = outcome->statusCode.value_or(200); status != 200) {
        return std::unexpected(
            OllamaError::networkError({u"OllamaService"_s, status, u"HTTP "_s + QString::number(status)}));
    }
    Decoded<Record> record = decode(outcome->body);
    if (!record) {
        return std::unexpected(OllamaError::decodingError(record.error()));
    }
    return std::move(*record);
}

ModelResult<QString> readChat(const HttpOutcome& outcome) {
    const ModelResult<OllamaChatResponse> answer = readAnswer(outcome, decodeChatResponse);
    if (!answer) {
        return std::unexpected(answer.error());
    }
    if (answer->message.content.isEmpty()) {
        return std::unexpected(OllamaError::emptyResponse());
    }
    return answer->message.content;
}

ModelResult<QList<double>> readEmbedding(const HttpOutcome& outcome) {
    const ModelResult<OllamaEmbeddingResponse> answer = readAnswer(outcome, decodeEmbeddingResponse);
    if (!answer) {
        return std::unexpected(answer.error());
    }
    if (answer->embeddings.isEmpty()) {
        return std::unexpected(OllamaError::emptyResponse());
    }
    return answer->embeddings.first();
}

ModelList readModels(const HttpOutcome& outcome) {
    if (!outcome) {
        return std::unexpected(outcome.error().description);
    }
    Decoded<OllamaModelsResponse> response = decodeModelsResponse(outcome->body);
    if (!response) {
        return std::unexpected(localizedDescription(response.error()));
    }
    return std::move(*response);
}

std::optional<ModelCapabilities> readCapabilities(const HttpOutcome& outcome) {
    if (!outcome) {
        return std::nullopt;
    }
    const Decoded<OllamaShowResponse> response = decodeShowResponse(outcome->body);
    if (!response) {
        return std::nullopt;
    }
    if (const std::optional<QString> line = capabilitiesLogLine(*response)) {
        logLine(*line);
    }
    return deriveCapabilities(*response);
}

} // namespace

OllamaService::OllamaService(HttpSession& session, AppSettings& settings, std::chrono::milliseconds timeout,
                             QObject* parent)
    : QObject(parent)
    , m_session(session)
    , m_settings(settings)
    , m_timeout(timeout) {}

/// The path is appended to the address as text: an address that ends in a slash gives a double slash.
std::optional<HttpRequest> OllamaService::requestFor(const QString& path) const {
    HttpRequest request;
    request.url = QUrl(m_settings.ollamaURL() + path, QUrl::StrictMode);
    request.timeout = m_timeout;
    request.mostBytes = qsizetype{16} * 1024 * 1024; // fifty models may be asked about at once
    if (!request.url.isValid()) {
        return std::nullopt;
    }
    return request;
}

std::optional<HttpRequest> OllamaService::postFor(const QString& path) const {
    std::optional<HttpRequest> request = requestFor(path);
    if (request) {
        request->method = HttpRequest::Method::Post;
        request->contentType = QByteArrayLiteral("application/json");
    }
    return request;
}

QFuture<ModelResult<QString>> OllamaService::chat(const QList<OllamaChatMessage>& messages,
                                                  const std::optional<QString>& model,
                                                  const std::optional<double>& temperature) {
    const std::optional<QString>& name = model ? model : m_settings.selectedLLMModel();
    if (!name) {
        return failedFuture<QString>(OllamaError::modelNotConfigured());
    }
    std::optional<HttpRequest> request = postFor(u"/api/chat"_s);
    if (!request) {
        return failedFuture<QString>(OllamaError::invalidURL());
    }
    const OllamaOptions options{.temperature = temperature, .topP = {}, .topK = {}};
    const auto body = encode(OllamaChatRequest{*name, messages, false, options});
    if (!body) {
        return failedFuture<QString>(OllamaError::networkError({{}, 0, body.error().description}));
    }
    request->body = *body;
    return ModelServerCall<ModelResult<QString>>::send(m_session, *request, readChat, this);
}

QFuture<ModelResult<QList<double>>> OllamaService::generateEmbedding(const QString& text,
                                                                     const std::optional<QString>& model) {
    const std::optional<QString>& name = model ? model : m_settings.selectedEmbeddingModel();
    if (!name) {
        return failedFuture<QList<double>>(OllamaError::modelNotConfigured());
    }
    std::optional<HttpRequest> request = postFor(u"/api/embed"_s);
    if (!request) {
        return failedFuture<QList<double>>(OllamaError::invalidURL());
    }
    request->body = encode(OllamaEmbeddingRequest{*name, text});
    return ModelServerCall<ModelResult<QList<double>>>::send(m_session, *request, readEmbedding, this);
}

QFuture<std::optional<ModelCapabilities>> OllamaService::fetchCapabilities(const QString& modelName) {
    std::optional<HttpRequest> request = postFor(u"/api/show"_s);
    if (!request) {
        return finishedFuture(std::optional<ModelCapabilities>());
    }
    request->body = encode(OllamaShowRequest{modelName});
    return ModelServerCall<std::optional<ModelCapabilities>>::send(m_session, *request, readCapabilities, this);
}

void OllamaService::fetchAvailableModels() {
    publish({m_published.models, true, m_published.error});
    const std::optional<HttpRequest> request = requestFor(u"/api/tags"_s);
    if (!request) {
        endLoad(u"Invalid URL"_s);
        return;
    }
    whenFinished(ModelServerCall<ModelList>::send(m_session, *request, readModels, this), this,
                 [this](const ModelList& list) {
                     if (list) {
                         collectCapabilities(list->models);
                     } else {
                         endLoad(u"Failed to fetch models: "_s + list.error());
                     }
                 });
}

/// Asks about all models at once and publishes them in the order in which the answers come. A model whose answer is
/// missing keeps the capabilities it has.
void OllamaService::collectCapabilities(const QList<OllamaModel>& models) {
    if (models.isEmpty()) {
        publish({});
        return;
    }
    const auto collected = std::make_shared<QList<OllamaModel>>();
    for (OllamaModel model : models) {
        whenFinished(fetchCapabilities(model.name), this,
                     [this, collected, model,
                      expected = models.size()](const std::optional<ModelCapabilities>& capabilities) mutable {
                         model.capabilities = capabilities.value_or(model.capabilities);
                         collected->append(model);
                         if (collected->size() == expected) {
                             publish({*collected, false, std::nullopt});
                         }
                     });
    }
}

void OllamaService::endLoad(const QString& error) {
    publish({m_published.models, false, error});
}

void OllamaService::publish(Published next) {
    const Published before = std::exchange(m_published, std::move(next));
    if (before.models != m_published.models) {
        Q_EMIT availableModelsChanged();
    }
    if (before.error != m_published.error) {
        Q_EMIT modelErrorChanged();
    }
    if (before.loading != m_published.loading) {
        Q_EMIT isLoadingModelsChanged();
    }
}

} // namespace dorvantel
