// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/WireTypes.h"

#include "platform/JsonDecoding.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cmath>
#include <string_view>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

using OrderedJson = nlohmann::ordered_json;

JsonFailure readNumber(JsonCursor& cursor, double& out) {
    if (JsonFailure failure = expectKind(cursor, JsonCursor::Kind::Number, "Double")) {
        return failure;
    }
    out = worthOf(cursor.number());
    return std::isinf(out) ? JsonFailure(corrupted(u"The number does not fit into a Double."_s)) : std::nullopt;
}

/// Also a number written with a fraction of zero or an exponent, as long as it is whole and fits.
JsonFailure readInteger(JsonCursor& cursor, qint64& out) {
    if (JsonFailure failure = expectKind(cursor, JsonCursor::Kind::Number, "Int64")) {
        return failure;
    }
    const std::string_view digits = cursor.number();
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), out);
    if (read.ec == std::errc() && read.ptr == digits.data() + digits.size()) {
        return std::nullopt;
    }
    constexpr double limit = 9223372036854775808.0;
    const bool isWritten = digits.find_first_of(".eE") != std::string_view::npos;
    const double value = worthOf(digits);
    if (!isWritten || value != std::trunc(value) || value < -limit || value >= limit) {
        return corrupted(u"The number does not fit into an Int64."_s);
    }
    out = static_cast<qint64>(value);
    return std::nullopt;
}

JsonFailure readBoolean(JsonCursor& cursor, bool& out) {
    if (JsonFailure failure = expectKind(cursor, JsonCursor::Kind::Boolean, "Bool")) {
        return failure;
    }
    out = cursor.boolean();
    return std::nullopt;
}

JsonFailure readDetails(JsonCursor& cursor, ModelDetails& out) {
    return readObject(cursor, optional("family", out.family), optional("format", out.format),
                      optional("parameter_size", out.parameterSize));
}

JsonFailure readModel(JsonCursor& cursor, OllamaModel& out) {
    return readObject(cursor, required("name", out.name), optional("modified_at", out.modifiedAt),
                      optional("size", out.size, readInteger), optional("details", out.details, readDetails));
}

JsonFailure readModels(JsonCursor& cursor, QList<OllamaModel>& out) {
    return readArray(cursor, out, readModel);
}

JsonFailure readShowDetails(JsonCursor& cursor, ModelShowDetails& out) {
    return readObject(cursor, optional("format", out.format), optional("family", out.family),
                      optional("families", out.families), optional("parameter_size", out.parameterSize),
                      optional("quantization_level", out.quantizationLevel));
}

JsonFailure readModelInfo(JsonCursor& cursor, ModelInfo&) {
    if (JsonFailure failure = expectKind(cursor, JsonCursor::Kind::Object, "Dictionary<String, Any>")) {
        return failure;
    }
    cursor.skip();
    return std::nullopt;
}

JsonFailure readChatMessage(JsonCursor& cursor, OllamaChatMessage& out) {
    return readObject(cursor, required("role", out.role), required("content", out.content));
}

JsonFailure readVector(JsonCursor& cursor, QList<double>& out) {
    return readArray(cursor, out, readNumber);
}

JsonFailure readVectors(JsonCursor& cursor, QList<QList<double>>& out) {
    return readArray(cursor, out, readVector);
}

template <typename Value>
void put(OrderedJson& object, const char* key, const std::optional<Value>& value) {
    if (!value) {
        return;
    }
    if constexpr (std::is_same_v<Value, QString>) {
        object[key] = value->toStdString();
    } else {
        object[key] = *value;
    }
}

OrderedJson optionsObject(const OllamaOptions& options) {
    OrderedJson object = OrderedJson::object();
    put(object, "temperature", options.temperature);
    put(object, "top_p", options.topP);
    put(object, "top_k", options.topK);
    return object;
}

QByteArray bytes(const OrderedJson& document) {
    return QByteArray::fromStdString(document.dump());
}

} // namespace

size_t qHash(const ModelDetails& details, size_t seed) {
    const std::hash<std::optional<QString>> hash;
    return qHashMulti(seed, hash(details.family), hash(details.format), hash(details.parameterSize));
}

size_t qHash(const ModelCapabilities& capabilities, size_t seed) {
    return qHashMulti(seed, capabilities.supportsTools, capabilities.supportsVision, capabilities.supportsThinking,
                      capabilities.supportsEmbedding);
}

