#pragma once

#include <algorithm>
#include <cstdint>

/// What both ways to blur have to know about the size of the box.

/// Pixels in a box, modulo 2^32. Boxes for which that is 0 have no mean, and blur into nothing.
inline std::uint32_t boxArea(std::int32_t boxDim)
{
    return static_cast<std::uint32_t>(boxDim) * static_cast<std::uint32_t>(boxDim);
}

/// Whether every pixel becomes 0: the square is empty, or the sum cannot be divided.
inline bool blursIntoNothing(std::int32_t boxDim)
{
    return boxDim < 1 || boxArea(boxDim) == 0;
}
