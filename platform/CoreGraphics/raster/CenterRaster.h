#pragma once

#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/Shape.h"

/// Adds a shape that `fillsCenters()` to a mask: sets the pixels whose centres its path or stroke contains to
/// 255 and leaves the others as they are. A centre exactly on an edge counts as inside at left and top edges.
/// Curves are followed to 1/4096 pixel.
void fillCenters(const Shape& shape, const MutableMaskView& mask);
