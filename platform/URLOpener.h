// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

class QUrl;

namespace dorvantel {

/// Hands URLs to whatever program the user has for them. Lives on the UI thread.
class URLOpener {
public:
    virtual ~URLOpener() = default;

    /// Returns at once. False when the desktop has no program for `url` or cannot start it with so long a one.
    [[nodiscard]] virtual bool open(const QUrl& url) = 0;
};

/// The desktop's own choice of program.
class DesktopURLOpener final : public URLOpener {
public:
    bool open(const QUrl& url) override;
};

} // namespace dorvantel
