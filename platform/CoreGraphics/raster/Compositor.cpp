#include "CoreGraphics/raster/Compositor.h"

#include "CoreGraphics/cairo/CairoShape.h"
#include "CoreGraphics/raster/SmallShape.h"

#include <cstring>

namespace {

/// How cairo does a blend mode.
struct Effect {
    cairo_operator_t blend;
    /// Whether cairo's blend of a shape is the lerp by its coverage. Otherwise it would erase what is
    /// outside, or be wrong at the edges; with sourceAtop it would be three times slower.
    bool isLerp;
};

std::optional<Effect> effectOf(CGBlendMode mode)
{
    switch (mode) {
    case kCGBlendModeNormal:
        return Effect{CAIRO_OPERATOR_OVER, true};
    case kCGBlendModeMultiply:
        return Effect{CAIRO_OPERATOR_MULTIPLY, true};
    case kCGBlendModeScreen:
        return Effect{CAIRO_OPERATOR_SCREEN, true};
    case kCGBlendModeClear:
        return Effect{CAIRO_OPERATOR_CLEAR, true};
    case kCGBlendModeCopy:
        return Effect{CAIRO_OPERATOR_SOURCE, true};
    case kCGBlendModeSourceIn:
        return Effect{CAIRO_OPERATOR_IN, false};
    case kCGBlendModeSourceOut:
        return Effect{CAIRO_OPERATOR_OUT, false};
    case kCGBlendModeSourceAtop:
        return Effect{CAIRO_OPERATOR_ATOP, false};
    case kCGBlendModeDestinationOver:
        return Effect{CAIRO_OPERATOR_DEST_OVER, true};
    case kCGBlendModeDestinationOut:
        return Effect{CAIRO_OPERATOR_DEST_OUT, true};
    case kCGBlendModeXOR:
        return Effect{CAIRO_OPERATOR_XOR, true};
    case kCGBlendModePlusLighter:
        return Effect{CAIRO_OPERATOR_ADD, false};
    }
    return std::nullopt;
}

/// Paints that leave pixels behind in the source would keep them alive, or be used after they are gone.
void dropSource(cairo_t* cairo)
{
    cairo_set_source_rgb(cairo, 0, 0, 0);
}

} // namespace

bool isOffered(CGBlendMode mode)
{
    return effectOf(mode).has_value();
}

void Compositor::paint(const Shape& shape, const Clip& clip, const Paint& paint, CGBlendMode mode)
{
    // A rectangle within a rectangle is one as well.
    const bool isRect = shape.rectangles.size() == 1;
    const AreaRect rect = isRect ? clip.rect().multiplied(shape.rectangles[0]) : clip.rect();
    const Shape product{.rectangles = {&rect, 1}, .isAntialiased = shape.isAntialiased};
    const PixelRect area = (isRect ? product : shape).pixels(clip.bounds(), _target.height());
    if (area.isEmpty())
        return;
    if (shape.rectangles.empty()) {
        if (const auto small = SmallShape::of(shape, _target.height()))
            return this->paint(small->coverage(_coverageMemory).view, clip, paint, mode);
    }

    // Of the clip's region there is either a mask or a shape, which is still to be drawn.
    ClipRegion* region = clip.region();
    const CoverageView* mask = region ? region->coverage(area) : nullptr;
    const Shape* clipShape = region && !mask ? &region->shape() : nullptr;
    if (!isRect && (clipShape || mask || !rect.contains(area) || shape.fillsCenters())) {
        const CoverageView coverage = draw(shape, area, _coverageMemory);
        if (!clipShape)
            return paintProduct(area, rect, coverage, mask, paint, mode);
        const CoverageView drawnMask = draw(*clipShape, area, _maskMemory);
        return paintProduct(area, rect, coverage, &drawnMask, paint, mode);
    }
    if (!isRect)
        return paintWithin(clip.bounds(), shape, area, paint, mode);
    if (mask)
        return paintProduct(area, rect, *mask, nullptr, paint, mode);
    if (!clipShape)
        return paintWithin(area, product, area, paint, mode);
    if (rect.contains(area))
        return paintWithin(area, *clipShape, area, paint, mode);
    paintProduct(area, rect, draw(*clipShape, area, _maskMemory), nullptr, paint, mode);
}

