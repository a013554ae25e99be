// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

#include <netinet/in.h>
#include <sys/socket.h>

namespace dorvantel::service {

/// An IPv6 address in network order. IPv4 addresses are kept in their IPv6-mapped form, so that a client is the same
/// one on whichever kind of socket it comes.
struct ClientAddress {
    std::array<unsigned char, 16> bytes{};

    bool isIPv4() const;
    bool isLoopback() const; ///< 127.0.0.0/8 or ::1

    bool operator==(const ClientAddress&) const = default;
};

/// Nothing but an address: no name, no port, no zone. IPv4 in its four-part form only.
std::expected<ClientAddress, std::string> parseClientAddress(std::string_view text);

/// The peer's address as `accept` gives it; of another family than IPv4 and IPv6, the unspecified address, which no
/// network but ::/0 holds.
ClientAddress clientAddress(const sockaddr_storage& peer);

/// A range of addresses. An IPv4 address is only in IPv4 networks: ::/0 is every IPv6 client and no other.
struct ClientNetwork {
    ClientAddress base;
    int prefix = 128; ///< of the IPv6 form: 96 more than an IPv4 network's own

    bool contains(const ClientAddress& address) const;
    bool operator==(const ClientNetwork&) const = default;
};

/// Reads CIDR notation, "192.168.1.0/24" or "fd00::/8"; without a prefix it is one address. An address with bits
/// behind the prefix is refused, because nobody can tell which network was meant. The error is a sentence.
std::expected<ClientNetwork, std::string> parseClientNetwork(std::string_view text);

/// Whether a client may connect: from loopback always, else when one of the networks has it.
bool isAllowed(const ClientAddress& address, const std::vector<ClientNetwork>& networks);

} // namespace dorvantel::service
