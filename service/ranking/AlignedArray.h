// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>

#include <sys/mman.h>

namespace dorvantel::service {

/// Memory for numbers that are scanned: never copied to grow, not touched before it is written, so that what is not
/// used costs nothing. Large ones begin where the kernel can map them with large pages, which spares a scan most of
/// its address look-ups.
template <typename Number>
    requires std::is_trivial_v<Number>
class AlignedArray {
public:
    explicit AlignedArray(std::size_t size) {
        constexpr std::size_t cacheLine = 64;
        constexpr std::size_t largePage = std::size_t{2} << 20;
        const std::size_t bytes = size * sizeof(Number);
        const std::size_t alignment = bytes < largePage ? cacheLine : largePage;
        const std::size_t whole = (bytes + alignment - 1) / alignment * alignment;
        m_numbers.reset(static_cast<Number*>(std::aligned_alloc(alignment, whole)));
        if (!m_numbers && whole > 0) {
            throw std::bad_alloc();
        }
        if (alignment == largePage) {
            madvise(m_numbers.get(), whole, MADV_HUGEPAGE); // a wish: without it the scan is only slower
        }
    }

    Number* data() { return m_numbers.get(); }
    const Number* data() const { return m_numbers.get(); }

private:
    struct Free {
        void operator()(Number* numbers) const { std::free(numbers); }
    };
    std::unique_ptr<Number[], Free> m_numbers;
};

} // namespace dorvantel::service
