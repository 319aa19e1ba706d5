#pragma once

#include "CoreGraphics/cairo/CairoPtr.h"
#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/PixelSpace.h"

#include <cairo.h>

/// A surface over a borrowed mask, which must outlive it.
CairoPtr<cairo_surface_t> makeSurface(const MutableMaskView& mask);

/// A cairo context for `surface`, whose first pixel is the top left corner of `area`, that draws in base
/// space. Its tolerance makes the coverage of curves exact to about one step of 255.
CairoPtr<cairo_t> makeBaseSpaceCairo(
    cairo_surface_t* surface, const PixelRect& area, const PixelSpace& space);
