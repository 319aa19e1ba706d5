#pragma once

#include "CoreGraphics/cairo/CairoPtr.h"
#include "CoreGraphics/raster/Shape.h"

/// Fills or strokes the shape with the source and operator of a cairo that draws in base space.
void drawShape(cairo_t* cairo, const Shape& shape, int height);

/// True for a transform that cairo takes. Another one would put it into a lasting error.
bool isInvertible(const CGAffineTransform& transform);
