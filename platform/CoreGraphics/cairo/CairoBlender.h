#pragma once

#include "CoreGraphics/cairo/CairoBlending.h"
#include "CoreGraphics/cairo/CairoTarget.h"
#include "CoreGraphics/raster/Scratch.h"

/// Blends with cairo.
class CairoBlender final : public PixelBlender {
public:
    CairoBlender(
        const PixelMemory& memory, const PixelRect& area, const PixelSpace& space, cairo_format_t format)
        : _target(memory, area, space, format)
    {
    }

    void blend(const Stencil& stencil, const PixelRect& area, const PixelRect& clip, const Paint& paint,
        CGBlendMode mode) override;
    Paint makePaint(const PixelMemory& pixels, const PixelRect& area) const override;
    PixelMemory read(const Paint& paint, const PixelRect& area) override;

private:
    void paintThrough(const Stencil& stencil, cairo_t* cairo) const;

    CairoTarget _target;
    Scratch _readMemory;
};
