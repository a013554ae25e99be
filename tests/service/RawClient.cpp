// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/RawClient.h"

#include <array>
#include <utility>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace dorvantel::test {

RawClient::RawClient(int port, const std::string& host)
    : m_socket(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    EXPECT_EQ(::inet_pton(AF_INET, host.c_str(), &address.sin_addr), 1) << host;
    EXPECT_EQ(::connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
}

RawClient::~RawClient() {
    if (m_socket >= 0) {
        ::close(m_socket);
    }
}

RawClient::RawClient(RawClient&& other) noexcept
    : m_socket(std::exchange(other.m_socket, -1)) {}

bool RawClient::send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

std::string RawClient::receiveAll() const {
    std::string answer;
    std::array<char, 64 * 1024> block{};
    for (ssize_t size = 0; (size = ::recv(m_socket, block.data(), block.size(), 0)) > 0;) {
        answer.append(block.data(), static_cast<std::size_t>(size));
    }
    return answer;
}

std::string RawClient::receiveAllDripping(std::string_view drop) const {
    constexpr int pauseMs = 5;
    pollfd polled{.fd = m_socket, .events = POLLIN, .revents = 0};
    while (::poll(&polled, 1, pauseMs) == 0 && send(drop)) {
    }
    return receiveAll();
}

std::string RawClient::receiveAllFlooding(std::string_view bytes) const {
    pollfd polled{.fd = m_socket, .events = POLLIN | POLLOUT, .revents = 0};
    while (::poll(&polled, 1, -1) > 0 && (polled.revents & POLLIN) == 0) {
        if (::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT) < 0 && errno != EAGAIN) {
            break;
        }
    }
    return receiveAll();
}

bool RawClient::isSilent() const {
    pollfd polled{.fd = m_socket, .events = POLLIN, .revents = 0};
    return ::poll(&polled, 1, 0) == 0;
}

} // namespace dorvantel::test
