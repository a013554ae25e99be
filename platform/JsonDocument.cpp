// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/JsonDocument.h"

#include <algorithm>

namespace dorvantel {

using namespace Qt::StringLiterals;
using nlohmann::json;

namespace {

/// Writing goes down one call per level, so that a limit is needed where parsing has none.
constexpr int deepestRendered = 512;

bool isDeeperThan(const json& value, int levels) {
    if (!value.is_structured()) {
        return false;
    }
    return levels == 0 ||
           std::ranges::any_of(value, [levels](const json& element) { return isDeeperThan(element, levels - 1); });
}

} // namespace

bool isJson(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    return !bytes.contains('\0') && json::accept(bytes.cbegin(), bytes.cend());
}

std::expected<json, QString> parseJson(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    if (const qsizetype nul = bytes.indexOf('\0'); nul >= 0) {
        // The library takes it for the end of the text and would not look at what follows.
        return std::unexpected(u"NUL at byte %1"_s.arg(nul + 1));
    }
    try {
        return json::parse(bytes.cbegin(), bytes.cend());
    } catch (const json::exception& error) {
        return std::unexpected(QString::fromUtf8(error.what()));
    }
}

std::expected<QString, QString> compactJsonText(const json& value) {
    if (isDeeperThan(value, deepestRendered)) {
        return std::unexpected(
            u"No se han podido escribir los datos porque tienen más de %1 niveles."_s.arg(deepestRendered));
    }
    return QString::fromStdString(value.dump());
}

} // namespace dorvantel
