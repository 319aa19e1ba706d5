#pragma once

#include "CoreGraphics/raster/Shape.h"

/// The rectangles of a path that consists only of rectangles, if none of them overlap and they form bands:
/// all that begin at the same y end at the same y, above those that begin farther down. Edges that differ
/// only by rounding count as equal. The result is stored in `memory`, in RectangleRaster's order, with
/// neighbours merged and empty rectangles omitted.
///
/// Rectangles that come band by band, in any direction, take the least time; others are sorted.
std::optional<std::span<const AreaRect>> rectanglesInScanOrder(
    const CGPath& path, const PixelSpace& space, bool isAntialiased, std::vector<AreaRect>& memory);
