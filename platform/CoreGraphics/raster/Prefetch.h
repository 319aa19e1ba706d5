#pragma once

#include <cstddef>
#include <cstdint>

/// Requests memory that is needed later, `distance` bytes from an address: nothing is read, and the distance
/// may lead anywhere.
inline void prefetch(const unsigned char* address, std::ptrdiff_t distance)
{
    const std::uintptr_t needed = std::uintptr_t(address) + std::uintptr_t(distance);
    __builtin_prefetch(reinterpret_cast<const void*>(needed)); // NOLINT(performance-no-int-to-ptr)
}

/// The bytes that are requested together, on all common processors.
inline constexpr std::ptrdiff_t kCacheLine = 64;

/// Where pixels are too far apart in memory for the processor to foresee them, later ones are requested for
/// one pixel of so many.
inline constexpr std::size_t kPixelsPerPrefetch = 4;
