#pragma once

#include "CoreGraphics/CGPathInternal.h"
#include "CoreGraphics/raster/PixelSpace.h"
#include "CoreGraphics/raster/Polygons.h"

/// A path in base space as a convex polygon, in pixels from the upper left corner of limits, with lines in
/// place of curves. Null for other paths. Valid until the next call on this thread.
const Polygons* convexPolygon(const CGPath& path, const PixelSpace& space, const PixelRect& limits);
