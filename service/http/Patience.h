// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>

namespace dorvantel::service {

/// How much longer a client may be waited for. Waiting uses it up, and what the client sends or takes gives it back,
/// never beyond what it was at first: so neither a pause may be longer than that, nor may a client that is never silent
/// drip its bytes for ever. The service's own work costs the client nothing.
class Patience {
public:
    using Duration = std::chrono::microseconds;

    /// Whoever moves fewer bytes a second than this loses patience for good.
    static constexpr std::size_t bytesPerSecond = std::size_t{16} * 1024;

    explicit Patience(Duration whole)
        : m_whole(whole)
        , m_left(whole) {}

    Duration left() const { return m_left; }
    void waited(Duration time) { m_left = std::max(m_left - time, Duration::zero()); }
    void moved(std::size_t bytes) {
        constexpr std::size_t perSecond = std::chrono::seconds(1) / Duration(1);
        m_left = std::min(m_left + Duration(bytes * perSecond / bytesPerSecond), m_whole);
    }

private:
    Duration m_whole;
    Duration m_left;
};

/// What a client may cost.
struct ClientLimits {
    std::chrono::milliseconds idle{2'000};      ///< without a byte of a next request
    std::chrono::milliseconds patience{10'000}; ///< for a whole head; for a body and an answer as Patience has it
    std::size_t body = 0;                       ///< in bytes
};

} // namespace dorvantel::service
