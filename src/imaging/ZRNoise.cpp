#include <KorvidAppKit/ZRNoise.h>

#include "imaging/NoiseLattice.h"

#include <limits>

std::int32_t noise2(std::int32_t x, std::int32_t y)
{
    const auto offset = static_cast<std::uint32_t>(kNoiseHash[noiseIndex(y)]);
    return kNoiseHash[(offset + static_cast<std::uint32_t>(x)) & 255]; // unsigned: x may be the greatest
}

float lin_inter(float a, float b, float s)
{
    return a + (b - a) * s;
}

float smooth_inter(float a, float b, float s)
{
    return a + noiseWeight(s) * (b - a);
}

float noise2d(float x, float y)
{
    const NoiseCoordinate column(x), row(y);
    const auto value = [&](std::int32_t right, std::int32_t up) {
        return static_cast<float>(noise2(column.whole + right, row.whole + up));
    };
    const float low = smooth_inter(value(0, 0), value(1, 0), column.fraction);
    const float high = smooth_inter(value(0, 1), value(1, 1), column.fraction);
    return smooth_inter(low, high, row.fraction);
}

float perlin2d(float x, float y, float freq, std::int32_t depth)
{
    if (depth <= 0)
        return std::numeric_limits<float>::quiet_NaN(); // 0 / 0, whose sign differs between machines

    float xa = x * freq, ya = y * freq;
    float amplitude = 1, sum = 0, divisor = 0;
    for (std::int32_t layer = noiseLayers(depth); layer > 0; --layer) {
        divisor += 256 * amplitude;
        sum += noise2d(xa, ya) * amplitude;
        amplitude *= 0.5F;
        xa *= 2;
        ya *= 2;
    }
    return sum / divisor;
}
