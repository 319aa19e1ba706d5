#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// A number of 1 to 32 bits, the highest one first, that starts anywhere in a byte. The caller makes sure
/// that all its bits lie inside.
inline std::uint32_t bitsAt(std::string_view bytes, std::size_t position, std::size_t bits)
{
    const std::size_t end = position + bits;
    std::uint64_t value = 0;
    for (std::size_t i = position / 8; i < (end + 7) / 8; ++i)
        value = value << 8 | std::uint8_t(bytes[i]);
    const std::uint64_t mask = (std::uint64_t(1) << bits) - 1;
    return std::uint32_t(value >> ((8 - end % 8) % 8) & mask);
}
