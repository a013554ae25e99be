// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/TextBlocks.h"

#include <algorithm>
#include <cstdint>

#include <sys/mman.h>
#include <unistd.h>

namespace dorvantel {

namespace {

/// Asks the kernel to back the memory with few large pages instead of many small ones; it may decline.
void preferLargePages(const char16_t* begin, const char16_t* end) {
#ifdef MADV_HUGEPAGE
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t first = (reinterpret_cast<std::uintptr_t>(begin) + page - 1) / page * page;
    const std::uintptr_t last = reinterpret_cast<std::uintptr_t>(end) / page * page;
    if (first < last) {
        madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
    }
#endif
}

} // namespace

void TextBlocks::addBlock(qsizetype used, qsizetype units) {
    // Small at first, so that a short answer takes little.
    constexpr qsizetype smallest = qsizetype{4} * 1024;
    constexpr qsizetype largest = qsizetype{4} * 1024 * 1024;
    m_blockUnits = std::clamp(4 * m_blockUnits, smallest, largest);

    QStringPrivate block(QTypedArrayData<char16_t>::allocate(std::max(m_blockUnits, units)));
    Q_CHECK_PTR(block.data());
    std::copy_n(m_at, used, block.data());
    m_block = std::move(block);
    m_at = m_block.data();
    m_end = m_at + m_block.d->allocatedCapacity();
    if (m_blockUnits == largest) {
        preferLargePages(m_at, m_end);
    }
}

QString TextBlocks::take(qsizetype units) {
    m_at[units] = u'\0';
    m_block.d->ref();
    QString text(QStringPrivate(m_block.d, m_at, units));
    m_at += units + 1;
    return text;
}

} // namespace dorvantel
