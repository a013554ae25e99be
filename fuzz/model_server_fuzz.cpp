// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Agreement.h"
#include "fuzz/Fuzz.h"
#include "modelserver/Capabilities.h"
#include "modelserver/WireTypes.h"

#include <algorithm>

namespace dorvantel {

namespace {

using test::Place;

OllamaModel plainModel(const Place& place) {
    OllamaModel model;
    model.name = place.member("name").text();
    model.modifiedAt = place.optionalText("modified_at");
    if (const auto size = place.optionalMember("size")) {
        model.size = size->integer();
    }
    if (const auto details = place.optionalMember("details")) {
        model.details.emplace();
        model.details->family = details->optionalText("family");
        model.details->format = details->optionalText("format");
        model.details->parameterSize = details->optionalText("parameter_size");
    }
    return model;
}

OllamaModelsResponse plainModels(const Place& root) {
    OllamaModelsResponse response;
    for (const Place& place : root.member("models").elements()) {
        response.models.append(plainModel(place));
    }
    return response;
}

std::optional<QStringList> optionalTexts(const Place& place, const char* key) {
    const auto found = place.optionalMember(key);
    return found ? std::optional(found->texts()) : std::nullopt;
}

OllamaShowResponse plainShow(const Place& root) {
    OllamaShowResponse response;
    response.modelfile = root.optionalText("modelfile");
    response.parameters = root.optionalText("parameters");
    response.templateText = root.optionalText("template");
    if (const auto details = root.optionalMember("details")) {
        response.details.emplace();
        response.details->format = details->optionalText("format");
        response.details->family = details->optionalText("family");
        response.details->families = optionalTexts(*details, "families");
        response.details->parameterSize = details->optionalText("parameter_size");
        response.details->quantizationLevel = details->optionalText("quantization_level");
    }
    if (const auto info = root.optionalMember("model_info")) {
        info->object();
        response.modelInfo.emplace();
    }
    response.capabilities = optionalTexts(root, "capabilities");
    return response;
}

OllamaChatResponse plainChat(const Place& root) {
    OllamaChatResponse response;
    response.model = root.member("model").text();
    response.createdAt = root.optionalText("created_at");
    const Place message = root.member("message");
    response.message.role = message.member("role").text();
    response.message.content = message.member("content").text();
    response.done = root.member("done").boolean();
    return response;
}

OllamaEmbeddingResponse plainEmbedding(const Place& root) {
    OllamaEmbeddingResponse response;
    response.model = root.member("model").text();
    for (const Place& vector : root.member("embeddings").elements()) {
        QList<double>& numbers = response.embeddings.emplace_back();
        for (const Place& number : vector.elements()) {
            numbers.append(number.number());
        }
    }
    return response;
}

/// A QList of numbers compares bytes, and the plain decoder has one zero only.
bool isSameEmbedding(const OllamaEmbeddingResponse& plain, const OllamaEmbeddingResponse& real) {
    return plain.model == real.model &&
           std::ranges::equal(plain.embeddings, real.embeddings,
                              [](const QList<double>& a, const QList<double>& b) { return std::ranges::equal(a, b); });
}

void requireSense(const OllamaShowResponse& response) {
    const ModelCapabilities capabilities = deriveCapabilities(response);
    fuzz::require(!(capabilities.supportsTools && capabilities.supportsVision), "who sees images uses no tools");
    const std::optional<QString> line = capabilitiesLogLine(response);
    fuzz::require(line.has_value() == response.capabilities.has_value(), "a list is logged");
    fuzz::require(!line || !line->contains(u'\n'), "whatever the list holds, it is one line");
    fuzz::require(decodeModelCapabilities(encode(capabilities)) == capabilities, "capabilities read back as they were");
}

} // namespace

} // namespace dorvantel

using namespace dorvantel;
using namespace dorvantel::fuzz;

/// What stands in the place of the model server answers on its four routes: the models, one model, a chat, a vector.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray body(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const test::PlainDocument plain(body);

    const auto models = decodeModelsResponse(body);
    requireAgreement(test::plainlyDecoded(plain, plainModels), models);
    for (const OllamaModel& model : models.value_or(OllamaModelsResponse()).models) {
        const auto again = decodeModelsResponse(R"({"models":[)" + encode(model) + "]}");
        require(again && again->models == QList{model}, "a model reads back as it was");
    }
    const auto show = decodeShowResponse(body);
    requireAgreement(test::plainlyDecoded(plain, plainShow), show);
    if (show) {
        requireSense(*show);
    }
    requireAgreement(test::plainlyDecoded(plain, plainChat), decodeChatResponse(body));
    requireAgreement(test::plainlyDecoded(plain, plainEmbedding), decodeEmbeddingResponse(body), isSameEmbedding);
    return 0;
}
