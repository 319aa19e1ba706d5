#include "CoreGraphics/raster/Compositor.h"

#include "CoreGraphics/raster/PixelBlending.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

/// Rows of a clip's mask that are drawn at a time, so that they are still in the second-level cache when
/// used.
constexpr int kBandHeight = 64;

struct Run {
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// The range of pixels from the first to the last one that is fully covered, if all between them are. A null
/// mask covers everything.
Run fullRun(const unsigned char* coverage, std::size_t count)
{
    if (!coverage)
        return {0, count};
    const void* const first = std::memchr(coverage, 255, count);
    if (!first)
        return {};
    const auto begin = std::size_t(static_cast<const unsigned char*>(first) - coverage);
    const void* const last = ::memrchr(coverage, 255, count);
    const auto end = std::size_t(static_cast<const unsigned char*>(last) - coverage) + 1;
    // A run that equals itself shifted by one has a single value.
    return std::memcmp(coverage + begin, coverage + begin + 1, end - begin - 1) == 0 ? Run{begin, end}
                                                                                     : Run{};
}

} // namespace

void Compositor::paint(const GradientRows& gradient, const Clip& clip, CGFloat alpha, CGBlendMode mode)
{
    const auto alphaByte = std::uint8_t(std::lround(alpha * 255));
    const PixelRect& area = clip.bounds();
    if (area.isEmpty())
        return;
    if (mode == kCGBlendModeNormal && !_memory.isAlphaOnly())
        paintRows(gradient, area, clip.coverage(area), alphaByte);
    else
        compositeRows(gradient, clip, alphaByte, mode);
}

void Compositor::paintRows(
    const GradientRows& gradient, const PixelRect& area, const ClipCoverage& clip, std::uint8_t alpha)
{
    const auto blendThrough = [&](const PixelRect& part, const AreaRect& rect, const MaskView& mask) {
        MaskProduct product(part, rect, mask, nullptr, _productRow);
        blendRows(gradient, part, &product, alpha);
    };
    if (clip.mask)
        return blendThrough(area, clip.rect, *clip.mask);
    if (clip.shape) {
        for (PixelRect band = area; band.top < area.bottom; band.top = band.bottom) {
            band.bottom = std::min(band.top + kBandHeight, area.bottom);
            blendThrough(band, clip.rect, draw(*clip.shape, band, _clipMemory));
        }
        return;
    }
    if (clip.rect.contains(area))
        return blendRows(gradient, area, nullptr, alpha);
    const Shape edges{.space = _space, .rectangles = {&clip.rect, 1}};
    blendThrough(area, AreaRect::of(area), draw(edges, area, _clipMemory));
}

void Compositor::blendRows(
    const GradientRows& gradient, const PixelRect& area, MaskProduct* product, std::uint8_t alpha)
{
    const auto width = std::size_t(area.width());
    _gradientRow.resize(std::max(_gradientRow.size(), width));
    const std::span row(_gradientRow.data(), width);
    const bool replaces = alpha == 255 && gradient.isOpaque();
    const bool isSameInRows = gradient.isSameInRows(area.height());
    if (isSameInRows)
        gradient.fill(area.left, area.top, row);

    const PixelMemory memory = memoryAt(area);
    const bool isAligned = reinterpret_cast<std::uintptr_t>(memory.data) % alignof(CGGradientPixel) == 0
        && memory.bytesPerRow % sizeof(CGGradientPixel) == 0;
    unsigned char* bytes = memory.data;
    for (int y = area.top; y < area.bottom; ++y, bytes += memory.bytesPerRow) {
        const unsigned char* coverage = product ? product->row(y) : nullptr;
        const auto pixels = [&](std::size_t begin, std::size_t end) {
            const auto part = row.subspan(begin, end - begin);
            if (!isSameInRows && !part.empty())
                gradient.fill(area.left + int(begin), y, part);
            return part;
        };
        const auto blend = [&](std::size_t begin, std::size_t end) {
            blendPixels(bytes + 4 * begin, pixels(begin, end), coverage ? coverage + begin : nullptr, alpha);
        };
        const Run whole = replaces ? fullRun(coverage, width) : Run{};
        blend(0, whole.begin);
        if (isAligned && !isSameInRows && whole.begin < whole.end) {
            auto* const first = reinterpret_cast<CGGradientPixel*>(bytes) + whole.begin;
            gradient.fill(area.left + int(whole.begin), y, {first, whole.end - whole.begin});
        } else {
            const auto part = pixels(whole.begin, whole.end);
            std::memcpy(bytes + 4 * whole.begin, part.data(), part.size_bytes());
        }
        blend(whole.end, width);
    }
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
    const Paint colors = _blender->makePaint({pixels.data, std::size_t(pixels.bytesPerRow)}, area);
    if (gradient.isUnbounded()) {
        const AreaRect rect = AreaRect::of(area);
        return paint(Shape{.space = _space, .rectangles = {&rect, 1}}, clip, colors, mode);
    }
    // Many modes would erase the pixels that a transparent paint covers.
    const GradientRows stencil = gradient.stencil();
    MaskBuffer mask(_shapeMemory, area);
    for (int y = area.top; y < area.bottom; ++y) {
        stencil.fill(area.left, y, row);
        std::ranges::transform(
            row, mask.pixel(area.left, y), [](CGGradientPixel pixel) { return std::uint8_t(pixel); });
    }
    paint(mask.view(), clip, colors, mode);
}
