#pragma once

#include <CoreGraphics/CGPath.h>

#include <cstdint>

/// The corners of a rectangle, to be combined into a corner mask. Where y grows upward, the greatest y is the
/// top.
enum ZRCorner : std::uint32_t {
    kZRCornerMinXMaxY = 1,
    kZRCornerMaxXMaxY = 2,
    kZRCornerMaxXMinY = 4,
    kZRCornerMinXMinY = 8,
    kZRCornerAll = 15,
};

extern "C" {

/// A new path of one closed rectangle, of which the corners in `cornerMask` are rounded; the caller releases
/// it. Never null. Any thread.
///
/// The walk begins at the corner of least x and y, goes up the side of least x, along the side of greatest y,
/// down the side of greatest x and back. A rounded corner is a line to where its arc begins and the arc, as
/// CGPathAddArcToPoint adds them; the first one begins with a move instead. Bits that stand for no corner
/// are ignored.
///
///     const auto tab = adopt(ZRCreateRoundedRectPath(kZRCornerMinXMaxY | kZRCornerMaxXMaxY, bounds, 6));
///
/// A radius beyond half the longer side counts as that half. Half the shorter side is no limit: with more
/// than that, the arcs of neighbouring corners reach past each other and the sides between them run
/// backwards. A radius of 0, less, or NaN rounds nothing.
///
/// Sizes are taken as they are, not standardized: a negative one swaps what is least and greatest. A
/// rectangle with a corner that is NaN or infinite, such as the null rectangle, gives an empty path.
[[nodiscard]] KORVID_EXPORT CGPathRef ZRCreateRoundedRectPath(
    std::uint32_t cornerMask, CGRect rect, CGFloat radius);

} // extern "C"
