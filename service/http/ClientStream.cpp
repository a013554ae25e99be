// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/http/ClientStream.h"

#include <array>
#include <cerrno>

#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

namespace dorvantel::service {

namespace {

constexpr std::size_t blockSize = std::size_t{16} * 1024;
/// Small enough that a slow client is seen to take something before its patience ends.
constexpr int sendBuffer = 128 * 1024;
/// What a chunked body may have beside its content.
constexpr std::size_t chunkOverhead = std::size_t{64} * 1024;

const char* reasonOf(int status) {
    switch (status) {
    case 408:
        return "Request Timeout";
    case 414:
        return "URI Too Long";
    case 431:
        return "Request Header Fields Too Large";
    default:
        return "Bad Request";
    }
}

} // namespace

ClientStream::ClientStream(int socket, const ClientLimits& limits)
    : m_socket(socket)
    , m_limits(limits)
    , m_reading(limits.idle)
    , m_writing(limits.patience) {
    const int yes = 1;
    setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    setsockopt(m_socket, SOL_SOCKET, SO_SNDBUF, &sendBuffer, sizeof sendBuffer);
}

std::expected<RequestHead, std::optional<HttpAnswer>> ClientStream::nextRequest() {
    constexpr std::string_view blankLine = "\r\n\r\n";
    m_received.erase(0, m_at);
    m_at = 0;
    m_reading = Patience(m_limits.idle);
    if (m_received.empty() && receive() != Received::Bytes) {
        return std::unexpected(std::nullopt);
    }
    m_reading = Patience(m_limits.patience);
    std::size_t searched = 0;
    std::size_t end = 0;
    while ((end = m_received.find(blankLine, searched)) == std::string::npos) {
        if (m_received.size() > maxRequestHead) {
            return std::unexpected(endlessHead(m_received));
        }
        searched = m_received.size() - std::min(m_received.size(), blankLine.size() - 1);
        const Received received = receive();
        if (received == Received::Late) {
            return std::unexpected(errorAnswer(408, "the request did not come in time"));
        }
        if (received == Received::End) {
            return std::unexpected(std::nullopt);
        }
    }
    const auto head = readRequestHead(std::string_view(m_received).substr(0, end + blankLine.size()));
    if (!head) {
        return std::unexpected(head.error());
    }
    // Of a body that is too large, not a byte is read.
    m_left = head->size + (head->isChunked                     ? 2 * m_limits.body + chunkOverhead
                           : head->bodyLength <= m_limits.body ? head->bodyLength
                                                               : 0);
    m_reading = m_writing = Patience(m_limits.patience);
    return *head;
}

void ClientStream::sendLast(const HttpAnswer& answer) {
    const std::string text = "HTTP/1.1 " + std::to_string(answer.status) + " " + reasonOf(answer.status) +
                             "\r\nConnection: close\r\nContent-Type: application/json; charset=utf-8\r\n"
                             "Content-Length: " +
                             std::to_string(answer.body.size()) + "\r\n\r\n" + answer.body;
    m_writing = Patience(m_limits.patience);
    write(text.data(), text.size());
}

void ClientStream::linger() {
    ::shutdown(m_socket, SHUT_WR);
    Patience patience(m_limits.patience);
    std::array<char, blockSize> unread{};
    for (;;) {
        const ssize_t size = ::recv(m_socket, unread.data(), unread.size(), 0);
        const bool mayCome = size > 0 || (size < 0 && errno == EAGAIN);
        if (!mayCome || !wait(POLLIN, patience)) {
            return;
        }
    }
}

ssize_t ClientStream::read(char* to, std::size_t size) {
    size = static_cast<std::size_t>(std::min<std::uint64_t>(size, m_left));
    if (size == 0) {
        return -1;
    }
    if (m_at == m_received.size()) {
        m_received.clear();
        m_at = 0;
        if (receive() != Received::Bytes) {
            return -1;
        }
    }
    const std::size_t taken = m_received.copy(to, size, m_at);
    m_at += taken;
    m_left -= taken;
    return static_cast<ssize_t>(taken);
}

ssize_t ClientStream::write(const char* from, std::size_t size) {
    for (std::size_t sent = 0; sent < size && !m_isBroken;) {
        const ssize_t result = ::send(m_socket, from + sent, size - sent, MSG_NOSIGNAL);
        if (result >= 0) {
            sent += static_cast<std::size_t>(result);
            m_writing.moved(static_cast<std::size_t>(result));
        } else {
            m_isBroken = errno != EAGAIN || !wait(POLLOUT, m_writing);
        }
    }
    return m_isBroken ? -1 : static_cast<ssize_t>(size);
}

ClientStream::Received ClientStream::receive() {
    std::array<char, blockSize> block{};
    for (;;) {
        const ssize_t size = ::recv(m_socket, block.data(), block.size(), 0);
        if (size > 0) {
            m_received.append(block.data(), static_cast<std::size_t>(size));
            if (m_left > 0) {
                m_reading.moved(static_cast<std::size_t>(size)); // of a body; a head has to come as a whole in time
            }
            return Received::Bytes;
        }
        if (size == 0 || errno != EAGAIN) {
            return Received::End;
        }
        if (!wait(POLLIN, m_reading)) {
            return Received::Late;
        }
    }
}

bool ClientStream::wait(short events, Patience& patience) {
    using Clock = std::chrono::steady_clock;
    pollfd polled{.fd = m_socket, .events = events, .revents = 0};
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(patience.left());
    const auto begin = Clock::now();
    const int ready = left.count() > 0 ? ::poll(&polled, 1, static_cast<int>(left.count())) : 0;
    patience.waited(std::chrono::duration_cast<Patience::Duration>(Clock::now() - begin));
    return ready > 0 || (ready < 0 && errno == EINTR);
}

} // namespace dorvantel::service
