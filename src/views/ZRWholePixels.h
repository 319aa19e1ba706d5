#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <cstddef>
#include <cstdint>
#include <limits>

/// The length without its fraction; 0 if it is negative or NaN. Lengths that no bitmap has become 2^32 - 1.
inline std::size_t ZRWholePixels(CGFloat length)
{
    constexpr std::size_t kMost = std::numeric_limits<std::uint32_t>::max();
    if (!(length > 0))
        return 0;
    return length < static_cast<CGFloat>(kMost) ? static_cast<std::size_t>(length) : kMost;
}
