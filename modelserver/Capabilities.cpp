// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/Capabilities.h"

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

/// As it would stand in source text, so that no server can begin a line of its own in the log.
QString quoted(const QString& text) {
    QString result = u"\""_s;
    for (const QChar c : text) {
        if (c == u'"' || c == u'\\') {
            result += u'\\';
            result += c;
        } else if (c == u'\n') {
            result += u"\\n"_s;
        } else if (c == u'\r') {
            result += u"\\r"_s;
        } else if (c == u'\t') {
            result += u"\\t"_s;
        } else if (c.category() == QChar::Other_Control) {
            result += u"\\u{%1}"_s.arg(uint(c.unicode()), 0, 16);
        } else {
            result += c;
        }
    }
    return result + u'"';
}

} // namespace

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
    QStringList elements;
    for (const QString& capability : *response.capabilities) {
        elements += quoted(capability);
    }
    return u"Capabilities from API: ["_s + elements.join(u", "_s) + u"]"_s;
}

} // namespace dorvantel
