// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Fuzz.h"
#include "service/api/RecordsApi.h"
#include "service/http/ClientNetworks.h"
#include "service/http/Gate.h"
#include "service/http/RequestHead.h"

#include <algorithm>

using namespace dorvantel::fuzz;
using namespace dorvantel::service;

namespace {

void readHead(std::string_view text) {
    constexpr std::string_view blankLine = "\r\n\r\n";
    const std::size_t end = text.find(blankLine);
    if (end == std::string_view::npos) {
        require(endlessHead(text).status >= 400, "a head without an end is an error");
        return;
    }
    const std::string_view head = text.substr(0, end + blankLine.size());
    const auto read = readRequestHead(head);
    if (!read) {
        const int status = read.error().status;
        require(status == 400 || status == 414 || status == 431, "a head is refused as what it is");
        return;
    }
    require(read->size == head.size() && head.size() <= maxRequestHead, "a head is read whole");
    require(!(read->isChunked && read->bodyLength > 0), "a body has one end");
    require(std::ranges::count(head, '\n') == std::ranges::count(head, '\r'), "every line ends in both characters");
    require(head.find('\0') == std::string_view::npos, "a head holds no NUL");
}

} // namespace

/// What reads the parts of a request before anybody has judged them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = textOf(data, size);
    readHead(text);
    const auto hostAndPort = parseHostAndPort(text);
    require(!hostAndPort || !hostAndPort->host.empty(), "a host has a name");
    for (const char* const method : {"GET", "POST", "DELETE", "PUT"}) {
        const auto operation = route(method, text);
        require(operation || operation.error().status == 404 || operation.error().status == 405, "routes are closed");
    }
    const auto network = parseClientNetwork(text);
    require(!network || network->contains(network->base), "a network holds its own base");
    return 0;
}