size_t qHash(const OllamaModel& value, size_t seed) {
    const size_t details = value.details ? qHash(*value.details, 1) : 0;
    return qHashMulti(seed, value.name, std::hash<std::optional<QString>>()(value.modifiedAt),
                      std::hash<std::optional<qint64>>()(value.size), details, value.capabilities);
}

Decoded<OllamaModelsResponse> decodeModelsResponse(const QByteArray& body) {
    return decodeJson<OllamaModelsResponse>(body, [](JsonCursor& cursor, OllamaModelsResponse& out) {
        return readObject(cursor, required("models", out.models, readModels));
    });
}

Decoded<OllamaShowResponse> decodeShowResponse(const QByteArray& body) {
    return decodeJson<OllamaShowResponse>(body, [](JsonCursor& cursor, OllamaShowResponse& out) {
        return readObject(cursor, optional("modelfile", out.modelfile), optional("parameters", out.parameters),
                          optional("template", out.templateText), optional("details", out.details, readShowDetails),
                          optional("model_info", out.modelInfo, readModelInfo),
                          optional("capabilities", out.capabilities));
    });
}

Decoded<OllamaChatResponse> decodeChatResponse(const QByteArray& body) {
    return decodeJson<OllamaChatResponse>(body, [](JsonCursor& cursor, OllamaChatResponse& out) {
        return readObject(cursor, required("model", out.model), optional("created_at", out.createdAt),
                          required("message", out.message, readChatMessage), required("done", out.done, readBoolean));
    });
}

Decoded<OllamaEmbeddingResponse> decodeEmbeddingResponse(const QByteArray& body) {
    return decodeJson<OllamaEmbeddingResponse>(body, [](JsonCursor& cursor, OllamaEmbeddingResponse& out) {
        return readObject(cursor, required("model", out.model), required("embeddings", out.embeddings, readVectors));
    });
}

Decoded<ModelCapabilities> decodeModelCapabilities(const QByteArray& body) {
    return decodeJson<ModelCapabilities>(body, [](JsonCursor& cursor, ModelCapabilities& out) {
        return readObject(cursor, required("supportsTools", out.supportsTools, readBoolean),
                          required("supportsVision", out.supportsVision, readBoolean),
                          required("supportsThinking", out.supportsThinking, readBoolean),
                          required("supportsEmbedding", out.supportsEmbedding, readBoolean));
    });
}

QByteArray encode(const OllamaShowRequest& request) {
    return bytes({{"name", request.name.toStdString()}});
}

QByteArray encode(const OllamaEmbeddingRequest& request) {
    return bytes({{"model", request.model.toStdString()}, {"input", request.input.toStdString()}});
}

std::expected<QByteArray, EncodeError> encode(const OllamaChatRequest& request) {
    if (request.options) {
        for (const std::optional<double>& value : {request.options->temperature, request.options->topP}) {
            if (value && !std::isfinite(*value)) {
                return std::unexpected(
                    EncodeError{u"No se han podido escribir los datos porque no tienen el formato correcto."_s});
            }
        }
    }
    OrderedJson messages = OrderedJson::array();
    for (const OllamaChatMessage& message : request.messages) {
        messages.push_back({{"role", message.role.toStdString()}, {"content", message.content.toStdString()}});
    }
    OrderedJson object = {
        {"model", request.model.toStdString()}, {"messages", std::move(messages)}, {"stream", request.stream}};
    if (request.options) {
        object["options"] = optionsObject(*request.options);
    }
    return bytes(object);
}

QByteArray encode(const OllamaModel& value) {
    OrderedJson object = {{"name", value.name.toStdString()}};
    put(object, "modified_at", value.modifiedAt);
    put(object, "size", value.size);
    if (value.details) {
        OrderedJson details = OrderedJson::object();
        put(details, "family", value.details->family);
        put(details, "format", value.details->format);
        put(details, "parameter_size", value.details->parameterSize);
        object["details"] = std::move(details);
    }
    return bytes(object);
}

QByteArray encode(const ModelCapabilities& capabilities) {
    return bytes({{"supportsTools", capabilities.supportsTools},
                  {"supportsVision", capabilities.supportsVision},
                  {"supportsThinking", capabilities.supportsThinking},
                  {"supportsEmbedding", capabilities.supportsEmbedding}});
}

QByteArray encode(const ModelInfo&) {
    return QByteArrayLiteral("{}");
}

} // namespace dorvantel
