#pragma once

#include "CoreGraphics/CGPathInternal.h"
#include "CoreGraphics/raster/PixelSpace.h"

#include <optional>
#include <span>
#include <vector>

/// The current path of a context, in base space.
///
/// A path of rectangles that is drawn repeatedly has the order of its rectangles cached. Where it is all of
/// the current path, that order is used, and an immutable one is not even copied.
class CurrentPath {
public:
    bool isEmpty() const { return !_source && _elements->isEmpty(); }
    const CGPath& elements() const;
    /// The elements, to be changed by the caller.
    CGPath* edit();
    void clear();
    /// Adds all elements of a path.
    void add(const CGPath& path, const CGAffineTransform& baseFromPath);
    /// See RectangleOrder.h.
    std::optional<std::span<const AreaRect>> rectanglesInScanOrder(
        const PixelSpace& space, bool isAntialiased, std::vector<AreaRect>& memory) const;

private:
    RetainPtr<CGPath> _elements = adopt(CGPathCreateMutable());
    mutable RetainPtr<const CGPath> _source; ///< a path whose copying has been put off
    RetainPtr<const CGPathBands> _bands;     ///< of the path that is all of this one; may be null
    CGAffineTransform _baseFromBands{};
};
