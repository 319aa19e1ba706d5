#pragma once

#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/Paint.h"
#include "CoreGraphics/raster/Shape.h"

#include <CoreGraphics/CGBlendMode.h>

/// Limits a paint to a shape, or to the part of a mask within an area.
struct Stencil {
    const Shape* shape = nullptr;
    const MaskView* mask = nullptr;
};

/// Blends shapes and images in the modes that scale the old pixel: normal, clear, copy and destination-out.
/// SolidRows, ModeRows and GradientRows do everything else.
class PixelBlender {
public:
    virtual ~PixelBlender() = default;

    /// Blends a paint into the pixels of `area`, within a clip. `area` must contain all pixels of the clip
    /// that the stencil touches.
    virtual void blend(const Stencil& stencil, const PixelRect& area, const PixelRect& clip,
        const Paint& paint, CGBlendMode mode) = 0;
    /// A paint of premultiplied pixels or alphas, aligned with those of `area`. Borrows the memory, whose
    /// address and rows are aligned to 4 bytes.
    virtual Paint makePaint(const PixelMemory& pixels, const PixelRect& area) const = 0;
    /// The pixels of `area` of a paint that is not solid: alphas for a destination of alphas, otherwise RGBA.
    /// Valid until the next call.
    virtual PixelMemory read(const Paint& paint, const PixelRect& area) = 0;
};
