#pragma once

#include "CoreGraphics/raster/Paint.h"
#include "CoreGraphics/raster/Shape.h"

#include <CoreGraphics/CGBlendMode.h>

/// Blends strokes in a colour, in the modes that scale the old pixel: normal, clear, copy and
/// destination-out. SolidRows, ModeRows and GradientRows do everything else.
class PixelBlender {
public:
    virtual ~PixelBlender() = default;

    /// Blends a solid paint into the pixels of `area`, within a clip. `area` must contain all pixels of the
    /// clip that the shape touches.
    virtual void blend(const Shape& shape, const PixelRect& area, const PixelRect& clip, const Paint& paint,
        CGBlendMode mode) = 0;
};
