// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "modelserver/OllamaChatMessage.h"
#include "platform/Decoding.h"

#include <QByteArray>
#include <QHashFunctions>
#include <QList>
#include <QString>
#include <QStringList>

#include <expected>
#include <optional>

namespace dorvantel {

// The bodies that travel to and from the model server. Plain values; decoding and encoding may run on any thread.
//
// In a received body unknown keys are ignored and null stands for an absent value where a field is optional; a missing
// required field, null in its place or a value of another JSON type fails the whole body. In a sent body an absent
// field is left out.

struct ModelDetails {
    std::optional<QString> family;
    std::optional<QString> format;
    std::optional<QString> parameterSize; ///< as the server writes it, with a unit letter: "8.2B"

    bool operator==(const ModelDetails&) const = default;
};
size_t qHash(const ModelDetails& details, size_t seed = 0);

/// What a model can do. Never sent or received with a model: it is derived from the answer about one.
struct ModelCapabilities {
    bool supportsTools = false; ///< tool calling, and no images
    bool supportsVision = false;
    bool supportsThinking = false;
    bool supportsEmbedding = false;

    bool operator==(const ModelCapabilities&) const = default;
};
size_t qHash(const ModelCapabilities& capabilities, size_t seed = 0);

struct OllamaModel {
    QString name;                      ///< what tells models apart, and what requests call the model by
    std::optional<QString> modifiedAt; ///< the server's text, not read as a date
    std::optional<qint64> size;        ///< bytes
    std::optional<ModelDetails> details;
    ModelCapabilities capabilities; ///< all false when decoded

    const QString& id() const { return name; }
    bool operator==(const OllamaModel&) const = default;
};
size_t qHash(const OllamaModel& model, size_t seed = 0);

struct OllamaModelsResponse {
    QList<OllamaModel> models;

    bool operator==(const OllamaModelsResponse&) const = default;
};

struct OllamaShowRequest {
    QString name;

    bool operator==(const OllamaShowRequest&) const = default;
};

struct ModelShowDetails {
    std::optional<QString> format;
    std::optional<QString> family;
    std::optional<QStringList> families;
    std::optional<QString> parameterSize;
    std::optional<QString> quantizationLevel;

    bool operator==(const ModelShowDetails&) const = default;
};

/// Stands for any object: what a server says about a model's inside may be megabytes, and nothing of it is used.
struct ModelInfo {
    bool operator==(const ModelInfo&) const = default;
};

struct OllamaShowResponse {
    std::optional<QString> modelfile;
    std::optional<QString> parameters;
    std::optional<QString> templateText; ///< "template" on the wire
    std::optional<ModelShowDetails> details;
    std::optional<ModelInfo> modelInfo;
    std::optional<QStringList> capabilities;

    bool operator==(const OllamaShowResponse&) const = default;
};

struct OllamaOptions {
    std::optional<double> temperature;
    std::optional<double> topP;
    std::optional<qint64> topK;

    bool operator==(const OllamaOptions&) const = default;
};

struct OllamaChatRequest {
    QString model;
    QList<OllamaChatMessage> messages;
    bool stream = false;
    std::optional<OllamaOptions> options;

    bool operator==(const OllamaChatRequest&) const = default;
};

struct OllamaChatResponse {
    QString model;
    std::optional<QString> createdAt;
    OllamaChatMessage message;
    bool done = false;

    bool operator==(const OllamaChatResponse&) const = default;
};

struct OllamaEmbeddingRequest {
    QString model;
    QString input; ///< one text

    bool operator==(const OllamaEmbeddingRequest&) const = default;
};

struct OllamaEmbeddingResponse {
    QString model;
    QList<QList<double>> embeddings; ///< one vector for each input

    bool operator==(const OllamaEmbeddingResponse&) const = default;
};

template <typename Record>
using Decoded = std::expected<Record, DecodeError>;

Decoded<OllamaModelsResponse> decodeModelsResponse(const QByteArray& body);
Decoded<OllamaShowResponse> decodeShowResponse(const QByteArray& body);
Decoded<OllamaChatResponse> decodeChatResponse(const QByteArray& body);
Decoded<OllamaEmbeddingResponse> decodeEmbeddingResponse(const QByteArray& body);
Decoded<ModelCapabilities> decodeModelCapabilities(const QByteArray& body);

/// JSON has no form for a number that is not finite.
struct EncodeError {
    QString description; ///< a text for people

    bool operator==(const EncodeError&) const = default;
};

QByteArray encode(const OllamaShowRequest& request);
QByteArray encode(const OllamaEmbeddingRequest& request);
std::expected<QByteArray, EncodeError> encode(const OllamaChatRequest& request);
QByteArray encode(const OllamaModel& model);
QByteArray encode(const ModelCapabilities& capabilities);
QByteArray encode(const ModelInfo& info);

} // namespace dorvantel
