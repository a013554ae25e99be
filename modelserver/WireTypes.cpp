// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/WireTypes.h"

#include "modelserver/JsonReader.h"

#include <cmath>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

using OrderedJson = nlohmann::ordered_json;

QStringList strings(const JsonReader& reader) {
    return reader.list(&JsonReader::string);
}

ModelDetails modelDetails(const JsonReader& reader) {
    return {.family = reader.optionalString("family"),
            .format = reader.optionalString("format"),
            .parameterSize = reader.optionalString("parameter_size")};
}

OllamaModel model(const JsonReader& reader) {
    return {.name = reader.required("name").string(),
            .modifiedAt = reader.optionalString("modified_at"),
            .size = reader.optional("size", &JsonReader::integer),
            .details = reader.optional("details", modelDetails),
            .capabilities = {}};
}

ModelShowDetails showDetails(const JsonReader& reader) {
    return {.format = reader.optionalString("format"),
            .family = reader.optionalString("family"),
            .families = reader.optional("families", strings),
            .parameterSize = reader.optionalString("parameter_size"),
            .quantizationLevel = reader.optionalString("quantization_level")};
}

ModelInfo modelInfo(const JsonReader& reader) {
    reader.object();
    return {};
}

OllamaShowResponse showResponse(const JsonReader& reader) {
    return {.modelfile = reader.optionalString("modelfile"),
            .parameters = reader.optionalString("parameters"),
            .templateText = reader.optionalString("template"),
            .details = reader.optional("details", showDetails),
            .modelInfo = reader.optional("model_info", modelInfo),
            .capabilities = reader.optional("capabilities", strings)};
}

OllamaChatMessage chatMessage(const JsonReader& reader) {
    return {.role = reader.required("role").string(), .content = reader.required("content").string()};
}

OllamaChatResponse chatResponse(const JsonReader& reader) {
    return {.model = reader.required("model").string(),
            .createdAt = reader.optionalString("created_at"),
            .message = chatMessage(reader.required("message")),
            .done = reader.required("done").boolean()};
}

OllamaEmbeddingResponse embeddingResponse(const JsonReader& reader) {
    const auto vector = [](const JsonReader& element) { return element.list(&JsonReader::number); };
    return {.model = reader.required("model").string(), .embeddings = reader.required("embeddings").list(vector)};
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
    return decodeJson(body, [](const JsonReader& reader) {
        return OllamaModelsResponse{.models = reader.required("models").list(model)};
    });
}

Decoded<OllamaShowResponse> decodeShowResponse(const QByteArray& body) {
    return decodeJson(body, showResponse);
}

Decoded<OllamaChatResponse> decodeChatResponse(const QByteArray& body) {
    return decodeJson(body, chatResponse);
}

Decoded<OllamaEmbeddingResponse> decodeEmbeddingResponse(const QByteArray& body) {
    return decodeJson(body, embeddingResponse);
}

Decoded<ModelCapabilities> decodeModelCapabilities(const QByteArray& body) {
    return decodeJson(body, [](const JsonReader& reader) {
        return ModelCapabilities{.supportsTools = reader.required("supportsTools").boolean(),
                                 .supportsVision = reader.required("supportsVision").boolean(),
                                 .supportsThinking = reader.required("supportsThinking").boolean(),
                                 .supportsEmbedding = reader.required("supportsEmbedding").boolean()};
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
                    EncodeError{u"The data couldn’t be written because it isn’t in the correct format."_s});
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
