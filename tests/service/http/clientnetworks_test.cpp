// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/http/ClientNetworks.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

using namespace dorvantel::service;

namespace {

bool contains(std::string_view network, std::string_view address) {
    const auto parsed = parseClientNetwork(network);
    EXPECT_TRUE(parsed) << network << ": " << parsed.error();
    return parsed && parsed->contains(*parseClientAddress(address));
}

std::string errorOf(std::string_view network) {
    const auto parsed = parseClientNetwork(network);
    return parsed ? "" : parsed.error();
}

} // namespace

TEST(ClientNetwork, HoldsTheAddressesOfItsPrefixAndNoOthers) {
    EXPECT_TRUE(contains("192.168.1.0/24", "192.168.1.0"));
    EXPECT_TRUE(contains("192.168.1.0/24", "192.168.1.255"));
    EXPECT_FALSE(contains("192.168.1.0/24", "192.168.0.255"));
    EXPECT_FALSE(contains("192.168.1.0/24", "192.168.2.0"));
    EXPECT_TRUE(contains("fd00::/8", "fdff:1::2"));
    EXPECT_FALSE(contains("fd00::/8", "fe00::"));
}

TEST(ClientNetwork, PrefixMayEndWithinAByte) {
    EXPECT_TRUE(contains("172.16.0.0/12", "172.31.255.255"));
    EXPECT_FALSE(contains("172.16.0.0/12", "172.32.0.0"));
    EXPECT_TRUE(contains("2001:db8::/33", "2001:db8:7fff::1"));
    EXPECT_FALSE(contains("2001:db8::/33", "2001:db8:8000::1"));
}

TEST(ClientNetwork, WholePrefixIsOneAddress) {
    EXPECT_TRUE(contains("10.1.2.3/32", "10.1.2.3"));
    EXPECT_FALSE(contains("10.1.2.3/32", "10.1.2.2"));
    EXPECT_TRUE(contains("fd00::1/128", "fd00::1"));
    EXPECT_FALSE(contains("fd00::1/128", "fd00::"));
}

TEST(ClientNetwork, AddressWithoutAPrefixIsThatAddress) {
    EXPECT_EQ(parseClientNetwork("10.1.2.3"), parseClientNetwork("10.1.2.3/32"));
    EXPECT_EQ(parseClientNetwork("fd00::1"), parseClientNetwork("fd00::1/128"));
}

TEST(ClientNetwork, EmptyPrefixIsEveryAddressOfItsKindOnly) {
    EXPECT_TRUE(contains("0.0.0.0/0", "255.255.255.255"));
    EXPECT_TRUE(contains("0.0.0.0/0", "0.0.0.0"));
    EXPECT_FALSE(contains("0.0.0.0/0", "fd00::1"));
    EXPECT_TRUE(contains("::/0", "fd00::1"));
    EXPECT_FALSE(contains("::/0", "10.1.2.3"));
}

TEST(ClientNetwork, MappedFormIsTheIPv4Network) {
    EXPECT_EQ(parseClientNetwork("::ffff:10.0.0.0/104"), parseClientNetwork("10.0.0.0/8"));
    EXPECT_EQ(parseClientNetwork("::ffff:0:0/96"), parseClientNetwork("0.0.0.0/0"));
    EXPECT_TRUE(contains("10.0.0.0/8", "::ffff:10.1.2.3"));
    EXPECT_TRUE(contains("::ffff:10.1.2.3", "10.1.2.3"));
}

TEST(ClientNetwork, BitsBehindThePrefixAreRefusedWithTheNetworkThatWasPerhapsMeant) {
    EXPECT_EQ(errorOf("192.168.1.5/24"),
              "\"192.168.1.5/24\" has bits behind its prefix; the network is 192.168.1.0/24");
    EXPECT_EQ(errorOf("10.0.0.1/0"), "\"10.0.0.1/0\" has bits behind its prefix; the network is 0.0.0.0/0");
    EXPECT_EQ(errorOf("fd00::1/64"), "\"fd00::1/64\" has bits behind its prefix; the network is fd00::/64");
    EXPECT_EQ(errorOf("::ffff:0:0/90"), "\"::ffff:0:0/90\" has bits behind its prefix; the network is ::ffc0:0:0/90");
}

