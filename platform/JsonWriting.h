// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringView>

namespace dorvantel {

/// Appends `text` as a JSON string, quotes included: only what JSON demands is escaped, everything else is UTF-8 as it
/// is. False, with nothing appended, for a text that has no UTF-8 form (half a surrogate pair). Any thread.
[[nodiscard]] bool appendJsonString(QByteArray& out, QStringView text);

} // namespace dorvantel
