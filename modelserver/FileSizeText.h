// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace dorvantel {

/// A number of bytes as a file size for people, in decimal units, rounded to what the unit needs: "512 bytes", whole
/// kilobytes, megabytes with at most one decimal, larger units with at most two. "Zero KB" for none.
QString fileSizeText(qint64 bytes);

} // namespace dorvantel
