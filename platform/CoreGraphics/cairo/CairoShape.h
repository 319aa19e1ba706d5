#pragma once

#include "CoreGraphics/cairo/CairoPtr.h"
#include "CoreGraphics/raster/Shape.h"

/// Fills or strokes the shape with the source and operator of a cairo context in base space. Not for shapes
/// that `fillsCenters()`.
void drawShape(cairo_t* cairo, const Shape& shape);

/// True for a transform that cairo accepts. Any other would put the cairo context into a permanent error
/// state.
bool isInvertible(const CGAffineTransform& transform);
