#include "CoreGraphics/raster/Shadow.h"

namespace {

/// Pixels. Further away nothing would be seen of a shadow, and there is room to add to them.
constexpr double kFarthest = 1e6;
/// What more blur costs in memory would be out of proportion to what is to be seen.
constexpr double kLargestBlur = 500;

/// NaN gives 0.
int wholePixels(CGFloat length)
{
    return std::isnan(length) ? 0 : int(std::lround(std::clamp(length, -kFarthest, kFarthest)));
}

} // namespace

Shadow::Shadow(CGSize offset, CGFloat blur, const CGColorRGBA& color)
    : byX(wholePixels(offset.width))
    , byY(-wholePixels(offset.height))
    , blur(blur > 0 ? std::min(blur, kLargestBlur) : 0)
    , color(color)
{
}

Paint Shadow::paint(const Paint& caster) const
{
    // What pixels lack of alpha is missing in the coverage that they cast.
    return Paint(color, caster.isSolid() ? caster.bytes()[3] / 255.0 : 1);
}

LentCoverage ShadowCaster::cast(
    const Shadow& shadow, const Shape& shape, const Paint& paint, const PixelRect& pixels, int height)
{
    const int reach = CoverageBlur::reach(shadow.blur);
    if (const auto small = paint.isSolid() ? SmallShape::of(shape, height, reach) : std::nullopt) {
        _key.begin(CoverageKind::Shadow);
        _key.add(shadow.blur);
        small->addTo(_key);
        LentCoverage lent = CoverageCache::shared().coverage(_key.bytes(), small->origin(), [&] {
            const CoverageView drawn = small->draw(_memory);
            return shadow.blur > 0 ? _blur.blurred(drawn, shadow.blur, drawn.area.grown(reach)) : drawn;
        });
        lent.view = lent.view.moved(shadow.byX, shadow.byY);
        return lent;
    }

    const PixelRect area = shape.pixels(shadow.casting(pixels), height);
    if (area.isEmpty())
        return {};
    Coverage coverage(_memory, area);
    if (paint.isSolid())
        coverage.draw(shape, height);
    else
        coverage.draw(shape, paint, height);
    return {cast(shadow, coverage.view(), pixels)};
}

CoverageView ShadowCaster::cast(const Shadow& shadow, const CoverageView& coverage, const PixelRect& pixels)
{
    const PixelRect limits = pixels.moved(-shadow.byX, -shadow.byY);
    const CoverageView blurred = shadow.blur > 0 ? _blur.blurred(coverage, shadow.blur, limits) : coverage;
    return blurred.moved(shadow.byX, shadow.byY);
}
