// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/URLOpener.h"

#include <QDesktopServices>
#include <QUrl>

namespace dorvantel {

void DesktopURLOpener::open(const QUrl& url) {
    QDesktopServices::openUrl(url);
}

} // namespace dorvantel
