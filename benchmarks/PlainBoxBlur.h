#pragma once

#include <algorithm>
#include <cstdint>

/// A plain reference implementation of the box blur: benchmarks and tests compare the library with it.
/// Requires a `boxDim` whose square, modulo 2^32, is not 0.
inline void plainBoxBlur(const std::uint32_t* src, std::uint32_t* dst, std::int64_t width,
    std::int64_t height, std::int32_t boxDim)
{
    const auto* source = reinterpret_cast<const std::uint8_t*>(src);
    auto* destination = reinterpret_cast<std::uint8_t*>(dst);
    const auto area = static_cast<std::uint32_t>(boxDim) * static_cast<std::uint32_t>(boxDim);
    const std::int64_t half = boxDim / 2;
    for (std::int64_t y = 0; y < height; ++y) {
        for (std::int64_t x = 0; x < width; ++x) {
            std::uint32_t sums[4]{};
            for (std::int64_t yy = y - half; yy < y - half + boxDim; ++yy) {
                for (std::int64_t xx = x - half; xx < x - half + boxDim; ++xx) {
                    const std::int64_t row = std::clamp<std::int64_t>(yy, 0, height - 1);
                    const std::int64_t column = std::clamp<std::int64_t>(xx, 0, width - 1);
                    const std::uint8_t* pixel = source + 4 * (row * width + column);
                    for (int channel = 0; channel < 4; ++channel)
                        sums[channel] += pixel[channel];
                }
            }
            for (int channel = 0; channel < 4; ++channel)
                *destination++ = static_cast<std::uint8_t>(sums[channel] / area);
        }
    }
}
