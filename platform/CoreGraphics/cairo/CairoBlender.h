#pragma once

#include "CoreGraphics/cairo/CairoBlending.h"
#include "CoreGraphics/cairo/CairoTarget.h"

/// Blends strokes with cairo.
class CairoBlender final : public PixelBlender {
public:
    CairoBlender(
        const PixelMemory& memory, const PixelRect& area, const PixelSpace& space, cairo_format_t format)
        : _target(memory, area, space, format)
    {
    }

    void blend(const Shape& shape, const PixelRect& area, const PixelRect& clip, const Paint& paint,
        CGBlendMode mode) override;

private:
    CairoTarget _target;
};
