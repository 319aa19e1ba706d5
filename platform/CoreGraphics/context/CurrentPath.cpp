#include "CoreGraphics/context/CurrentPath.h"

#include "CoreGraphics/raster/RectangleOrder.h"

#include <utility>

const CGPath& CurrentPath::elements() const
{
    if (const RetainPtr<const CGPath> source = std::exchange(_source, nullptr))
        CGPathAddPath(_elements, &_baseFromBands, source);
    return *_elements;
}

CGPath* CurrentPath::edit()
{
    elements();
    _bands = nullptr;
    return _elements;
}

void CurrentPath::clear()
{
    _source = nullptr;
    _bands = nullptr;
    _elements->clear();
}

void CurrentPath::add(const CGPath& path, const CGAffineTransform& baseFromPath)
{
    const bool mayHaveBands =
        isEmpty() && baseFromPath.b == 0 && baseFromPath.c == 0 && path.staysWithinLimits(baseFromPath);
    const CGPathBands* const bands = mayHaveBands ? cachedBands(path) : nullptr;
    CGPath* const elements = edit();
    if (bands) {
        _bands = bands;
        _baseFromBands = baseFromPath;
    }
    if (bands && !path.isMutable())
        _source = &path;
    else
        CGPathAddPath(elements, &baseFromPath, &path);
}

std::optional<std::span<const AreaRect>> CurrentPath::rectanglesInScanOrder(
    const PixelSpace& space, bool isAntialiased, std::vector<AreaRect>& memory) const
{
    if (_bands && isAntialiased) {
        if (const auto rectangles = ::rectanglesInScanOrder(*_bands, _baseFromBands, space, memory))
            return rectangles;
    }
    return ::rectanglesInScanOrder(elements(), space, isAntialiased, memory);
}
