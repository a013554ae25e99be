// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/service/HttpServerFixture.h"

namespace dorvantel::test {

std::string HttpServerTest::raw(const std::string& bytes, End end) const {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(server.port()));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL), std::ssize(bytes));
    if (end == End::HalfClose) {
        ::shutdown(socket, SHUT_WR);
    }
    std::string answer;
    char buffer[4096];
    for (ssize_t size = 0; (size = ::recv(socket, buffer, sizeof buffer, 0)) > 0;) {
        answer.append(buffer, static_cast<std::size_t>(size));
    }
    ::close(socket);
    return answer;
}

} // namespace dorvantel::test
