#pragma once

#include "CoreGraphics/cairo/CairoPtr.h"
#include "CoreGraphics/raster/Paint.h"

/// A pattern in base space.
struct PixelSource {
    CairoPtr<cairo_pattern_t> pattern;
};

/// A paint of a pattern in base space.
Paint makePaint(CairoPtr<cairo_pattern_t> pattern);
/// A paint of a pattern of pixels in memory.
Paint makePaint(CairoPtr<cairo_pattern_t> pattern, const PixelView& pixels);

/// Sets a paint as the source of a cairo context that draws in base space.
void setSource(cairo_t* cairo, const Paint& paint);
