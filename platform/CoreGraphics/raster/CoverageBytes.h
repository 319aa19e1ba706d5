#pragma once

#include <cstdint>

/// Coverage, 0 to 1, as a byte. Converts by way of 16 bits, so that it rounds like SolidRows.
inline unsigned char coverageByte(float coverage)
{
    const float value = coverage * 65535.0F + 0.5F;
    const auto fixed = std::uint16_t(int(value < 65535.0F ? value : 65535.0F));
    const auto scaled = std::uint16_t((65535U * fixed) >> 16);
    return static_cast<unsigned char>(std::uint16_t(scaled - (scaled >> 8) + 128) >> 8);
}
