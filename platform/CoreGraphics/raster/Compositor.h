#pragma once

#include "CoreGraphics/raster/Clip.h"
#include "CoreGraphics/raster/GradientPainter.h"
#include "CoreGraphics/raster/MaskProduct.h"
#include "CoreGraphics/raster/ModeRows.h"
#include "CoreGraphics/raster/Paint.h"
#include "CoreGraphics/raster/PixelSource.h"
#include "CoreGraphics/raster/RectangleRaster.h"
#include "CoreGraphics/raster/SolidRows.h"

class SmallShape;

/// Limits a paint to a shape, or to the part of a mask within an area.
struct Stencil {
    const Shape* shape = nullptr;
    const MaskView* mask = nullptr;
};

/// Blends paints into the pixels: result = lerp(destination, mode(source, destination), coverage).
///
/// SolidRows blends solid paints in the modes that only scale the old pixel, GradientRows gradients in the
/// normal mode. ModeRows does everything else.
class Compositor {
public:
    /// Borrows the memory, which holds the pixels of `area`.
    Compositor(const PixelMemory& memory, const PixelRect& area, const PixelSpace& space)
        : _memory(memory)
        , _area(area)
        , _space(space)
    {
    }

    const PixelSpace& space() const { return _space; }
    /// The pixels in memory. Nothing may be painted outside of them.
    const PixelRect& area() const { return _area; }

    /// Paints a shape within a clip.
    void paint(const Shape& shape, const Clip& clip, const Paint& paint, CGBlendMode mode);
    /// Paints through a mask of any area within a clip.
    void paint(const MaskView& mask, const Clip& clip, const Paint& paint, CGBlendMode mode);
    /// Paints a gradient over all of a clip.
    void paint(const GradientRows& gradient, const Clip& clip, CGFloat alpha, CGBlendMode mode);
    /// All pixels in memory, as a source for another compositor.
    MemoryPixels pixels() const { return {_memory, _area}; }

private:
    /// The painter of the pixels of an area; nullopt for other paints and modes.
    std::optional<SolidRows> solidRows(const PixelRect& area, const Paint& paint, CGBlendMode mode) const;
    /// The painter of the pixels of an area in any paint and mode.
    ModeRows modeRows(const PixelRect& area, const Paint& paint, CGBlendMode mode);
    /// Paints a small shape through its cached mask, or without a mask while it does not repeat. `area` are
    /// the pixels of the clip that it touches.
    void paintSmall(const SmallShape& small, const Shape& shape, const PixelRect& area, const Clip& clip,
        const Paint& paint, CGBlendMode mode);
    /// Paints a shape within an area.
    void paintShape(const Shape& shape, const PixelRect& area, const Paint& paint, CGBlendMode mode);
    /// The same in any paint and mode, with antialiasing.
    void paintModes(const Shape& shape, const PixelRect& area, const Paint& paint, CGBlendMode mode);
    /// Paints a shape with antialiasing on several threads. False, and nothing is painted, where that takes
    /// longer than on one. The bytes are the same with any number of threads.
    [[nodiscard]] bool paintInBands(
        const Shape& shape, const PixelRect& area, PixelSource& pixels, CGBlendMode mode);
    /// Paints rectangles or a path with antialiasing.
    template <class Rows> void paintRows(const Shape& shape, const PixelRect& area, Rows& rows);
    /// Paints the part of a stencil within a clip. `area` are the pixels that both touch.
    void paintWithin(const Stencil& stencil, const PixelRect& area, const ClipCoverage& clip,
        const Paint& paint, CGBlendMode mode);
    /// Paints what a stencil covers of a product's area.
    void paintRuns(const Stencil& stencil, MaskProduct& product, RunPainter& painter);
    /// Paints what a shape covers of an area within a rectangle.
    void paintRuns(const Shape& shape, const PixelRect& area, const AreaRect& rect, RunPainter& painter);
    MaskView draw(const Shape& shape, const PixelRect& area, Scratch& memory) const;
    PixelMemory memoryAt(const PixelRect& area) const;

    /// Paints all of an area that a clip covers.
    void paintAll(const PixelRect& area, const ClipCoverage& clip, GradientPainter& painter);
    /// Blends a gradient in any mode: passes its pixels and a mask to the blender.
    void compositeRows(const GradientRows& gradient, const Clip& clip, std::uint8_t alpha, CGBlendMode mode);

    PixelMemory _memory;
    PixelRect _area;
    PixelSpace _space;
    RectangleRaster _raster;
    Scratch _shapeMemory;
    Scratch _clipMemory;
    std::vector<unsigned char> _productRow;
    ModeRows::Memory _modeMemory;
    Scratch _gradientMemory;
    std::vector<CGGradientPixel> _gradientRow;
};
