// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Log.h"

#include <QByteArray>

#include <cstdio>

namespace dorvantel {

void logLine(QStringView line) {
    QByteArray bytes = line.toUtf8();
    bytes.append('\n');
    // One call, so that lines of different threads never mix.
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

} // namespace dorvantel
