#pragma once

#include "CoreGraphics/cairo/PixelTarget.h"
#include "CoreGraphics/raster/Clip.h"
#include "CoreGraphics/raster/GradientRows.h"
#include "CoreGraphics/raster/Paint.h"

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
    void paint(const Shape& shape, const Clip& clip, const Paint& paint, CGBlendMode mode);
    /// Paints within a clip where a coverage lets it, which may lie anywhere.
    void paint(const CoverageView& coverage, const Clip& clip, const Paint& paint, CGBlendMode mode);
    /// Paints all that a gradient is drawn on within a clip.
    void paint(const GradientRows& gradient, const Clip& clip, CGFloat alpha, CGBlendMode mode);

private:
    /// What lets paint through: a shape, or the part of a coverage within an area.
    struct Stencil {
        const Shape* shape = nullptr;
        const CoverageView* coverage = nullptr;
    };

    /// What paints pixels of an area; none for paints and modes that are left to cairo.
    std::optional<SolidRows> solidRows(const PixelRect& area, const Paint& paint, CGBlendMode mode) const;
    /// Paints a shape within a clip of whole pixels. `area` are those of them that it touches.
    void paintWithin(const PixelRect& clip, const Shape& shape, const PixelRect& area, const Paint& paint,
        CGBlendMode mode);
    /// Paints through one or two coverages (`mask` may be null) and a rectangle, as a CoverageProduct.
    void paintProduct(const PixelRect& area, const AreaRect& rect, const CoverageView& coverage,
        const CoverageView* mask, const Paint& paint, CGBlendMode mode);
    /// The coverage of a shape, in memory for one of them.
    CoverageView draw(const Shape& shape, const PixelRect& area, Scratch& memory) const;
    void composite(const Stencil& stencil, const PixelRect& area, const PixelRect& clip, const Paint& paint,
        CGBlendMode mode);
    void paintThrough(const Stencil& stencil, cairo_t* cairo) const;
    /// A copy of the pixels of `area` on which the whole paint has had its effect.
    CairoPtr<cairo_surface_t> makePainted(const PixelRect& area, const Paint& paint, cairo_operator_t effect);
    PixelMemory memoryAt(const PixelRect& area) const;
    /// In the normal mode, without cairo.
    void paintRows(const GradientRows& gradient, const Clip& clip, std::uint8_t alpha);
    /// The same for an area within the clip; `coverages`, which may be null, are those of all of it.
    void paintRows(
        const GradientRows& gradient, const PixelRect& area, std::uint8_t alpha, CoverageProduct* coverages);
    /// Colours and coverage apart, for any mode.
    void compositeRows(const GradientRows& gradient, const Clip& clip, std::uint8_t alpha, CGBlendMode mode);

    PixelTarget _target;
    RectangleRaster _raster;
    Scratch _coverageMemory;
    Scratch _maskMemory;
    Scratch _productMemory;
    std::vector<unsigned char> _productRow;
    Scratch _paintedMemory;
    Scratch _gradientMemory;
    std::vector<CGGradientPixel> _gradientRow;
};
