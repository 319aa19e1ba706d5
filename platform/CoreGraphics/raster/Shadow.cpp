#include "CoreGraphics/raster/Shadow.h"

#include "CoreGraphics/raster/MaskBuffer.h"
#include "CoreGraphics/raster/Paint.h"

namespace {

/// Largest offset in pixels. A shadow further away is invisible, and sums with coordinates do not overflow.
constexpr double kMaxOffset = 1e6;
/// Largest blur in pixels: a larger one would need too much memory for its visible effect.
constexpr double kMaxBlur = 500;

/// NaN gives 0.
int wholePixels(CGFloat length)
{
    return std::isnan(length) ? 0 : int(std::lround(std::clamp(length, -kMaxOffset, kMaxOffset)));
}

} // namespace

Shadow::Shadow(CGSize offset, CGFloat blur, const CGColorRGBA& color)
    : byX(wholePixels(offset.width))
    , byY(-wholePixels(offset.height))
    , blur(blur > 0 ? std::min(blur, kMaxBlur) : 0)
    , color(color)
{
}

Paint Shadow::paint(const Paint& caster) const
{
    // The alpha of a paint of pixels is already part of its shadow's mask.
    return Paint(color, caster.isSolid() ? caster.bytes()[3] / 255.0 : 1);
}

MaskRef ShadowCaster::cast(
    const Shadow& shadow, const Shape& shape, const Paint& paint, const PixelRect& pixels)
{
    const int reach = MaskBlur::reach(shadow.blur);
    if (const auto small = paint.isSolid() ? SmallShape::of(shape, reach) : std::nullopt) {
        _key.begin(MaskKind::Shadow);
        _key.add(shadow.blur);
        small->addTo(_key);
        MaskRef mask = MaskCache::shared().mask(_key.bytes(), small->origin(), [&] {
            const MaskView drawn = small->draw(_memory);
            return shadow.blur > 0 ? _blur.blurred(drawn, shadow.blur, drawn.area.grown(reach)) : drawn;
        });
        mask.view = mask.view.moved(shadow.byX, shadow.byY);
        return mask;
    }

    const PixelRect area = shape.pixels(shadow.casting(pixels));
    if (area.isEmpty())
        return {};
    MaskBuffer mask(_memory, area);
    if (paint.isSolid())
        mask.draw(shape);
    else
        mask.draw(shape, paint.pixels());
    return {cast(shadow, mask.view(), pixels)};
}

MaskView ShadowCaster::cast(const Shadow& shadow, const MaskView& mask, const PixelRect& pixels)
{
    const PixelRect limits = pixels.moved(-shadow.byX, -shadow.byY);
    const MaskView blurred = shadow.blur > 0 ? _blur.blurred(mask, shadow.blur, limits) : mask;
    return blurred.moved(shadow.byX, shadow.byY);
}
