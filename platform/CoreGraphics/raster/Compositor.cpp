#include "CoreGraphics/raster/Compositor.h"

#include "CoreGraphics/raster/PathRows.h"
#include "CoreGraphics/raster/ProductRows.h"
#include "CoreGraphics/raster/SmallShape.h"

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
            return paintShape(shape, area, clip.bounds(), paint, mode);
        return paintWithin({.shape = &shape}, area, cover, paint, mode);
    }
    if (!cover.mask && !cover.shape)
        return paintShape(product, area, area, paint, mode);
    if (cover.shape && !isCut)
        return paintShape(*cover.shape, area, area, paint, mode);
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
    if (shape.fillsPath() && clip.isRectangle() && clip.rect().contains(area))
        rows = solidRows(area, paint, mode);
    if (!rows)
        return this->paint(small.mask(_shapeMemory).view, clip, paint, mode);
    if (const auto repeated = small.repeatedMask(_shapeMemory))
        return this->paint(repeated->view, clip, paint, mode);
    PathRows::ofThread().run(*shape.path, shape.isEvenOdd, _space, area, *rows);
}

MaskView Compositor::draw(const Shape& shape, const PixelRect& area, Scratch& memory) const
{
    MaskBuffer mask(memory, area);
    mask.draw(shape);
    return mask.view();
}

void Compositor::paintShape(
    const Shape& shape, const PixelRect& area, const PixelRect& clip, const Paint& paint, CGBlendMode mode)
{
    if (!shape.rectangles.empty() || shape.fillsPath()) {
        if (auto rows = solidRows(area, paint, mode)) {
            if (shape.fillsPath())
                PathRows::ofThread().run(*shape.path, shape.isEvenOdd, _space, area, *rows);
            else if (shape.rectangles.size() == 1 && shape.rectangles[0].isPixelAligned())
                rows->fill(area);
            else
                _raster.run(shape.rectangles, area, *rows);
            return;
        }
    }
    if (auto rows = modeRows(area, paint, mode)) {
        if (shape.rectangles.size() == 1 && shape.rectangles[0].contains(area))
            return rows->fill();
        return paintRuns(shape, area, AreaRect::of(area), *rows);
    }
    // A clip that contains the shape need not be set.
    _blender->blend({.shape = &shape}, area, clip.contains(shape.pixels(_area)) ? _area : clip, paint, mode);
}

void Compositor::paintWithin(const Stencil& stencil, const PixelRect& area, const ClipCoverage& clip,
    const Paint& paint, CGBlendMode mode)
{
    const MaskView drawn = clip.shape ? draw(*clip.shape, area, _clipMemory) : MaskView();
    MaskProduct product(area, clip.rect, clip.shape ? &drawn : clip.mask, _productRow);
    if (auto rows = solidRows(area, paint, mode))
        return paintRuns(stencil, product, *rows);
    if (auto rows = modeRows(area, paint, mode))
        return paintRuns(stencil, product, *rows);
    const MaskView mask = stencil.mask ? *stencil.mask : draw(*stencil.shape, area, _shapeMemory);
    const MaskView all = product.all(mask, _productMemory);
    _blender->blend({.mask = &all}, area, area, paint, mode);
}

void Compositor::paintRuns(const Stencil& stencil, MaskProduct& product, RunPainter& painter)
{
    if (stencil.mask)
        return product.paint(*stencil.mask, painter);
    const Shape& shape = *stencil.shape;
    ProductRows rows(product, painter, _coverageRow);
    if (shape.fillsPath())
        PathRows::ofThread().run(*shape.path, shape.isEvenOdd, _space, product.area(), rows);
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
    if (!paint.isSolid())
        return std::nullopt;
    PixelBytes color = paint.bytes();
    std::uint8_t hidden = 255;
    switch (mode) {
    case kCGBlendModeNormal:
        hidden = color[3];
        break;
    case kCGBlendModeDestinationOut:
        hidden = color[3];
        color = {};
        break;
    case kCGBlendModeClear:
        color = {};
        break;
    case kCGBlendModeCopy:
        break;
    default:
        return std::nullopt;
    }
    return SolidRows(memoryAt(area), area, color, hidden);
}

std::optional<ModeRows> Compositor::modeRows(const PixelRect& area, const Paint& paint, CGBlendMode mode)
{
    const bool onlyScales = mode == kCGBlendModeNormal || mode == kCGBlendModeClear
        || mode == kCGBlendModeCopy || mode == kCGBlendModeDestinationOut;
    RowsSource source;
    if (paint.isSolid()) {
        if (onlyScales)
            return std::nullopt;
        source.color = paint.bytes();
    } else if (const PixelView* pixels = paint.pixels(); pixels
               && pixels->memory.isAlphaOnly() == _memory.isAlphaOnly() && pixels->area.contains(area)) {
        source.pixels = pixels->memory;
        source.pixels.data = source.pixels.pixel(area.left - pixels->area.left, area.top - pixels->area.top);
    } else if (onlyScales) {
        return std::nullopt;
    } else {
        source.pixels = _blender->read(paint, area);
    }
    return ModeRows(memoryAt(area), area, mode, source);
}

PixelMemory Compositor::memoryAt(const PixelRect& area) const
{
    PixelMemory memory = _memory;
    memory.data = memory.pixel(area.left - _area.left, area.top - _area.top);
    return memory;
}
