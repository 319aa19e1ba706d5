#pragma once

#include "CoreGraphics/raster/MaskCache.h"
#include "CoreGraphics/raster/MaskKey.h"
#include "CoreGraphics/raster/Scratch.h"
#include "CoreGraphics/raster/Shape.h"

#include <optional>

/// A shape that is small enough for its whole mask to be worth caching.
///
/// Its coverage depends on its subpixel position, not on which pixels it lies: the key counts from the corner
/// of its pixels.
class SmallShape {
public:
    /// Nothing for shapes that are large (with `margin` pixels more on each side), long or empty. Borrows the
    /// shape.
    static std::optional<SmallShape> of(const Shape& shape, int margin = 0);

    /// What positions in the mask's key are relative to.
    PixelPoint origin() const { return {_area.left, _area.top}; }
    /// Adds everything that the coverage depends on.
    void addTo(MaskKey& key) const;
    /// Draws the whole shape's mask.
    MaskView draw(Scratch& memory) const;
    /// The same, unless it is cached.
    MaskRef mask(Scratch& memory) const;

private:
    SmallShape(const Shape& shape, const PixelRect& area)
        : _shape(shape)
        , _area(area)
    {
    }

    const Shape& _shape;
    PixelRect _area;
};