void Compositor::paint(const CoverageView& coverage, const Clip& clip, const Paint& paint, CGBlendMode mode)
{
    const PixelRect area = coverage.area.intersection(clip.bounds());
    if (area.isEmpty())
        return;
    ClipRegion* region = clip.region();
    const CoverageView* mask = region ? region->coverage(area) : nullptr;
    if (!region || mask)
        return paintProduct(area, clip.rect(), coverage, mask, paint, mode);
    const CoverageView drawnMask = draw(region->shape(), area, _maskMemory);
    paintProduct(area, clip.rect(), coverage, &drawnMask, paint, mode);
}

CoverageView Compositor::draw(const Shape& shape, const PixelRect& area, Scratch& memory) const
{
    Coverage coverage(memory, area);
    coverage.draw(shape, _target.height());
    return coverage.view();
}

void Compositor::paintWithin(
    const PixelRect& clip, const Shape& shape, const PixelRect& area, const Paint& paint, CGBlendMode mode)
{
    if (!shape.rectangles.empty()) {
        if (auto rows = solidRows(area, paint, mode)) {
            if (shape.rectangles.size() == 1 && shape.rectangles[0].isWholePixels())
                rows->fill(area);
            else
                _raster.run(shape.rectangles, area, *rows);
            return;
        }
    }
    // A clip that cuts nothing off need not be set.
    const bool isCut = !clip.contains(shape.pixels(_target.bounds(), _target.height()));
    composite({.shape = &shape}, area, isCut ? clip : _target.bounds(), paint, mode);
}

void Compositor::paintProduct(const PixelRect& area, const AreaRect& rect, const CoverageView& coverage,
    const CoverageView* mask, const Paint& paint, CGBlendMode mode)
{
    CoverageProduct coverages(area, rect, coverage, mask, _productRow);
    if (const auto rows = solidRows(area, paint, mode))
        return rows->paint(coverages);
    const CoverageView all = coverages.all(_productMemory);
    composite({.coverage = &all}, area, area, paint, mode);
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

void Compositor::composite(const Stencil& stencil, const PixelRect& area, const PixelRect& clip,
    const Paint& paint, CGBlendMode mode)
{
    const Effect effect = *effectOf(mode); // the graphics state holds no mode that is not offered
    if (effect.isLerp) {
        const PixelTarget::Drawing drawing(_target, area, clip);
        cairo_set_operator(drawing.cairo(), effect.blend);
        paint.setSource(drawing.cairo());
        paintThrough(stencil, drawing.cairo());
        if (!paint.isSolid())
            dropSource(drawing.cairo());
        return;
    }
    // Whatever the mode does, do it to a copy as a whole; then replace by the copy as far as the coverage
    // goes.
    const auto painted = makePainted(area, paint, effect.blend);
    const auto source = makePixelPattern(painted.get(), area, _target.height());
    const PixelTarget::Drawing drawing(_target, area, area);
    cairo_set_operator(drawing.cairo(), CAIRO_OPERATOR_SOURCE);
    cairo_set_source(drawing.cairo(), source.get());
    paintThrough(stencil, drawing.cairo());
    dropSource(drawing.cairo());
}

void Compositor::paintThrough(const Stencil& stencil, cairo_t* cairo) const
{
    if (stencil.shape)
        return drawShape(cairo, *stencil.shape, _target.height());
    const auto surface = makeSurface(*stencil.coverage);
    const auto mask = makePixelPattern(surface.get(), stencil.coverage->area, _target.height());
    cairo_mask(cairo, mask.get());
}

CairoPtr<cairo_surface_t> Compositor::makePainted(
    const PixelRect& area, const Paint& paint, cairo_operator_t effect)
{
    Scratch::Pixels copy = _paintedMemory.make(_target.format(), area);
    const PixelMemory from = memoryAt(area);
    const std::size_t rowSize = std::size_t(area.width()) * _target.bytesPerPixel();
    for (std::ptrdiff_t y = 0; y < area.height(); ++y)
        std::memcpy(
            copy.data + y * copy.bytesPerRow, from.data + y * std::ptrdiff_t(from.bytesPerRow), rowSize);

    const auto cairo = makeBaseSpaceCairo(copy.surface.get(), area, _target.height());
    cairo_set_operator(cairo.get(), effect);
    paint.setSource(cairo.get());
    cairo_paint(cairo.get());
    cairo_surface_flush(copy.surface.get());
    return std::move(copy.surface);
}

PixelMemory Compositor::memoryAt(const PixelRect& area) const
{
    PixelMemory memory = _target.memory();
    memory.data +=
        std::size_t(area.top) * memory.bytesPerRow + std::size_t(area.left) * _target.bytesPerPixel();
    return memory;
}
