#include "CoreGraphics/raster/Compositor.h"

#include "CoreGraphics/raster/PixelBlending.h"

#include <algorithm>
#include <cmath>
#include <cstring>

void Compositor::paint(const GradientRows& gradient, const Clip& clip, CGFloat alpha, CGBlendMode mode)
{
    const auto alphaByte = std::uint8_t(std::lround(alpha * 255));
    const PixelRect& area = clip.bounds();
    if (area.isEmpty())
        return;
    if (mode != kCGBlendModeNormal || _memory.isAlphaOnly())
        return compositeRows(gradient, clip, alphaByte, mode);
    GradientPainter painter(gradient, alphaByte, memoryAt(area), area, _gradientRow);
    paintAll(area, clip.coverage(area), painter);
}

void Compositor::paintAll(const PixelRect& area, const ClipCoverage& clip, GradientPainter& painter)
{
    if (clip.mask) {
        MaskProduct product(area, clip.rect, nullptr, _productRow);
        return product.paint(*clip.mask, painter);
    }
    if (clip.shape)
        return paintRuns(*clip.shape, area, clip.rect, painter);
    if (clip.rect.contains(area))
        return painter.fill();
    const Shape edges{.space = _space, .rectangles = {&clip.rect, 1}};
    paintRuns(edges, area, AreaRect::of(area), painter);
}

void Compositor::compositeRows(
    const GradientRows& gradient, const Clip& clip, std::uint8_t alpha, CGBlendMode mode)
{
    const PixelRect& area = clip.bounds();
    const auto width = std::size_t(area.width());
    _gradientRow.resize(std::max(_gradientRow.size(), width));
    const std::span row(_gradientRow.data(), width);
    const Scratch::Rows pixels = _gradientMemory.make(area, 4);
    for (int y = area.top; y < area.bottom; ++y) {
        unsigned char* bytes = pixels.row(y - area.top);
        gradient.fill(area.left, y, row);
        std::memset(bytes, 0, row.size_bytes());
        blendPixels(bytes, row, nullptr, alpha);
    }
    MemoryPixels colors({pixels.data, std::size_t(pixels.bytesPerRow)}, area);
    if (gradient.isUnbounded()) {
        const AreaRect rect = AreaRect::of(area);
        return paint(Shape{.space = _space, .rectangles = {&rect, 1}}, clip, Paint(colors), mode);
    }
    // Many modes would erase the pixels that a transparent paint covers.
    const GradientRows stencil = gradient.stencil();
    MaskBuffer mask(_shapeMemory, area);
    for (int y = area.top; y < area.bottom; ++y) {
        stencil.fill(area.left, y, row);
        std::ranges::transform(
            row, mask.pixel(area.left, y), [](CGGradientPixel pixel) { return std::uint8_t(pixel); });
    }
    paint(mask.view(), clip, Paint(colors), mode);
}
