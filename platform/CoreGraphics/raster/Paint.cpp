#include "CoreGraphics/raster/Paint.h"

#include <cmath>

Paint::Paint(const CGColorRGBA& color, CGFloat alpha)
{
    const CGColorRGBA drawn = color.clamped();
    alpha *= drawn.alpha;
    const auto byte = [](CGFloat value) { return std::uint8_t(std::lround(value * 255)); };
    _bytes = {byte(drawn.red * alpha), byte(drawn.green * alpha), byte(drawn.blue * alpha), byte(alpha)};
}