TEST(ClientNetwork, BadPrefixIsRefused) {
    for (const char* const text : {"10.0.0.0/", "10.0.0.0/33", "10.0.0.0/-1", "10.0.0.0/+8", "10.0.0.0/08",
                                   "10.0.0.0/8 ", "10.0.0.0/ 8", "10.0.0.0/8/8", "10.0.0.0/x", "10.0.0.0/255.0.0.0"}) {
        EXPECT_EQ(errorOf(text), "\"" + std::string(text) + "\" has no prefix from 0 to 32 behind its slash");
    }
    EXPECT_EQ(errorOf("::/129"), "\"::/129\" has no prefix from 0 to 128 behind its slash");
    EXPECT_EQ(errorOf("::/99999999999"), "\"::/99999999999\" has no prefix from 0 to 128 behind its slash");
}

TEST(ClientNetwork, WhatIsNoAddressIsRefused) {
    for (const std::string_view text :
         {"", "10", "10/8", "10.0.0", "10.0.0.0.0", "010.0.0.0", "256.0.0.0", " 10.0.0.0", "localhost", "office",
          "fd00", "fd00:::1", "[fd00::1]", "fe80::1%eth0", "0x0a000000", "10.0.0.0:80", "*"}) {
        EXPECT_EQ(errorOf(text), "\"" + std::string(text.substr(0, text.find('/'))) + "\" is no address");
    }
    EXPECT_FALSE(parseClientNetwork(std::string_view("10.0.0.0\0/8", 11)));
}

TEST(ClientAddress, LoopbackIsAllOf127AndOneOfIPv6) {
    for (const char* const address : {"127.0.0.1", "127.255.0.9", "::1", "::ffff:127.0.0.1"}) {
        EXPECT_TRUE(parseClientAddress(address)->isLoopback()) << address;
    }
    for (const char* const address : {"128.0.0.1", "::", "::2", "::127.0.0.1", "0.0.0.0"}) {
        EXPECT_FALSE(parseClientAddress(address)->isLoopback()) << address;
    }
}

TEST(ClientAddress, ComesFromWhatAcceptGives) {
    sockaddr_storage peer{};
    auto& four = reinterpret_cast<sockaddr_in&>(peer);
    four.sin_family = AF_INET;
    four.sin_port = 99;
    inet_pton(AF_INET, "10.1.2.3", &four.sin_addr);
    EXPECT_EQ(clientAddress(peer), *parseClientAddress("10.1.2.3"));

    peer = {};
    auto& six = reinterpret_cast<sockaddr_in6&>(peer);
    six.sin6_family = AF_INET6;
    inet_pton(AF_INET6, "::ffff:10.1.2.3", &six.sin6_addr);
    EXPECT_EQ(clientAddress(peer), *parseClientAddress("10.1.2.3"));

    peer = {};
    peer.ss_family = AF_UNIX;
    EXPECT_EQ(clientAddress(peer), *parseClientAddress("::"));
}

TEST(IsAllowed, LoopbackAlwaysAndElseWhoeverANetworkHolds) {
    const std::vector networks{*parseClientNetwork("10.0.0.0/8"), *parseClientNetwork("fd00::/8")};
    for (const char* const address : {"127.0.0.1", "::1", "10.9.9.9", "fd00::1"}) {
        EXPECT_TRUE(isAllowed(*parseClientAddress(address), networks)) << address;
    }
    for (const char* const address : {"11.0.0.1", "192.168.1.1", "fe80::1"}) {
        EXPECT_FALSE(isAllowed(*parseClientAddress(address), networks)) << address;
    }
    EXPECT_TRUE(isAllowed(*parseClientAddress("127.0.0.1"), {}));
    EXPECT_FALSE(isAllowed(*parseClientAddress("10.9.9.9"), {}));
}
