#pragma once

#include "CoreGraphics/cairo/Coverage.h"

#include <optional>

/// A clip that is no rectangle of whole pixels. Shared by the graphics states that it was saved to.
///
/// A single shape is kept as it is: what covers all of it is then painted by painting the shape. Otherwise,
/// and once that has been done, it becomes a coverage of each pixel.
class ClipRegion {
public:
    /// A copy of the shape, as far as it lies in `area`.
    ClipRegion(const Shape& shape, const PixelRect& area, int height);
    /// The product of a coverage that is still to be drawn and `other`, which may be null.
    explicit ClipRegion(const PixelRect& area);
    ClipRegion(const ClipRegion&) = delete;
    ClipRegion& operator=(const ClipRegion&) = delete;

    /// The shape, lent, where it is cheaper to paint than the coverage.
    std::optional<Shape> takeShape();
    /// The coverage of all the area.
    Coverage& coverage();

private:
    PixelRect _area;
    int _height = 0;
    Shape _shape; ///< its path and rectangles are the two below
    RetainPtr<const CGPath> _path;
    std::vector<AreaRect> _rectangles;
    bool _wasPainted = false;
    Scratch _memory;
    std::optional<Coverage> _coverage;
};

/// Where paint may go: some pixels, and how much of it on each.
struct Clip {
    PixelRect bounds;
    std::shared_ptr<ClipRegion> region = nullptr; ///< null: all of it on each

    /// Leaves what is within a shape, too.
    void intersect(const Shape& shape, int height);
    /// Multiplies by a coverage that `draw` fills in; nothing is left outside of `area`.
    template <class Draw> void multiply(const PixelRect& area, Draw draw)
    {
        bounds = bounds.intersection(area);
        if (bounds.isEmpty())
            return;
        auto product = std::make_shared<ClipRegion>(bounds);
        draw(product->coverage());
        if (region)
            product->coverage().multiply(region->coverage());
        region = std::move(product);
    }
};
