// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>

namespace dorvantel::service {

/// How many bytes of something may be held at once, by all together. Any thread; must outlive its shares.
class ByteBudget {
public:
    explicit ByteBudget(std::size_t bytes)
        : m_left(bytes) {}

    /// What one holder has taken; given back with this object. One thread.
    class Share {
    public:
        explicit Share(ByteBudget& budget)
            : m_budget(budget) {}
        ~Share() { m_budget.m_left += m_taken; }
        Share(const Share&) = delete;
        Share& operator=(const Share&) = delete;

        /// False, with nothing taken, when less is left.
        bool take(std::size_t bytes) {
            for (std::size_t left = m_budget.m_left; left >= bytes;) {
                if (m_budget.m_left.compare_exchange_weak(left, left - bytes)) {
                    m_taken += bytes;
                    return true;
                }
            }
            return false;
        }

    private:
        ByteBudget& m_budget;
        std::size_t m_taken = 0;
    };

private:
    std::atomic<std::size_t> m_left;
};

} // namespace dorvantel::service
