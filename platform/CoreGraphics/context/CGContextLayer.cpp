#include "CoreGraphics/context/CGContextInternal.h"

#include "CoreGraphics/CGLog.h"

#include <new>

// A transparency layer takes the place of the bitmap in the context's compositor. It has the same pixel
// space, so transforms and clips mean the same in it; only its memory is limited to the pixels that can be
// seen.

namespace {

/// Pixels that lie further outside of the clip cast no shadow into it.
constexpr int kFarthestCaster = 1024;

/// Transparent pixels for a layer of the area; null without memory.
std::unique_ptr<unsigned char[]> makePixels(const PixelRect& area, std::size_t bytesPerRow)
{
    const auto size = bytesPerRow * std::size_t(area.height());
    return std::unique_ptr<unsigned char[]>(new (std::nothrow) unsigned char[size]());
}

} // namespace

void CGContext::beginLayer(const PixelRect& limits)
{
    PixelRect area =
        paintedPixels().intersection(state().clip.bounds().grown(kFarthestCaster)).intersection(limits);
    const bool isAlphaOnly = bitmap.alphaInfo() == kCGImageAlphaOnly;
    PixelMemory memory{.layout = isAlphaOnly ? PixelLayout::Alpha : PixelLayout::RGBA};
    std::unique_ptr<unsigned char[]> pixels;
    if (!area.isEmpty()) {
        memory.bytesPerRow = (std::size_t(area.width()) * memory.bytesPerPixel() + 3) / 4 * 4;
        pixels = makePixels(area, memory.bytesPerRow);
        if (!pixels)
            CGLogMisuse("CGContextBeginTransparencyLayer", "the layer stays empty: there is no memory");
    }
    if (!pixels)
        area = {};
    memory.data = pixels.get();

    Compositor layer(memory, area, space());
    std::swap(compositor, layer);
    states.push_back(state());
    layers.push_back({std::move(layer), states.size(), std::move(pixels)});
    state().clip = Clip(area);
    state().alpha = 1;
    state().blendMode = kCGBlendModeNormal;
    state().shadow.reset();
}

void CGContext::endLayer()
{
    TransparencyLayer layer = std::move(layers.back());
    layers.pop_back();
    std::swap(compositor, layer.below);
    Compositor& drawn = layer.below;
    states.erase(states.begin() + std::ptrdiff_t(layer.stateCount) - 1, states.end());

    const PixelRect& area = drawn.area();
    if (area.isEmpty())
        return;
    const AreaRect rect = AreaRect::of(area);
    const Shape all{.space = space(), .rectangles = {&rect, 1}};
    if (state().alpha < 1) {
        const Paint faded({0, 0, 0, 1}, 1 - state().alpha);
        drawn.paint(all, Clip(area), faded, kCGBlendModeDestinationOut);
    }
    MemoryPixels pixels = drawn.pixels();
    paint(all, Paint(pixels));
}

void CGContextBeginTransparencyLayer(CGContextRef context, const void*)
{
    if (context)
        context->beginLayer(kAllPixels);
}

void CGContextBeginTransparencyLayerWithRect(CGContextRef context, CGRect rect, const void*)
{
    if (!context)
        return;
    const CGRect base = CGRectApplyAffineTransform(rect, context->state().baseFromUser);
    const AreaRect area = areaRect(base, CGAffineTransformIdentity, context->space());
    context->beginLayer(CGRectIsNull(rect) ? PixelRect{} : area.pixels(kAllPixels));
}

void CGContextEndTransparencyLayer(CGContextRef context)
{
    if (!context)
        return;
    if (context->layers.empty())
        return CGLogMisuse(__func__, "nothing changes: no transparency layer was begun");
    context->endLayer();
}
