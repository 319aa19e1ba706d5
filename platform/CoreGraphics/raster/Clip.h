#pragma once

#include "CoreGraphics/raster/Coverage.h"

#include <cstdint>
#include <optional>

struct LentCoverage;

/// A clip that is no upright rectangle. Shared by the graphics states that it was saved to.
///
/// A single shape that is large is kept as it is at first: its coverage is drawn where something is painted.
/// Once that has cost as much as the coverage of all of it, that is drawn and kept instead.
class ClipRegion {
public:
    /// A copy of the shape, as far as it lies in `area`.
    ClipRegion(const Shape& shape, const PixelRect& area, int height);
    /// A coverage that `draw` fills in.
    template <class Draw>
    ClipRegion(const PixelRect& area, Draw draw)
        : _area(area)
    {
        Coverage coverage(_memory, area);
        draw(coverage);
        _coverage = coverage.view();
    }
    ClipRegion(const ClipRegion&) = delete;
    ClipRegion& operator=(const ClipRegion&) = delete;

    /// To be called once for whatever is painted, which touches `painted`. Null: draw the shape there.
    const CoverageView* coverage(const PixelRect& painted);
    /// Only while there is no coverage.
    const Shape& shape() const { return _shape; }
    /// Multiplies a coverage whose area lies in this one's.
    void multiply(Coverage& coverage) const;

private:
    void keep(const LentCoverage& coverage);

    PixelRect _area;
    int _height = 0;
    Shape _shape; ///< its path and rectangles are the two below
    RetainPtr<const CGPath> _path;
    std::vector<AreaRect> _rectangles;
    std::int64_t _pixelsPainted = 0;
    Scratch _memory;
    std::optional<CoverageView> _coverage;
};

/// Where paint may go, and how much of it: the product of a rectangle's coverage and a region's.
class Clip {
public:
    /// Lets nothing through.
    Clip() = default;
    explicit Clip(const PixelRect& bounds)
        : _bounds(bounds)
        , _rect(AreaRect::of(bounds))
    {
    }

    /// The pixels that the rectangle touches: nothing goes anywhere else.
    const PixelRect& bounds() const { return _bounds; }
    const AreaRect& rect() const { return _rect; }
    /// Null when there is nothing but the rectangle.
    ClipRegion* region() const { return _region.get(); }

    /// Clips to pixels as well.
    void intersect(const PixelRect& pixels) { cut(AreaRect::of(pixels)); }
    /// Leaves what is within a shape, too.
    void intersect(const Shape& shape, int height);
    /// Multiplies by a coverage that `draw` fills in; nothing is left outside of `area`.
    template <class Draw> void multiply(const PixelRect& area, Draw draw)
    {
        cut(AreaRect::of(area));
        if (_bounds.isEmpty())
            return;
        _region = std::make_shared<ClipRegion>(_bounds, [&](Coverage& coverage) {
            draw(coverage);
            if (_region)
                _region->multiply(coverage);
        });
    }

private:
    void cut(const AreaRect& rect);

    PixelRect _bounds;
    AreaRect _rect;
    std::shared_ptr<ClipRegion> _region;
};
