#pragma once

#include "CoreGraphics/cairo/CairoPtr.h"
#include "CoreGraphics/raster/PixelRect.h"

#include <cstddef>
#include <memory>

/// Pixels for the time of one operation, in memory that is kept for the next.
class Scratch {
public:
    struct Pixels {
        CairoPtr<cairo_surface_t> surface;
        unsigned char* data;
        int bytesPerRow; ///< a multiple of 4
    };

    /// Pixels of the size of `area`, with anything in them. One at a time: the next call takes the memory.
    Pixels make(cairo_format_t format, const PixelRect& area);

private:
    std::unique_ptr<unsigned char[]> _memory;
    std::size_t _size = 0;
};

/// A context of `surface`, whose first pixel is the corner of `area`, that draws in base space: `height` is
/// that of all the pixels. With the tolerance at which curves are exact to about a step of 255.
CairoPtr<cairo_t> makeBaseSpaceCairo(cairo_surface_t* surface, const PixelRect& area, int height);

/// The surface as a source in base space, its pixels on those of `area`.
CairoPtr<cairo_pattern_t> makePixelPattern(cairo_surface_t* surface, const PixelRect& area, int height);
