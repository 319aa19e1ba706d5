#pragma once

#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/Shape.h"

struct PixelSource;

// Coverage masks of strokes, and of pixels in any shape. Defined in the folder of the library that draws
// them.

/// Adds a stroke's coverage to a mask. Filled paths have rasters of their own: see PathRows.h and
/// CenterRaster.h.
void rasterizePath(const Shape& shape, const MutableMaskView& mask);
/// Adds the alpha of pixels within a shape to a mask. Not for shapes that `fillsCenters()`.
void rasterizePixels(const Shape& shape, const PixelSource& source, const MutableMaskView& mask);
