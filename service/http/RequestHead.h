// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/api/Http.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <string_view>

namespace dorvantel::service {

constexpr std::size_t maxRequestLine = 8'192;
constexpr std::size_t maxHeaderLines = 100;
constexpr std::size_t maxRequestHead = std::size_t{32} * 1024; ///< request line and headers together

/// What a request's head says of where the request ends.
struct RequestHead {
    std::size_t size = 0; ///< with the blank line
    std::uint64_t bodyLength = 0;
    bool isChunked = false; ///< the body says itself where it ends
};

/// Reads the head of a request up to and with its blank line, before the HTTP library sees it. Everything is refused of
/// which two readers could think differently, a proxy in front and the library for instance: bare line ends, folded
/// headers, several lengths or one beside chunks. The error is the answer.
std::expected<RequestHead, HttpAnswer> readRequestHead(std::string_view head);

/// The answer to a head that has not ended within `maxRequestHead` bytes.
HttpAnswer endlessHead(std::string_view received);

} // namespace dorvantel::service
