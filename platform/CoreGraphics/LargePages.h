#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

/// Asks the system to provide large memory that was not used before in large pages, which takes a small part
/// of the time of many page faults. Only a hint; nothing for less than a few of such pages.
inline void adviseLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size)
{
#if defined(__linux__)
    constexpr std::uintptr_t kLargePage = std::uintptr_t{1} << 21;
    const auto start = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t first = (start + kLargePage - 1) / kLargePage * kLargePage;
    const std::uintptr_t end = (start + size) / kLargePage * kLargePage;
    if (memory && size >= 2 * kLargePage && first < end)
        madvise(static_cast<char*>(memory) + (first - start), end - first, MADV_HUGEPAGE);
#endif
}
