#pragma once

#include <algorithm>
#include <cstdint>

/// The number of pixels in a box, modulo 2^32. Without pixels there is no mean: the result is transparent.
inline std::uint32_t boxArea(std::int32_t boxDim)
{
    return static_cast<std::uint32_t>(boxDim) * static_cast<std::uint32_t>(boxDim);
}

/// Whether every pixel becomes 0, because the square is empty or the divisor is 0.
inline bool blursIntoNothing(std::int32_t boxDim)
{
    return boxDim < 1 || boxArea(boxDim) == 0;
}
