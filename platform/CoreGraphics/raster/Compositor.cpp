#include "CoreGraphics/raster/Compositor.h"

#include "CoreGraphics/raster/ProductRows.h"
#include "CoreGraphics/raster/SmallShape.h"
#include "CoreGraphics/raster/StrokeOutline.h"

namespace {

/// True for the modes that scale the old pixel and add to it.
bool onlyScales(CGBlendMode mode)
{
    return mode == kCGBlendModeNormal || mode == kCGBlendModeClear || mode == kCGBlendModeCopy
        || mode == kCGBlendModeDestinationOut;
}

} // namespace

void Compositor::paint(const Shape& shape, const Clip& clip, const Paint& paint, CGBlendMode mode)
{
    // The product of a rectangle and the clip's rectangle is a single rectangle.
    const bool isRect = shape.rectangles.size() == 1;
    const AreaRect rect = isRect ? clip.rect().multiplied(shape.rectangles[0]) : clip.rect();
    const Shape product{.space = _space, .rectangles = {&rect, 1}, .isAntialiased = shape.isAntialiased};
    const PixelRect area = (isRect ? product : shape).pixels(clip.bounds());
    if (area.isEmpty())
        return;
    if (shape.rectangles.empty()) {
        if (const auto small = SmallShape::of(shape))
            return paintSmall(*small, shape, area, clip, paint, mode);
    }

    ClipCoverage cover = clip.coverage(area);
    cover.rect = rect;
    const bool isCut = !rect.contains(area);
    if (!isRect) {
        if (!cover.mask && !cover.shape && !isCut && !shape.fillsCenters())
            return paintShape(shape, area, paint, mode);
        return paintWithin({.shape = &shape}, area, cover, paint, mode);
    }
    if (!cover.mask && !cover.shape)
        return paintShape(product, area, paint, mode);
    if (cover.shape && !isCut)
        return paintShape(*cover.shape, area, paint, mode);
    // The clip covers all that the rectangle does not cut off.
    paintWithin({.shape = cover.shape, .mask = cover.mask}, area, {rect}, paint, mode);
}

void Compositor::paint(const MaskView& mask, const Clip& clip, const Paint& paint, CGBlendMode mode)
{
    const PixelRect area = mask.area.intersection(clip.bounds());
    if (!area.isEmpty())
        paintWithin({.mask = &mask}, area, clip.coverage(area), paint, mode);
}

void Compositor::paintSmall(const SmallShape& small, const Shape& shape, const PixelRect& area,
    const Clip& clip, const Paint& paint, CGBlendMode mode)
{
    std::optional<SolidRows> rows;
    if (!shape.fillsCenters() && clip.isRectangle() && clip.rect().contains(area))
        rows = solidRows(area, paint, mode);
    if (!rows)
        return this->paint(small.mask(_shapeMemory).view, clip, paint, mode);
    if (const auto repeated = small.repeatedMask(_shapeMemory))
        return this->paint(repeated->view, clip, paint, mode);
    rasterizePath(shape, area, *rows);
}

MaskView Compositor::draw(const Shape& shape, const PixelRect& area, Scratch& memory) const
{
    MaskBuffer mask(memory, area);
    mask.draw(shape);
    return mask.view();
}

void Compositor::paintShape(const Shape& shape, const PixelRect& area, const Paint& paint, CGBlendMode mode)
{
    if (shape.fillsCenters())
        return paintWithin({.shape = &shape}, area, {AreaRect::of(area)}, paint, mode);
    if (auto rows = solidRows(area, paint, mode))
        return paintRows(shape, area, *rows);
    if (paint.isSolid() || !paintInBands(shape, area, paint.pixels(), mode))
        paintModes(shape, area, paint, mode);
}

void Compositor::paintModes(const Shape& shape, const PixelRect& area, const Paint& paint, CGBlendMode mode)
{
    ModeRows rows = modeRows(area, paint, mode);
    paintRows(shape, area, rows);
}

template <class Rows> void Compositor::paintRows(const Shape& shape, const PixelRect& area, Rows& rows)
{
    if (shape.rectangles.empty())
        rasterizePath(shape, area, rows);
    else if (shape.rectangles.size() == 1 && shape.rectangles[0].contains(area))
        rows.fill(area);
    else
        _raster.run(shape.rectangles, area, rows);
}

void Compositor::paintWithin(const Stencil& stencil, const PixelRect& area, const ClipCoverage& clip,
    const Paint& paint, CGBlendMode mode)
{
    const MaskView drawn = clip.shape ? draw(*clip.shape, area, _clipMemory) : MaskView();
    MaskProduct product(area, clip.rect, clip.shape ? &drawn : clip.mask, _productRow);
    if (auto rows = solidRows(area, paint, mode)) {
        if (stencil.mask && product.isWhole())
            return rows->paint(area, *stencil.mask);
        return paintRuns(stencil, product, *rows);
    }
    ModeRows rows = modeRows(area, paint, mode);
    paintRuns(stencil, product, rows);
}

void Compositor::paintRuns(const Stencil& stencil, MaskProduct& product, RunPainter& painter)
{
    if (stencil.mask)
        return product.paint(*stencil.mask, painter);
    const Shape& shape = *stencil.shape;
    ProductRows rows(product, painter);
    if (shape.fillsPath() || shape.strokesPath())
        rasterizePath(shape, product.area(), rows);
    else if (!shape.rectangles.empty())
        _raster.run(shape.rectangles, product.area(), rows);
    else
        product.paint(draw(shape, product.area(), _shapeMemory), painter);
}

void Compositor::paintRuns(
    const Shape& shape, const PixelRect& area, const AreaRect& rect, RunPainter& painter)
{
    MaskProduct product(area, rect, nullptr, _productRow);
    paintRuns({.shape = &shape}, product, painter);
}

std::optional<SolidRows> Compositor::solidRows(
    const PixelRect& area, const Paint& paint, CGBlendMode mode) const
{
    if (!paint.isSolid() || !onlyScales(mode))
        return std::nullopt;
    const bool paintsColor = mode == kCGBlendModeNormal || mode == kCGBlendModeCopy;
    const bool replaces = mode == kCGBlendModeClear || mode == kCGBlendModeCopy;
    return SolidRows(
        memoryAt(area), area, paintsColor ? paint.bytes() : PixelBytes{}, replaces ? 255 : paint.bytes()[3]);
}

ModeRows Compositor::modeRows(const PixelRect& area, const Paint& paint, CGBlendMode mode)
{
    return {memoryAt(area), area, mode, paint, _modeMemory};
}

PixelMemory Compositor::memoryAt(const PixelRect& area) const
{
    PixelMemory memory = _memory;
    memory.data = memory.pixel(area.left - _area.left, area.top - _area.top);
    return memory;
}
