#pragma once

#include "imaging/NoiseLattice.h"

#include <cstddef>
#include <cstdint>

// Plain reference implementations of noise, for non-negative coordinates: benchmarks and tests compare the
// library with them.

inline std::int32_t plainNoise2(std::int32_t x, std::int32_t y)
{
    const std::int32_t tmp = kNoiseHash[static_cast<std::size_t>(y % 256)];
    return kNoiseHash[static_cast<std::size_t>((tmp + x) % 256)];
}

inline float plainSmoothInter(float a, float b, float s)
{
    return a + (3 - (s + s)) * (s * s) * (b - a);
}

inline float plainNoise2d(float x, float y)
{
    const auto xi = static_cast<std::int32_t>(x), yi = static_cast<std::int32_t>(y);
    const float fx = x - static_cast<float>(xi), fy = y - static_cast<float>(yi);
    const auto s = static_cast<float>(plainNoise2(xi, yi));
    const auto t = static_cast<float>(plainNoise2(xi + 1, yi));
    const auto u = static_cast<float>(plainNoise2(xi, yi + 1));
    const auto v = static_cast<float>(plainNoise2(xi + 1, yi + 1));
    const float low = plainSmoothInter(s, t, fx);
    const float high = plainSmoothInter(u, v, fx);
    return plainSmoothInter(low, high, fy);
}

inline float plainPerlin2d(float x, float y, float freq, std::int32_t depth)
{
    float xa = x * freq, ya = y * freq;
    float amp = 1, fin = 0, div = 0;
    for (std::int32_t i = 0; i < depth; ++i) {
        div += 256 * amp;
        fin += plainNoise2d(xa, ya) * amp;
        amp = amp * 0.5F;
        xa = xa * 2;
        ya = ya * 2;
    }
    return fin / div;
}

/// The loop that ZRFillPerlinNoise replaces.
inline void plainFillNoise(float* samples, std::size_t width, std::size_t height, float originX,
    float originY, float step, float freq, std::int32_t depth)
{
    for (std::size_t r = 0; r < height; ++r) {
        const float y = originY + static_cast<float>(r) * step;
        for (std::size_t c = 0; c < width; ++c) {
            const float x = originX + static_cast<float>(c) * step;
            samples[r * width + c] = plainPerlin2d(x, y, freq, depth);
        }
    }
}
