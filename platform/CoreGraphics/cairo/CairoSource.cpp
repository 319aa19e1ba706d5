#include "CoreGraphics/cairo/CairoSource.h"

#include <cairo.h>

// Pixels are stored as bytes red, green, blue, alpha. cairo reads a pixel as one number with blue in the
// lowest byte. On a little-endian machine that is our red, so every colour is passed to cairo with red and
// blue exchanged.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

Paint makePaint(CairoPtr<cairo_pattern_t> pattern)
{
    return Paint(std::make_shared<const PixelSource>(PixelSource{std::move(pattern)}));
}

Paint makePaint(CairoPtr<cairo_pattern_t> pattern, const PixelView& pixels)
{
    return {std::make_shared<const PixelSource>(PixelSource{std::move(pattern)}), pixels};
}

void setSource(cairo_t* cairo, const Paint& paint)
{
    if (!paint.isSolid())
        return cairo_set_source(cairo, paint.source().pattern.get());
    // cairo truncates when it converts a colour to premultiplied bytes. Quotients of bytes convert exactly.
    const PixelBytes& bytes = paint.bytes();
    const double alpha = bytes[3] == 0 ? 1 : bytes[3];
    cairo_set_source_rgba(cairo, bytes[2] / alpha, bytes[1] / alpha, bytes[0] / alpha, bytes[3] / 255.0);
}
