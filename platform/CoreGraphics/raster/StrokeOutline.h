#pragma once

#include "CoreGraphics/raster/CoverageRows.h"
#include "CoreGraphics/raster/Polygons.h"
#include "CoreGraphics/raster/Shape.h"

/// The outline of a stroke, for filling by the winding rule, in pixels from the upper left corner of limits
/// within which it is exact. The shape has a pen and a path. Valid until the next call on this thread.
Polygons& strokePolygons(const Shape& shape, const PixelRect& limits);

/// The same as a path in base space.
RetainPtr<CGPath> strokePath(const Shape& shape, const PixelRect& limits);

/// Reports the coverage within `limits` of a shape that `fillsPath()` or `strokesPath()`.
void rasterizePath(const Shape& shape, const PixelRect& limits, CoverageRows& sink);
