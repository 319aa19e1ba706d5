#include "CoreGraphics/cairo/Compositor.h"

#include "CoreGraphics/cairo/PixelBlending.h"

#include <cmath>
#include <cstring>

void Compositor::paint(const GradientRows& gradient, const Clip& clip, CGFloat alpha, CGBlendMode mode)
{
    const auto alphaByte = std::uint8_t(std::lround(alpha * 255));
    if (clip.bounds().isEmpty())
        return;
    if (mode == kCGBlendModeNormal && !_target.memory().isAlphaOnly)
        paintRows(gradient, clip, alphaByte);
    else
        compositeRows(gradient, clip, alphaByte, mode);
}

void Compositor::paintRows(const GradientRows& gradient, const Clip& clip, std::uint8_t alpha)
{
    const PixelRect& area = clip.bounds();
    const auto width = std::size_t(area.width());
    std::optional<CoverageProduct> coverages;
    if (const auto mask = maskOf(clip, area)) {
        coverages.emplace(area, clip.rect(), *mask, nullptr, _productRow);
    } else if (!clip.rect().contains(area)) {
        const CoverageView edges = draw({.rectangles = {&clip.rect(), 1}}, area, _maskMemory);
        coverages.emplace(area, AreaRect::of(area), edges, nullptr, _productRow);
    }

    const PixelMemory memory = memoryAt(area);
    const bool isAligned = reinterpret_cast<std::uintptr_t>(memory.data) % alignof(CGGradientPixel) == 0
        && memory.bytesPerRow % sizeof(CGGradientPixel) == 0;
    const bool replaces = !coverages && alpha == 255 && gradient.isOpaque();
    const bool isSameInRows = gradient.isSameInRows(area.height());
    const bool needsRow = isSameInRows || !replaces || !isAligned;
    if (needsRow)
        _gradientRow.resize(std::max(_gradientRow.size(), width));
    const std::span row(_gradientRow.data(), needsRow ? width : 0);

    unsigned char* bytes = memory.data;
    for (int y = area.top; y < area.bottom; ++y, bytes += memory.bytesPerRow) {
        if (!needsRow) {
            gradient.fill(area.left, y, {reinterpret_cast<CGGradientPixel*>(bytes), width});
            continue;
        }
        if (y == area.top || !isSameInRows)
            gradient.fill(area.left, y, row);
        if (replaces)
            std::memcpy(bytes, row.data(), row.size_bytes());
        else
            blendPixels(bytes, row, coverages ? coverages->row(y) : nullptr, alpha);
    }
}

void Compositor::compositeRows(
    const GradientRows& gradient, const Clip& clip, std::uint8_t alpha, CGBlendMode mode)
{
    const PixelRect& area = clip.bounds();
    const auto width = std::size_t(area.width());
    _gradientRow.resize(std::max(_gradientRow.size(), width));
    const std::span row(_gradientRow.data(), width);
    const Scratch::Pixels pixels = _gradientMemory.make(CAIRO_FORMAT_ARGB32, area);
    for (int y = area.top; y < area.bottom; ++y) {
        unsigned char* bytes = pixels.data + std::ptrdiff_t(y - area.top) * pixels.bytesPerRow;
        gradient.fill(area.left, y, row);
        std::memset(bytes, 0, row.size_bytes());
        blendPixels(bytes, row, nullptr, alpha);
    }
    const Paint colors(makePixelPattern(pixels.surface.get(), area, _target.height()));
    if (gradient.isUnbounded()) {
        const AreaRect rect = AreaRect::of(area);
        return paint(Shape{.rectangles = {&rect, 1}}, clip, colors, mode);
    }
    // Many modes would erase what a transparent paint covers.
    const GradientRows stencil = gradient.stencil();
    Coverage coverage(_coverageMemory, area);
    for (int y = area.top; y < area.bottom; ++y) {
        stencil.fill(area.left, y, row);
        std::ranges::transform(
            row, coverage.pixel(area.left, y), [](CGGradientPixel pixel) { return std::uint8_t(pixel); });
    }
    paint(coverage.view(), clip, colors, mode);
}
