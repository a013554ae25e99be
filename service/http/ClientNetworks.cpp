// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/http/ClientNetworks.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include <arpa/inet.h>

namespace dorvantel::service {

namespace {

constexpr int addressBits = 128;
constexpr int mappedBits = 96; ///< of an IPv6 address that stands for an IPv4 one, those before it
constexpr std::array<unsigned char, 12> mappedHead{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff};
constexpr std::array<unsigned char, 16> loopback{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};

ClientAddress mapped(const in_addr& address) {
    ClientAddress result;
    std::ranges::copy(mappedHead, result.bytes.begin());
    std::memcpy(result.bytes.data() + mappedHead.size(), &address, sizeof address);
    return result;
}

/// The address with nothing but zeros behind its first `prefix` bits.
ClientAddress masked(ClientAddress address, int prefix) {
    for (int i = 0; i < addressBits / 8; ++i) {
        const int kept = std::clamp(prefix - 8 * i, 0, 8);
        address.bytes[static_cast<std::size_t>(i)] &= static_cast<unsigned char>(0xff << (8 - kept));
    }
    return address;
}

std::string textOf(const ClientAddress& address) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (address.isIPv4()) {
        inet_ntop(AF_INET, address.bytes.data() + mappedHead.size(), text.data(), text.size());
    } else {
        inet_ntop(AF_INET6, address.bytes.data(), text.data(), text.size());
    }
    return text.data();
}

/// Decimal without a sign or leading zeros, at most `largest`; -1 for anything else.
int parsePrefix(std::string_view text, int largest) {
    int value = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isPlain = error == std::errc() && end == text.data() + text.size() && text == std::to_string(value);
    return isPlain && value >= 0 && value <= largest ? value : -1;
}

} // namespace

bool ClientAddress::isIPv4() const {
    return std::equal(mappedHead.begin(), mappedHead.end(), bytes.begin());
}

bool ClientAddress::isLoopback() const {
    return isIPv4() ? bytes[mappedHead.size()] == 127 : bytes == loopback;
}

std::expected<ClientAddress, std::string> parseClientAddress(std::string_view text) {
    const std::string terminated(text);
    if (terminated.find('\0') == std::string::npos) {
        in_addr four{};
        if (inet_pton(AF_INET, terminated.c_str(), &four) == 1) {
            return mapped(four);
        }
        ClientAddress six;
        if (inet_pton(AF_INET6, terminated.c_str(), six.bytes.data()) == 1) {
            return six;
        }
    }
    return std::unexpected("\"" + terminated + "\" is no address");
}

ClientAddress clientAddress(const sockaddr_storage& peer) {
    if (peer.ss_family == AF_INET) {
        sockaddr_in four{};
        std::memcpy(&four, &peer, sizeof four);
        return mapped(four.sin_addr);
    }
    ClientAddress result;
    if (peer.ss_family == AF_INET6) {
        sockaddr_in6 six{};
        std::memcpy(&six, &peer, sizeof six);
        std::memcpy(result.bytes.data(), &six.sin6_addr, result.bytes.size());
    }
    return result;
}

bool ClientNetwork::contains(const ClientAddress& address) const {
    if (address.isIPv4() && prefix < mappedBits) {
        return false;
    }
    return masked(address, prefix) == base;
}

std::expected<ClientNetwork, std::string> parseClientNetwork(std::string_view text) {
    const std::size_t slash = text.find('/');
    auto address = parseClientAddress(text.substr(0, slash));
    if (!address) {
        return std::unexpected(std::move(address.error()));
    }
    ClientNetwork network{.base = *address};
    if (slash != std::string_view::npos) {
        // 10.0.0.0/8 counts its bits from those four bytes, ::ffff:10.0.0.0/104 from all sixteen.
        const bool isFourPart = text.substr(0, slash).find(':') == std::string_view::npos;
        const int offset = isFourPart ? mappedBits : 0;
        const int prefix = parsePrefix(text.substr(slash + 1), addressBits - offset);
        if (prefix < 0) {
            return std::unexpected("\"" + std::string(text) + "\" has no prefix from 0 to " +
                                   std::to_string(addressBits - offset) + " behind its slash");
        }
        network.prefix = prefix + offset;
        const ClientAddress base = masked(*address, network.prefix);
        if (base != *address) {
            return std::unexpected("\"" + std::string(text) + "\" has bits behind its prefix; the network is " +
                                   textOf(base) + "/" + std::to_string(prefix));
        }
    }
    return network;
}

bool isAllowed(const ClientAddress& address, const std::vector<ClientNetwork>& networks) {
    return address.isLoopback() ||
           std::ranges::any_of(networks, [&](const ClientNetwork& network) { return network.contains(address); });
}

} // namespace dorvantel::service
