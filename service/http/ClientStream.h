// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/http/Patience.h"
#include "service/http/RequestHead.h"

#include <expected>
#include <optional>
#include <string>

#include <httplib.h>

namespace dorvantel::service {

/// A client's connection as the HTTP library reads and writes it: one request after the other, each with a known end
/// behind which the library cannot read, and none slower than the limits have it. The socket is its maker's. One
/// thread.
class ClientStream final : public httplib::Stream {
public:
    /// `socket` does not block.
    ClientStream(int socket, const ClientLimits& limits);

    /// Waits for the head of the next request, which the library reads after that. An error is the answer to what came
    /// instead of one, or nothing when nothing came.
    std::expected<RequestHead, std::optional<HttpAnswer>> nextRequest();
    /// Whether the request was read to its end, so that another one can follow.
    bool isAtRequestEnd() const { return m_left == 0; }
    /// Sends an answer that the library knows nothing of; the connection's last.
    void sendLast(const HttpAnswer& answer);
    /// Lets the client read to the end what was sent: data that comes on a closed connection would make its system
    /// forget the answer.
    void linger();

    bool is_readable() const override { return true; }
    bool is_writable() const override { return !m_isBroken; }
    ssize_t read(char* to, std::size_t size) override;
    ssize_t write(const char* from, std::size_t size) override;
    void get_remote_ip_and_port(std::string&, int&) const override {}
    void get_local_ip_and_port(std::string&, int&) const override {}
    socket_t socket() const override { return m_socket; }

private:
    enum class Received { Bytes, End, Late };

    Received receive();
    bool wait(short events, Patience& patience);

    int m_socket;
    ClientLimits m_limits;
    Patience m_reading;
    Patience m_writing;
    std::string m_received; ///< what came and was not dropped yet
    std::size_t m_at = 0;   ///< how much of it was read
    std::uint64_t m_left = 0;
    bool m_isBroken = false;
};

} // namespace dorvantel::service
