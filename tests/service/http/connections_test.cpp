// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/http/Connections.h"

#include <array>
#include <atomic>
#include <latch>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace dorvantel::service;

namespace {

/// Two ends of a connection; the first is for the service.
std::array<int, 2> socketPair() {
    std::array<int, 2> ends{};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
    return ends;
}

/// Serves like a client that stays: until its connection is cut or the other side goes.
void untilTheEnd(int socket) {
    char byte = 0;
    while (::recv(socket, &byte, 1, 0) > 0) {
    }
}

class ConnectionsTest : public testing::Test {
protected:
    /// Whether a connection from the address is taken. It stays open.
    bool add(Connections& connections, const char* address) {
        const auto [mine, other] = socketPair();
        m_others.push_back(other);
        const bool isTaken = connections.add(mine, *parseClientAddress(address));
        if (!isTaken) {
            ::close(mine);
        }
        return isTaken;
    }
    ~ConnectionsTest() override {
        for (const int other : m_others) {
            ::close(other);
        }
    }

private:
    std::vector<int> m_others;
};

} // namespace

TEST_F(ConnectionsTest, AllAreServedAtOnce) {
    constexpr int count = 20;
    std::latch together(count);
    Connections connections({.open = count}, [&](int) { together.arrive_and_wait(); });
    for (int i = 0; i < count; ++i) {
        EXPECT_TRUE(add(connections, "127.0.0.1"));
    }
    together.wait();
}

TEST_F(ConnectionsTest, NoMoreAreTakenThanTheLimit) {
    Connections connections({.open = 2}, untilTheEnd);
    EXPECT_TRUE(add(connections, "127.0.0.1"));
    EXPECT_TRUE(add(connections, "10.0.0.1"));
    EXPECT_FALSE(add(connections, "127.0.0.1"));
}

TEST_F(ConnectionsTest, OneClientCannotTakeThemAll) {
    Connections connections({.open = 100, .openPerClient = 2}, untilTheEnd);
    EXPECT_TRUE(add(connections, "10.0.0.1"));
    EXPECT_TRUE(add(connections, "10.0.0.1"));
    EXPECT_FALSE(add(connections, "10.0.0.1"));
    EXPECT_TRUE(add(connections, "10.0.0.2"));
}

TEST_F(ConnectionsTest, NetworkOfOneIPv6MachineIsOneClient) {
    Connections connections({.open = 100, .openPerClient = 2}, untilTheEnd);
    EXPECT_TRUE(add(connections, "fd00::1"));
    EXPECT_TRUE(add(connections, "fd00::2"));
    EXPECT_FALSE(add(connections, "fd00::ffff:3"));
    EXPECT_TRUE(add(connections, "fd00:0:0:1::1"));
}

TEST_F(ConnectionsTest, LoopbackIsNoSingleClient) {
    Connections connections({.open = 100, .openPerClient = 2}, untilTheEnd);
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(add(connections, "127.0.0.1"));
        EXPECT_TRUE(add(connections, "::1"));
    }
}

TEST_F(ConnectionsTest, EndCutsAllAndTakesNoMore) {
    std::atomic<int> ended = 0;
    Connections connections({}, [&](int socket) {
        untilTheEnd(socket);
        ++ended;
    });
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(add(connections, "127.0.0.1"));
    }
    connections.end();
    EXPECT_EQ(ended, 10);
    EXPECT_FALSE(add(connections, "127.0.0.1"));
}
