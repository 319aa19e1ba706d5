#pragma once

#include "CoreGraphics/cairo/CairoPtr.h"
#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/PixelSpace.h"

#include <cairo.h>

/// A surface over borrowed pixels, which must outlive it. `data` and `bytesPerRow` are multiples of 4.
CairoPtr<cairo_surface_t> makeSurface(
    const unsigned char* data, int bytesPerRow, cairo_format_t format, const PixelRect& area);
/// A surface over a borrowed mask, which must outlive it.
CairoPtr<cairo_surface_t> makeSurface(const MaskView& mask);

/// A cairo context for `surface`, whose first pixel is the top left corner of `area`, that draws in base
/// space. Its tolerance makes the coverage of curves exact to about one step of 255.
CairoPtr<cairo_t> makeBaseSpaceCairo(
    cairo_surface_t* surface, const PixelRect& area, const PixelSpace& space);

/// The surface as a source in base space, its pixels aligned with those of `area`.
CairoPtr<cairo_pattern_t> makePixelPattern(
    cairo_surface_t* surface, const PixelRect& area, const PixelSpace& space);
