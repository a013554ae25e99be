// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/DemoModelList.h"

#include "demo/DemoModel.h"
#include "demo/Embedding.h"

#include <QCryptographicHash>

#include <algorithm>
#include <array>
#include <cctype>

namespace dorvantel {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<DemoModelEntry, 2> models = {{
    {demoEmbeddingModel, "embedding", true},
    {demoTextModel, "completion", false},
}};

constexpr const char* modifiedAt = "2026-01-01T00:00:00Z";
constexpr int contextLength = 131072; // no text is ever cut

std::string lower(std::string_view text) {
    std::string out(text);
    std::ranges::transform(out, out.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

Json details() {
    return {{"parent_model", ""},
            {"format", "reglas"},
            {"family", "demostración: no es un modelo de lenguaje"},
            {"families", Json::array({"demostración: no es un modelo de lenguaje"})},
            {"parameter_size", "0"},
            {"quantization_level", ""}};
}

} // namespace

Json DemoModelEntry::tag() const {
    const QByteArray digest = QCryptographicHash::hash(QByteArray(name.data(), static_cast<qsizetype>(name.size())),
                                                       QCryptographicHash::Sha256);
    Json listed = details();
    listed["context_length"] = contextLength;
    listed["embedding_length"] = embeddingLength;
    return {{"name", name},
            {"model", name},
            {"modified_at", modifiedAt},
            {"size", 0},
            {"digest", digest.toHex().toStdString()},
            {"details", listed},
            {"capabilities", Json::array({capability})}};
}

Json DemoModelEntry::show() const {
    const std::string modelfile = "# " + std::string(demoNotice) + "\nFROM " + std::string(name) + "\n";
    Json info = {{"general.architecture", "dorvantel-demo"},
                 {"general.parameter_count", 0},
                 {"dorvantel-demo.context_length", contextLength},
                 {"dorvantel-demo.embedding_length", embeddingLength}};
    if (makesVectors) {
        info["dorvantel-demo.pooling_type"] = 1;
    }
    return {{"license", "MIT"},         {"modelfile", modelfile}, {"template", "{{ .Prompt }}"},
            {"details", details()},     {"model_info", info},     {"capabilities", Json::array({capability})},
            {"modified_at", modifiedAt}};
}

std::string withTag(std::string_view name) {
    return name.find(':') == name.npos ? std::string(name) + ":latest" : std::string(name);
}

const DemoModelEntry* findDemoModel(std::string_view name) {
    const auto entry = std::ranges::find(models, lower(withTag(name)), &DemoModelEntry::name);
    return entry == models.end() ? nullptr : &*entry;
}

Json demoTags() {
    Json list = Json::array();
    for (const DemoModelEntry& model : models) {
        list.push_back(model.tag());
    }
    return {{"models", list}};
}

} // namespace dorvantel
