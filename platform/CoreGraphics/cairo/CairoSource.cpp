#include "CoreGraphics/cairo/CairoSource.h"

#include <cairo.h>

// Colours lie in memory as bytes red, green, blue, alpha. cairo reads a pixel as one number with blue lowest:
// on a little-endian machine it takes our red for its blue, and so gets every colour with the two exchanged.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

Paint makePaint(CairoPtr<cairo_pattern_t> pattern)
{
    return Paint(std::make_shared<const PixelSource>(PixelSource{std::move(pattern)}));
}

void setSource(cairo_t* cairo, const Paint& paint)
{
    if (!paint.isSolid())
        return cairo_set_source(cairo, paint.source().pattern.get());
    // cairo truncates where it turns a colour into premultiplied bytes. Quotients of bytes come out exactly.
    const PixelBytes& bytes = paint.bytes();
    const double alpha = bytes[3] == 0 ? 1 : bytes[3];
    cairo_set_source_rgba(cairo, bytes[2] / alpha, bytes[1] / alpha, bytes[0] / alpha, bytes[3] / 255.0);
}
