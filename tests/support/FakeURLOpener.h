// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/URLOpener.h"

#include <QList>
#include <QUrl>

namespace dorvantel::test {

/// Catches what would go to other programs.
class FakeURLOpener final : public URLOpener {
public:
    bool open(const QUrl& url) override {
        m_opened.append(url);
        return hasProgram;
    }

    bool hasProgram = true;

    const QList<QUrl>& opened() const { return m_opened; }

private:
    QList<QUrl> m_opened;
};

} // namespace dorvantel::test
