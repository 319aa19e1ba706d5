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

/// The cached bands of a path of rectangles; null for other paths, for rectangles that do not form bands, for
/// few of them, whose order takes less time than a look-up, and at the first request. The memory is at most
/// half that of the path. Borrowed from the path: valid until it changes.
const CGPathBands* cachedBands(const CGPath& path);

/// The rectangles of bands under a transform to base space that only scales and translates, like those of the
/// path. nullopt if the scale is so large that edges that differ by rounding are apart. The result is stored
/// in `memory`.
std::optional<std::span<const AreaRect>> rectanglesInScanOrder(const CGPathBands& bands,
    const CGAffineTransform& baseFromPath, const PixelSpace& space, std::vector<AreaRect>& memory);
