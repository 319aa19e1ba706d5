#include "CoreGraphics/cairo/CairoBlender.h"

#include "CoreGraphics/cairo/CairoShape.h"

namespace {

cairo_format_t formatOf(PixelLayout layout)
{
    switch (layout) {
    case PixelLayout::Alpha:
        return CAIRO_FORMAT_A8;
    case PixelLayout::RGBX:
        return CAIRO_FORMAT_RGB24;
    default:
        return CAIRO_FORMAT_ARGB32;
    }
}

/// cairo blends a shape in these modes as a lerp by its coverage. In others it would erase pixels outside, or
/// be wrong at the edges.
cairo_operator_t operatorOf(CGBlendMode mode)
{
    switch (mode) {
    case kCGBlendModeClear:
        return CAIRO_OPERATOR_CLEAR;
    case kCGBlendModeCopy:
        return CAIRO_OPERATOR_SOURCE;
    case kCGBlendModeDestinationOut:
        return CAIRO_OPERATOR_DEST_OUT;
    default:
        return CAIRO_OPERATOR_OVER;
    }
}

// Pixels are stored as bytes red, green, blue, alpha. cairo reads a pixel as one number with blue in the
// lowest byte. On a little-endian machine that is our red, so every colour is passed to cairo with red and
// blue exchanged.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

void setSource(cairo_t* cairo, const PixelBytes& bytes)
{
    // cairo truncates when it converts a colour to premultiplied bytes. Quotients of bytes convert exactly.
    const double alpha = bytes[3] == 0 ? 1 : bytes[3];
    cairo_set_source_rgba(cairo, bytes[2] / alpha, bytes[1] / alpha, bytes[0] / alpha, bytes[3] / 255.0);
}

} // namespace

std::unique_ptr<PixelBlender> makePixelBlender(
    const PixelMemory& memory, const PixelRect& area, const PixelSpace& space)
{
    return std::make_unique<CairoBlender>(memory, area, space, formatOf(memory.layout));
}

void CairoBlender::blend(
    const Shape& shape, const PixelRect& area, const PixelRect& clip, const Paint& paint, CGBlendMode mode)
{
    const CairoTarget::Drawing drawing(_target, area, clip);
    cairo_set_operator(drawing.cairo(), operatorOf(mode));
    setSource(drawing.cairo(), paint.bytes());
    drawShape(drawing.cairo(), shape);
}
