// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace dorvantel::test {

/// A connection that sends whatever bytes a test likes.
class RawClient {
public:
    explicit RawClient(int port, const std::string& host = "127.0.0.1");
    ~RawClient();
    RawClient(RawClient&& other) noexcept;
    RawClient& operator=(RawClient&&) = delete;

    bool isConnected() const { return m_socket >= 0; }
    /// False once the other side has closed the connection.
    bool send(std::string_view bytes) const;
    /// What comes until the other side closes the connection.
    std::string receiveAll() const;
    /// The same, while `drop` is sent again and again with a little time between.
    std::string receiveAllDripping(std::string_view drop) const;
    /// The same, while `bytes` are sent as fast as they are taken.
    std::string receiveAllFlooding(std::string_view bytes) const;
    /// Whether nothing came so far, not even the end.
    bool isSilent() const;

private:
    int m_socket = -1;
};

} // namespace dorvantel::test
