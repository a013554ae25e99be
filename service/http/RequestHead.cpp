// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/http/RequestHead.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include <strings.h>

namespace dorvantel::service {

namespace {

constexpr std::string_view lineEnd = "\r\n";

HttpAnswer malformed() {
    return errorAnswer(400, "the request is not understood");
}

HttpAnswer tooLarge() {
    return errorAnswer(431, "the headers are too many or too long");
}

bool equalsIgnoringCase(std::string_view left, std::string_view right) {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

bool isTokenCharacter(char character) {
    constexpr std::string_view others = "!#$%&'*+-.^_`|~";
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'z') ||
           (character >= 'A' && character <= 'Z') || others.find(character) != std::string_view::npos;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = std::min(text.find_first_not_of(blanks), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

/// METHOD TARGET HTTP/1.x with single spaces between.
bool isRequestLine(std::string_view line) {
    const std::size_t methodEnd = line.find(' ');
    const std::size_t targetEnd = line.rfind(' ');
    if (methodEnd == std::string_view::npos || targetEnd <= methodEnd + 1) {
        return false;
    }
    const std::string_view method = line.substr(0, methodEnd);
    const std::string_view target = line.substr(methodEnd + 1, targetEnd - methodEnd - 1);
    const std::string_view version = line.substr(targetEnd + 1);
    return methodEnd > 0 && std::ranges::all_of(method, isTokenCharacter) &&
           target.find_first_of(" \t") == std::string_view::npos && (version == "HTTP/1.1" || version == "HTTP/1.0");
}

struct Lengths {
    RequestHead head;
    bool hasLength = false;
};

/// Takes one header line into account; false when it makes no sense.
bool readHeader(std::string_view line, Lengths& lengths) {
    const std::size_t colon = line.find(':');
    const std::string_view name = line.substr(0, colon);
    if (colon == std::string_view::npos || name.empty() || !std::ranges::all_of(name, isTokenCharacter)) {
        return false;
    }
    const std::string_view value = trimmed(line.substr(colon + 1));
    if (equalsIgnoringCase(name, "Content-Length")) {
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), lengths.head.bodyLength);
        const bool isNumber = error == std::errc() && end == value.data() + value.size();
        return isNumber && !std::exchange(lengths.hasLength, true) && !lengths.head.isChunked;
    }
    if (equalsIgnoringCase(name, "Transfer-Encoding")) {
        return equalsIgnoringCase(value, "chunked") && !std::exchange(lengths.head.isChunked, true) &&
               !lengths.hasLength;
    }
    return true;
}

bool isLineText(char character) {
    return character == '\t' || static_cast<unsigned char>(character) >= ' ';
}

} // namespace

std::expected<RequestHead, HttpAnswer> readRequestHead(std::string_view head) {
    if (head.size() > maxRequestHead) {
        return std::unexpected(endlessHead(head));
    }
    Lengths lengths;
    lengths.head.size = head.size();
    for (std::size_t lines = 0;; ++lines) {
        const std::size_t end = head.find(lineEnd);
        const std::string_view line = head.substr(0, end);
        if (end == std::string_view::npos || !std::ranges::all_of(line, isLineText)) {
            return std::unexpected(malformed());
        }
        head.remove_prefix(end + lineEnd.size());
        if (lines == 0 && line.size() > maxRequestLine) {
            return std::unexpected(errorAnswer(414, "the address is too long"));
        }
        if (lines > 0 && line.empty()) {
            return lengths.head;
        }
        if (lines > maxHeaderLines || (lines > 0 && line.size() > maxRequestLine)) {
            return std::unexpected(tooLarge());
        }
        if (!(lines == 0 ? isRequestLine(line) : readHeader(line, lengths))) {
            return std::unexpected(malformed());
        }
    }
}

HttpAnswer endlessHead(std::string_view received) {
    const std::size_t line = std::min(received.find('\n'), received.size());
    return line > maxRequestLine ? errorAnswer(414, "the address is too long") : tooLarge();
}

} // namespace dorvantel::service
