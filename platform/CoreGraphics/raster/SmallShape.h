#pragma once

#include "CoreGraphics/raster/MaskCache.h"
#include "CoreGraphics/raster/MaskKey.h"
#include "CoreGraphics/raster/Scratch.h"
#include "CoreGraphics/raster/Shape.h"

#include <optional>

/// A shape that is small enough for its whole mask to be worth caching.
///
/// Its coverage depends only on its subpixel position, so coordinates in the key are relative to the corner
/// of its pixels.
class SmallShape {
public:
    /// nullopt for shapes that are large (with `margin` pixels added on each side), long or empty. Borrows
    /// the shape.
    static std::optional<SmallShape> of(const Shape& shape, int margin = 0);

    /// The origin of the positions in the mask's key.
    PixelPoint origin() const { return {_area.left, _area.top}; }
    /// Adds everything that the coverage depends on to a key.
    void addTo(MaskKey& key) const;
    /// Draws the whole shape's mask.
    MaskView draw(Scratch& memory) const;
    /// The whole shape's mask, from the cache or else drawn.
    MaskRef mask(Scratch& memory) const;
    /// The same, but nullopt for a shape that has not been requested before.
    std::optional<MaskRef> repeatedMask(Scratch& memory) const;

private:
    SmallShape(const Shape& shape, const PixelRect& area)
        : _shape(shape)
        , _area(area)
    {
    }

    /// The key of the mask, valid until the next call on this thread.
    std::string_view key() const;

    const Shape& _shape;
    PixelRect _area;
};
