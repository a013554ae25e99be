// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/api/Http.h"

#include <optional>
#include <string>
#include <string_view>

namespace dorvantel::service {

/// "127.0.0.1:8765" or "[::1]:8765" taken apart.
struct HostAndPort {
    std::string host; ///< without brackets
    std::optional<int> port;
};

/// Nothing when the text is no host with an optional port from 0 to 65535.
std::optional<HostAndPort> parseHostAndPort(std::string_view text);

/// localhost, 127.0.0.0/8 and ::1.
bool isLoopback(std::string_view host);

/// Keeps out what a web page in the user's browser could send: a foreign `Host` (a name that was made to point here), a
/// foreign `Origin`, and bodies of the kinds that browsers send without asking first. Judges headers only, before a
/// body is read; an answer is the refusal.
class Gate {
public:
    /// `listenHost` is the address that the service listens on: beside loopback, it is a host of its own. A wildcard
    /// address makes every literal address one.
    explicit Gate(std::string listenHost);

    std::optional<HttpAnswer> refusal(const HttpRequest& request) const;

private:
    bool isOwn(std::string_view host) const;

    std::string m_listenHost;
};

} // namespace dorvantel::service
