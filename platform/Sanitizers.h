// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

namespace dorvantel {

/// isSanitized: whether this was built with a sanitizer, which takes terabytes of address space, several times the
/// time, and calls of the system that the program itself never makes. isSanitizedForThreads: whether that one looks for
/// races.
#if defined(__has_feature)
inline constexpr bool isSanitizedForThreads = __has_feature(thread_sanitizer);
inline constexpr bool isSanitized = __has_feature(address_sanitizer) || isSanitizedForThreads;
#else
#if defined(__SANITIZE_THREAD__)
inline constexpr bool isSanitizedForThreads = true;
#else
inline constexpr bool isSanitizedForThreads = false;
#endif
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = isSanitizedForThreads;
#endif
#endif

} // namespace dorvantel
