#pragma once

#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/Paint.h"
#include "CoreGraphics/raster/Shape.h"

#include <CoreGraphics/CGBlendMode.h>

/// Where a paint acts: in a shape, or in the part of a mask within an area.
struct Stencil {
    const Shape* shape = nullptr;
    const MaskView* mask = nullptr;
};

/// Blends paints of every kind in every mode: what SolidRows and GradientRows do not.
class PixelBlender {
public:
    virtual ~PixelBlender() = default;

    /// Blends a paint into the pixels of `area`, within a clip. What the stencil touches within the clip lies
    /// in the area.
    virtual void blend(const Stencil& stencil, const PixelRect& area, const PixelRect& clip,
        const Paint& paint, CGBlendMode mode) = 0;
    /// A paint of premultiplied pixels, four bytes each, that lie on those of `area`. The memory must outlive
    /// it.
    virtual Paint makePaint(unsigned char* data, int bytesPerRow, const PixelRect& area) const = 0;
};
