#pragma once

#include "CoreGraphics/raster/MaskBuffer.h"

#include <concepts>
#include <cstdint>
#include <optional>

struct MaskRef;

/// A clip that is not an axis-aligned rectangle. Shared by the graphics states that it was saved to.
///
/// A single large shape is stored at first, and rasterized for each paint within the painted area. Once that
/// has cost as much as its whole mask, the mask is rasterized and replaces the shape.
class ClipRegion {
public:
    /// A region of the part of the shape in `area`. Copies the shape.
    ClipRegion(const Shape& shape, const PixelRect& area);
    /// A region with a mask that `draw` fills in.
    template <std::invocable<MaskBuffer&> Draw>
    ClipRegion(const PixelRect& area, Draw draw)
        : _area(area)
    {
        MaskBuffer mask(_memory, area);
        draw(mask);
        _mask = mask.view();
    }
    ClipRegion(const ClipRegion&) = delete;
    ClipRegion& operator=(const ClipRegion&) = delete;

    /// The region's mask; null while drawing its shape for each paint is cheaper.
    const MaskView* mask() const { return _mask ? &*_mask : nullptr; }
    /// The region's shape. Only while `mask()` is null.
    const Shape& shape() const { return _shape; }
    /// Records a paint of `pixels`; rasterizes the mask once that is cheaper than more paints without it.
    void willPaint(const PixelRect& pixels);
    /// Multiplies a mask whose area lies in this one's.
    void multiply(MaskBuffer& mask) const;

private:
    void setMask(const MaskRef& mask);

    PixelRect _area;
    Shape _shape; ///< its path and rectangles are the two below
    RetainPtr<const CGPath> _path;
    std::vector<AreaRect> _rectangles;
    std::int64_t _pixelsPainted = 0;
    Scratch _memory;
    std::optional<MaskView> _mask;
};

/// How a clip covers the pixels of one paint: the product of a rectangle's coverage and of either a mask or a
/// shape, or of neither. Borrowed from the clip.
struct ClipCoverage {
    AreaRect rect;
    const MaskView* mask = nullptr;
    const Shape* shape = nullptr; ///< to be rasterized for the painted area
};

/// The clip of a graphics state: the product of a rectangle's coverage and a region's.
class Clip {
public:
    /// An empty clip.
    Clip() = default;
    explicit Clip(const PixelRect& bounds)
        : _bounds(bounds)
        , _rect(AreaRect::of(bounds))
    {
    }

    /// The pixels that the rectangle touches. No pixels outside of them are painted.
    const PixelRect& bounds() const { return _bounds; }
    const AreaRect& rect() const { return _rect; }
    /// Whether nothing but the rectangle limits the coverage.
    bool isRectangle() const { return !_region; }
    /// The coverage for a paint of `pixels`. Call it once per paint.
    ClipCoverage coverage(const PixelRect& pixels) const;

    /// Intersects the clip with a rectangle of pixels.
    void intersect(const PixelRect& pixels) { cut(AreaRect::of(pixels)); }
    /// Intersects the clip with a shape.
    void intersect(const Shape& shape);
    /// Multiplies the clip by a mask that `draw` fills in; the clip is empty outside of `area`.
    template <std::invocable<MaskBuffer&> Draw> void multiply(const PixelRect& area, Draw draw)
    {
        cut(AreaRect::of(area));
        if (_bounds.isEmpty())
            return;
        _region = std::make_shared<ClipRegion>(_bounds, [&](MaskBuffer& mask) {
            draw(mask);
            if (_region)
                _region->multiply(mask);
        });
    }

private:
    void cut(const AreaRect& rect);

    PixelRect _bounds;
    AreaRect _rect;
    std::shared_ptr<ClipRegion> _region; ///< null when the clip is only the rectangle
};
