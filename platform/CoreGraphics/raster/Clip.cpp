#include "CoreGraphics/raster/Clip.h"

#include "CoreGraphics/raster/SmallShape.h"

namespace {

/// Rasterizing a path of at most so many points while it is painted takes about as long as reading its mask.
constexpr std::size_t kFewPoints = 64;
/// How often a region of such a path is painted without a mask: later on paints of small parts, each of which
/// has to process the whole path, may follow.
constexpr int kPaintsOfFewPoints = 4;

} // namespace

ClipRegion::ClipRegion(const Shape& shape, const PixelRect& area)
    : _area(area)
    , _shape(shape)
    , _rectangles(shape.rectangles.begin(), shape.rectangles.end())
{
    if (_rectangles.empty() && shape.path)
        _path = adopt<const CGPath>(new CGPath(*shape.path, CGPath::Mutability::Immutable));
    _shape.path = _path.get();
    _shape.rectangles = _rectangles;
}

void ClipRegion::willPaint(const PixelRect& pixels)
{
    if (_mask)
        return;
    if (const auto small = _rectangles.empty() ? SmallShape::of(_shape) : std::nullopt)
        return setMask(small->mask(_memory));
    const std::int64_t all = _area.pixelCount();
    const bool hasFewPoints = _path && _path->points().size() <= kFewPoints;
    if (_pixelsPainted < all * (hasFewPoints ? kPaintsOfFewPoints : 1) && !_shape.fillsCenters()) {
        // However small the painted area is, the whole path has to be processed.
        _pixelsPainted += std::max(pixels.pixelCount(), all / 8);
        return;
    }
    MaskBuffer mask(_memory, _area);
    mask.draw(_shape);
    _mask = mask.view();
}

void ClipRegion::setMask(const MaskRef& mask)
{
    _mask = mask.view;
    if (!mask.owner)
        return;
    // Cached masks are stored without their empty borders.
    MaskBuffer all(_memory, _area);
    all.copy(mask.view);
    _mask = all.view();
}

void ClipRegion::multiply(MaskBuffer& mask) const
{
    if (_mask)
        return mask.multiply(*_mask);
    Scratch memory;
    MaskBuffer part(memory, mask.area());
    part.draw(_shape);
    mask.multiply(part.view());
}

ClipCoverage Clip::coverage(const PixelRect& pixels) const
{
    if (!_region)
        return {_rect};
    _region->willPaint(pixels);
    const MaskView* mask = _region->mask();
    return {_rect, mask, mask ? nullptr : &_region->shape()};
}

void Clip::intersect(const Shape& shape)
{
    if (shape.rectangles.size() == 1)
        return cut(shape.rectangles[0]);
    const PixelRect area = shape.pixels(_bounds);
    if (_region)
        return multiply(area, [&](MaskBuffer& mask) { mask.draw(shape); });
    cut(AreaRect::of(area));
    if (!_bounds.isEmpty())
        _region = std::make_shared<ClipRegion>(shape, _bounds);
}

void Clip::cut(const AreaRect& rect)
{
    _rect = _rect.multiplied(rect);
    _bounds = _rect.pixels(_bounds);
}
