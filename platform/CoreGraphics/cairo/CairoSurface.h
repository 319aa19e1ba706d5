#pragma once

#include "CoreGraphics/cairo/CairoPtr.h"
#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/PixelSpace.h"

#include <cairo.h>

/// A surface of pixels in memory, which must outlive it. `data` and `bytesPerRow` are multiples of 4.
CairoPtr<cairo_surface_t> makeSurface(
    const unsigned char* data, int bytesPerRow, cairo_format_t format, const PixelRect& area);
/// A surface of a mask, whose bytes must outlive it.
CairoPtr<cairo_surface_t> makeSurface(const MaskView& mask);

/// A context of `surface`, whose first pixel is the corner of `area`, that draws in base space. With the
/// tolerance at which curves are exact to about a step of 255.
CairoPtr<cairo_t> makeBaseSpaceCairo(
    cairo_surface_t* surface, const PixelRect& area, const PixelSpace& space);

/// The surface as a source in base space, its pixels on those of `area`.
CairoPtr<cairo_pattern_t> makePixelPattern(
    cairo_surface_t* surface, const PixelRect& area, const PixelSpace& space);
