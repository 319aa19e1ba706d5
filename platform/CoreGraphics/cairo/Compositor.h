#pragma once

#include "CoreGraphics/cairo/Clip.h"
#include "CoreGraphics/cairo/Paint.h"
#include "CoreGraphics/cairo/PixelTarget.h"

#include <CoreGraphics/CGContext.h>

/// True for the modes that a Compositor knows.
bool isOffered(CGBlendMode mode);

/// Brings paint into the pixels: result = lerp(destination, mode(source, destination), coverage).
class Compositor {
public:
    Compositor(const PixelMemory& memory, int width, int height, cairo_format_t format)
        : _target(memory, width, height, format)
    {
    }

    const PixelTarget& target() const { return _target; }

    /// Paints a shape within a clip.
    void paint(Shape shape, const Clip& clip, const Paint& paint, CGBlendMode mode);
    /// Paints where a coverage lets it. The coverage lies within the clip's bounds and is multiplied by its
    /// region.
    void paint(Coverage& coverage, const Clip& clip, const Paint& paint, CGBlendMode mode);

private:
    /// What lets paint through: a shape, or the part of a coverage within an area.
    struct Stencil {
        const Shape* shape = nullptr;
        const Coverage* coverage = nullptr;
    };

    bool paintRectangles(
        std::span<const AreaRect> rectangles, const PixelRect& area, const Paint& paint, CGBlendMode mode);
    void composite(const Stencil& stencil, const PixelRect& area, const PixelRect& clip, const Paint& paint,
        CGBlendMode mode);
    void paintThrough(const Stencil& stencil, cairo_t* cairo) const;
    /// A copy of the pixels of `area` on which the whole paint has had its effect.
    CairoPtr<cairo_surface_t> makePainted(const PixelRect& area, const Paint& paint, cairo_operator_t effect);
    PixelMemory memoryAt(const PixelRect& area) const;

    PixelTarget _target;
    RectangleRaster _raster;
    Scratch _coverageMemory;
    Scratch _paintedMemory;
};
