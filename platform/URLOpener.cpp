// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/URLOpener.h"

#include <QDesktopServices>
#include <QUrl>

namespace dorvantel {

bool DesktopURLOpener::open(const QUrl& url) {
    return QDesktopServices::openUrl(url);
}

} // namespace dorvantel
