// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Fatal.h"

#include <QtGlobal>

namespace dorvantel {

void fatalError(const QString& violated) {
    qFatal("Fatal error: %s", qUtf8Printable(violated));
}

} // namespace dorvantel
