#include "CoreGraphics/raster/SmallShape.h"

#include "CoreGraphics/raster/Coverage.h"

namespace {

/// Pixels. Controls, badges and lines of text are smaller; what is larger takes its time in the pixels.
constexpr int kLongestSide = 256;
/// A line of text has this many. Longer paths would fill the cache with their keys.
constexpr std::size_t kMostPoints = 2048;

void addPen(const Pen& pen, CoverageKey& key)
{
    const LineStyle& style = *pen.style;
    key.add(style.width);
    key.add(style.cap);
    key.add(style.join);
    key.add(style.miterLimit);
    key.add(style.dashes ? std::span<const double>(*style.dashes) : std::span<const double>());
    key.add(style.dashPhase);
    // Where the pen is moved to makes no difference: the path has its place already.
    for (const CGFloat part :
        {pen.baseFromUser.a, pen.baseFromUser.b, pen.baseFromUser.c, pen.baseFromUser.d})
        key.add(part);
}

} // namespace

void CoverageKey::addMoved(std::span<const CGPoint> points, double byX, double byY)
{
    add(points.size());
    char* bytes = _bytes.extend(points.size_bytes());
    for (const CGPoint& point : points) {
        const CGPoint moved{point.x + byX, point.y + byY};
        std::memcpy(bytes, &moved, sizeof moved);
        bytes += sizeof moved;
    }
}

std::optional<SmallShape> SmallShape::of(const Shape& shape, int height, int margin)
{
    if (shape.path && shape.path->points().size() > kMostPoints)
        return std::nullopt;
    const PixelRect area = shape.pixels(kAllPixels, height);
    if (area.isEmpty() || std::max(area.width(), area.height()) + 2 * margin > kLongestSide)
        return std::nullopt;
    return SmallShape(shape, area, height);
}

void SmallShape::addTo(CoverageKey& key) const
{
    key.add(_shape.isAntialiased);
    key.add(_shape.rectangles.size());
    for (const AreaRect& rect : _shape.rectangles) {
        for (const double side :
            {rect.left - _area.left, rect.top - _area.top, rect.right - _area.left, rect.bottom - _area.top})
            key.add(side);
    }
    if (!_shape.rectangles.empty())
        return;
    key.add(_shape.pen != nullptr);
    if (_shape.pen)
        addPen(*_shape.pen, key);
    else
        key.add(_shape.isEvenOdd);
    key.add(_shape.path->ops());
    key.addMoved(_shape.path->points(), -_area.left, _area.top - _height);
}

CoverageView SmallShape::draw(Scratch& memory) const
{
    Coverage coverage(memory, _area);
    coverage.draw(_shape, _height);
    return coverage.view();
}

LentCoverage SmallShape::coverage(Scratch& memory) const
{
    thread_local CoverageKey key;
    key.begin(CoverageKind::Shape);
    addTo(key);
    return CoverageCache::shared().coverage(key.bytes(), origin(), [&] { return draw(memory); });
}
