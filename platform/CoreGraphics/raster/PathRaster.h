#pragma once

#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/Shape.h"

/// Adds a stroke's coverage to a mask. Filled paths have rasters of their own: see PathRows.h and
/// CenterRaster.h. Defined in the folder of the library that draws it.
void rasterizePath(const Shape& shape, const MutableMaskView& mask);
