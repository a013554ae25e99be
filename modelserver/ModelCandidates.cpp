// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/ModelCandidates.h"

#include <algorithm>
#include <iterator>

namespace dorvantel {

QList<OllamaModel> embeddingCandidates(const QList<OllamaModel>& models) {
    QList<OllamaModel> candidates;
    std::ranges::copy_if(models, std::back_inserter(candidates),
                         [](const OllamaModel& model) { return model.capabilities.supportsEmbedding; });
    return candidates;
}

QList<OllamaModel> languageModelCandidates(const QList<OllamaModel>& models) {
    QList<OllamaModel> candidates;
    std::ranges::copy_if(models, std::back_inserter(candidates), [](const OllamaModel& model) {
        return !model.capabilities.supportsVision && !model.capabilities.supportsEmbedding;
    });
    return candidates;
}

} // namespace dorvantel
