#include "CoreGraphics/raster/Paint.h"

#include <cmath>

// Colours lie in memory as bytes red, green, blue, alpha. cairo reads a pixel as one number with blue lowest:
// on a little-endian machine it takes our red for its blue, and so gets every colour with the two exchanged.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

Paint::Paint(const CGColorRGBA& color, CGFloat alpha)
{
    const CGColorRGBA drawn = color.clamped();
    alpha *= drawn.alpha;
    const auto byte = [](CGFloat value) { return std::uint8_t(std::lround(value * 255)); };
    _bytes = {byte(drawn.red * alpha), byte(drawn.green * alpha), byte(drawn.blue * alpha), byte(alpha)};
}

Paint::Paint(CairoPtr<cairo_pattern_t> pattern)
    : _pattern(std::move(pattern))
{
}

void Paint::setSource(cairo_t* cairo) const
{
    if (_pattern)
        return cairo_set_source(cairo, _pattern.get());
    // cairo cuts off where it turns a colour into premultiplied bytes. Quotients of bytes come out as meant.
    const double alpha = _bytes[3] == 0 ? 1 : _bytes[3];
    cairo_set_source_rgba(cairo, _bytes[2] / alpha, _bytes[1] / alpha, _bytes[0] / alpha, _bytes[3] / 255.0);
}
