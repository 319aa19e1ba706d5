#include "CoreGraphics/raster/SmallShape.h"

#include "CoreGraphics/raster/MaskBuffer.h"

namespace {

/// In pixels. Controls, badges and lines of text are smaller; for larger shapes painting takes longer than
/// rasterizing the mask.
constexpr int kMaxSide = 256;
/// Largest number of points of a path, about that of a line of text. The keys of longer paths would fill the
/// cache.
constexpr std::size_t kMaxPoints = 2048;

void addPen(const Pen& pen, MaskKey& key)
{
    const LineStyle& style = *pen.style;
    key.add(style.width);
    key.add(style.cap);
    key.add(style.join);
    key.add(style.miterLimit);
    key.add(style.dashes ? std::span<const double>(*style.dashes) : std::span<const double>());
    key.add(style.dashPhase);
    // Without the translation: the path is already in its final position.
    for (const CGFloat part :
        {pen.baseFromUser.a, pen.baseFromUser.b, pen.baseFromUser.c, pen.baseFromUser.d})
        key.add(part);
}

} // namespace

std::optional<SmallShape> SmallShape::of(const Shape& shape, int margin)
{
    if (shape.path && shape.path->points().size() > kMaxPoints)
        return std::nullopt;
    const PixelRect area = shape.pixels(kAllPixels);
    if (area.isEmpty() || std::max(area.width(), area.height()) + 2 * margin > kMaxSide)
        return std::nullopt;
    return SmallShape(shape, area);
}

void SmallShape::addTo(MaskKey& key) const
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
    key.addMoved(_shape.path->points(), -_area.left, _area.top - _shape.space.height);
}

MaskView SmallShape::draw(Scratch& memory) const
{
    MaskBuffer mask(memory, _area);
    mask.draw(_shape);
    return mask.view();
}

std::string_view SmallShape::key() const
{
    thread_local MaskKey key;
    key.begin(MaskKind::Shape);
    addTo(key);
    return key.bytes();
}

MaskRef SmallShape::mask(Scratch& memory) const
{
    return MaskCache::shared().mask(key(), origin(), [&] { return draw(memory); });
}

std::optional<MaskRef> SmallShape::repeatedMask(Scratch& memory) const
{
    return MaskCache::shared().repeatedMask(key(), origin(), [&] { return draw(memory); });
}
