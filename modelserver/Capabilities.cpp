// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/Capabilities.h"

#include "platform/ListLiteral.h"

namespace dorvantel {

using namespace Qt::StringLiterals;

ModelCapabilities deriveCapabilities(const OllamaShowResponse& response) {
    const QStringList listed = response.capabilities.value_or(QStringList());
    const bool vision = listed.contains(u"vision"_s);
    return {.supportsTools = listed.contains(u"tools"_s) && !vision,
            .supportsVision = vision,
            .supportsThinking = listed.contains(u"thinking"_s),
            .supportsEmbedding = listed.contains(u"embedding"_s)};
}

std::optional<QString> capabilitiesLogLine(const OllamaShowResponse& response) {
    if (!response.capabilities) {
        return std::nullopt;
    }
    return u"Capabilities from API: "_s + listLiteral(*response.capabilities);
}

} // namespace dorvantel
