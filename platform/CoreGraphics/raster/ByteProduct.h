#pragma once

#include <cstdint>

// Products of coverage bytes. Plain loops, which the compiler vectorizes.

/// a x b / 255, rounded.
inline std::uint8_t byteProduct(std::uint8_t a, std::uint8_t b)
{
    const auto wide = std::uint16_t(a * b + 128);
    return std::uint8_t(std::uint16_t(wide + (wide >> 8)) >> 8);
}

inline void multiplyRow(unsigned char* __restrict row, const unsigned char* __restrict other, int count)
{
    for (int i = 0; i < count; ++i)
        row[i] = byteProduct(row[i], other[i]);
}

inline void multiplyRow(unsigned char* row, std::uint8_t factor, int count)
{
    for (int i = 0; i < count; ++i)
        row[i] = byteProduct(row[i], factor);
}
