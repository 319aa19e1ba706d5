#pragma once

#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/Shape.h"

struct PixelSource;

// Path shapes, filled or stroked, as coverage masks. Defined in the folder of the library that draws them.

/// Adds a shape's coverage to a mask. Not for shapes that `fillsCenters()`.
void rasterizePath(const Shape& shape, const MutableMaskView& mask);
/// Adds the alpha of pixels within a shape to a mask. Not for shapes that `fillsCenters()`.
void rasterizePixels(const Shape& shape, const PixelSource& source, const MutableMaskView& mask);
