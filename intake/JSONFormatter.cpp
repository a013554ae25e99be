// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "intake/JSONFormatter.h"

#include <nlohmann/json.hpp>

namespace dorvantel {

QString JSONFormatter::format(const QString& json) const {
    const QByteArray bytes = json.toUtf8();
    const auto value = nlohmann::ordered_json::parse(bytes.cbegin(), bytes.cend(), nullptr, false);
    if (value.is_discarded() || bytes.contains('\0')) { // the library takes a NUL for the end of the text
        return json;
    }
    return QString::fromStdString(value.dump(m_indentation));
}

} // namespace dorvantel
