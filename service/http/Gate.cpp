// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/http/Gate.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>

#include <arpa/inet.h>

namespace dorvantel::service {

namespace {

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    return lower;
}

std::optional<int> parsePort(std::string_view text) {
    int port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size() || port < 0 || port > 65'535) {
        return std::nullopt;
    }
    return port;
}

bool isAddress(int family, std::string_view host) {
    std::array<unsigned char, 16> address{};
    return inet_pton(family, std::string(host).c_str(), address.data()) == 1;
}

bool isWildcard(std::string_view host) {
    return host == "0.0.0.0" || host == "::";
}

/// An Origin is "scheme://host[:port]", or "null" for a page that has none to show.
bool isLoopbackOrigin(std::string_view origin) {
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (origin.starts_with(scheme)) {
            const auto parsed = parseHostAndPort(origin.substr(scheme.size()));
            return parsed && isLoopback(parsed->host);
        }
    }
    return false;
}

bool isJSON(std::string_view contentType) {
    std::string_view type = contentType.substr(0, contentType.find(';'));
    while (type.ends_with(' ')) {
        type.remove_suffix(1);
    }
    return lowerCase(type) == "application/json";
}

} // namespace

std::optional<HostAndPort> parseHostAndPort(std::string_view text) {
    HostAndPort result;
    std::string_view port;
    if (text.starts_with('[')) {
        const std::size_t close = text.find(']');
        if (close == std::string_view::npos || !isAddress(AF_INET6, text.substr(1, close - 1))) {
            return std::nullopt;
        }
        result.host = text.substr(1, close - 1);
        port = text.substr(close + 1);
    } else {
        const std::size_t colon = std::min(text.find(':'), text.size());
        result.host = text.substr(0, colon);
        port = text.substr(colon);
    }
    if (!port.empty()) {
        result.port = port.starts_with(':') ? parsePort(port.substr(1)) : std::nullopt;
        if (!result.port) {
            return std::nullopt;
        }
    }
    return result.host.empty() ? std::nullopt : std::optional(result);
}

bool isLoopback(std::string_view host) {
    return lowerCase(host) == "localhost" || host == "::1" || (host.starts_with("127.") && isAddress(AF_INET, host));
}

Gate::Gate(std::string listenHost)
    : m_listenHost(lowerCase(listenHost)) {}

bool Gate::isOwn(std::string_view hostHeader) const {
    const auto parsed = parseHostAndPort(hostHeader);
    if (!parsed) {
        return false;
    }
    // A name can be made to point anywhere, a literal address cannot.
    const bool isLiteral = isAddress(AF_INET, parsed->host) || isAddress(AF_INET6, parsed->host);
    return isLoopback(parsed->host) || lowerCase(parsed->host) == m_listenHost ||
           (isWildcard(m_listenHost) && isLiteral);
}

std::optional<HttpAnswer> Gate::refusal(const HttpRequest& request) const {
    if (request.hosts.size() != 1 || !isOwn(request.hosts.front())) {
        return errorAnswer(403, "this Host is not the service's own");
    }
    if (!std::ranges::all_of(request.origins, isLoopbackOrigin)) {
        return errorAnswer(403, "requests from this Origin are refused");
    }
    const bool mustBeJSON = request.method == "POST" || request.hasBody;
    if (mustBeJSON && (!request.contentType || !isJSON(*request.contentType))) {
        return errorAnswer(415, "the body must be application/json");
    }
    if (request.isEncoded) {
        return errorAnswer(415, "the body must come without a Content-Encoding");
    }
    return std::nullopt;
}

} // namespace dorvantel::service
