#include "CoreGraphics/cairo/Clip.h"

ClipRegion::ClipRegion(const Shape& shape, const PixelRect& area, int height)
    : _area(area)
    , _height(height)
    , _shape(shape)
    , _rectangles(shape.rectangles.begin(), shape.rectangles.end())
{
    if (_rectangles.empty() && shape.path)
        _path = adopt<const CGPath>(new CGPath(*shape.path, false));
    _shape.path = _path.get();
    _shape.rectangles = _rectangles;
}

ClipRegion::ClipRegion(const PixelRect& area)
    : _area(area)
{
    _coverage.emplace(_memory, area);
}

std::optional<Shape> ClipRegion::takeShape()
{
    if (_coverage || _wasPainted)
        return std::nullopt;
    _wasPainted = true;
    return _shape;
}

Coverage& ClipRegion::coverage()
{
    if (!_coverage) {
        _coverage.emplace(_memory, _area);
        _coverage->draw(_shape, _height);
    }
    return *_coverage;
}

void Clip::intersect(const Shape& shape, int height)
{
    if (shape.covers(bounds))
        return;
    const bool isWholePixels = shape.rectangles.size() == 1 && shape.rectangles[0].isWholePixels();
    const PixelRect area = shape.pixels(bounds, height);
    if (isWholePixels || area.isEmpty())
        bounds = area;
    else if (region)
        multiply(area, [&](Coverage& coverage) { coverage.draw(shape, height); });
    else {
        bounds = area;
        region = std::make_shared<ClipRegion>(shape, area, height);
    }
}
