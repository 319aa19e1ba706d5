#include "CoreGraphics/raster/Clip.h"

#include "CoreGraphics/raster/SmallShape.h"

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

const CoverageView* ClipRegion::coverage(const PixelRect& painted)
{
    if (_coverage)
        return &*_coverage;
    if (const auto small = _rectangles.empty() ? SmallShape::of(_shape, _height) : std::nullopt) {
        keep(small->coverage(_memory));
        return &*_coverage;
    }
    const std::int64_t all = _area.pixelCount();
    if (_pixelsPainted < all && !_shape.fillsCenters()) {
        // However little is painted, the whole path has to be followed.
        _pixelsPainted += std::max(painted.pixelCount(), all / 8);
        return nullptr;
    }
    Coverage coverage(_memory, _area);
    coverage.draw(_shape, _height);
    _coverage = coverage.view();
    return &*_coverage;
}

void ClipRegion::keep(const LentCoverage& coverage)
{
    _coverage = coverage.view;
    if (!coverage.keeper)
        return;
    // Those that are kept lack the pixels that are not covered.
    Coverage all(_memory, _area);
    all.copy(coverage.view);
    _coverage = all.view();
}

void ClipRegion::multiply(Coverage& coverage) const
{
    if (_coverage)
        return coverage.multiply(*_coverage);
    Scratch memory;
    Coverage part(memory, coverage.area());
    part.draw(_shape, _height);
    coverage.multiply(part.view());
}

void Clip::intersect(const Shape& shape, int height)
{
    if (shape.rectangles.size() == 1)
        return cut(shape.rectangles[0]);
    const PixelRect area = shape.pixels(_bounds, height);
    if (_region)
        return multiply(area, [&](Coverage& coverage) { coverage.draw(shape, height); });
    cut(AreaRect::of(area));
    if (!_bounds.isEmpty())
        _region = std::make_shared<ClipRegion>(shape, _bounds, height);
}

void Clip::cut(const AreaRect& rect)
{
    _rect = _rect.multiplied(rect);
    _bounds = _rect.pixels(_bounds);
}
