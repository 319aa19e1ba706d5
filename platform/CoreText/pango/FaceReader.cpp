#include "CoreText/pango/FaceReader.h"

#include "CoreGraphics/CGImageInternal.h"
#include "CoreGraphics/CGPathInternal.h"

#include <array>
#include <cairo.h>
#include <cstring>
#include <memory>

namespace {

/// The destination of HarfBuzz's drawing calls.
struct OutlinePen {
    CGMutablePathRef path;
    CGAffineTransform emFromUnits;
};

OutlinePen& penOf(void* data)
{
    return *static_cast<OutlinePen*>(data);
}

void moveTo(hb_draw_funcs_t*, void* pen, hb_draw_state_t*, float x, float y, void*)
{
    CGPathMoveToPoint(penOf(pen).path, &penOf(pen).emFromUnits, x, y);
}

void lineTo(hb_draw_funcs_t*, void* pen, hb_draw_state_t*, float x, float y, void*)
{
    CGPathAddLineToPoint(penOf(pen).path, &penOf(pen).emFromUnits, x, y);
}

void quadraticTo(
    hb_draw_funcs_t*, void* pen, hb_draw_state_t*, float controlX, float controlY, float x, float y, void*)
{
    CGPathAddQuadCurveToPoint(penOf(pen).path, &penOf(pen).emFromUnits, controlX, controlY, x, y);
}

void cubicTo(hb_draw_funcs_t*, void* pen, hb_draw_state_t*, float control1X, float control1Y, float control2X,
    float control2Y, float x, float y, void*)
{
    CGPathAddCurveToPoint(
        penOf(pen).path, &penOf(pen).emFromUnits, control1X, control1Y, control2X, control2Y, x, y);
}

void closePath(hb_draw_funcs_t*, void* pen, hb_draw_state_t*, void*)
{
    CGPathCloseSubpath(penOf(pen).path);
}

hb_draw_funcs_t* makeDrawFunctions()
{
    hb_draw_funcs_t* functions = hb_draw_funcs_create();
    hb_draw_funcs_set_move_to_func(functions, moveTo, nullptr, nullptr);
    hb_draw_funcs_set_line_to_func(functions, lineTo, nullptr, nullptr);
    hb_draw_funcs_set_quadratic_to_func(functions, quadraticTo, nullptr, nullptr);
    hb_draw_funcs_set_cubic_to_func(functions, cubicTo, nullptr, nullptr);
    hb_draw_funcs_set_close_path_func(functions, closePath, nullptr, nullptr);
    hb_draw_funcs_make_immutable(functions);
    return functions;
}

void drawGlyph(hb_font_t* font, std::uint32_t glyph, hb_draw_funcs_t* functions, OutlinePen& pen)
{
#if HB_VERSION_ATLEAST(7, 0, 0)
    hb_font_draw_glyph(font, glyph, functions, &pen);
#else
    hb_font_get_glyph_shape(font, glyph, functions, &pen);
#endif
}

struct SurfaceDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};

/// The rest of a PNG file that cairo reads.
struct ByteStream {
    const char* next;
    std::size_t left;
};

cairo_status_t readBytes(void* closure, unsigned char* bytes, unsigned int count)
{
    auto& stream = *static_cast<ByteStream*>(closure);
    if (count > stream.left)
        return CAIRO_STATUS_READ_ERROR;
    std::memcpy(bytes, stream.next, count);
    stream.next += count;
    stream.left -= count;
    return CAIRO_STATUS_SUCCESS;
}

/// A copy of cairo's pixels, which are words of alpha, red, green and blue, as RGBA bytes.
RetainPtr<CGImage> makeImage(cairo_surface_t* surface)
{
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS
        || cairo_image_surface_get_format(surface) != CAIRO_FORMAT_ARGB32)
        return nullptr;
    const auto width = std::size_t(cairo_image_surface_get_width(surface));
    const auto height = std::size_t(cairo_image_surface_get_height(surface));
    const auto stride = std::size_t(cairo_image_surface_get_stride(surface));
    const unsigned char* row = cairo_image_surface_get_data(surface);
    std::vector<std::uint8_t> pixels;
    pixels.reserve(width * height * 4);
    for (std::size_t y = 0; y < height; ++y, row += stride)
        for (std::size_t x = 0; x < width; ++x) {
            std::uint32_t word = 0;
            std::memcpy(&word, row + 4 * x, sizeof word);
            for (const int shift : {16, 8, 0, 24})
                pixels.push_back(std::uint8_t(word >> shift));
        }
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    return adopt(CGImageCreateWithCopiedPixels(
        pixels.data(), width, height, 32, 4 * width, space.get(), kCGImageAlphaPremultipliedLast));
}

HarfBuzzPtr<hb_font_t> makeUnscaledFont(hb_font_t* font)
{
    hb_face_t* face = hb_font_get_face(font);
    HarfBuzzPtr<hb_font_t> unscaled(hb_font_create(face));
    unsigned int count = 0;
    if (const float* coordinates = hb_font_get_var_coords_design(font, &count); count > 0)
        hb_font_set_var_coords_design(unscaled.get(), coordinates, count);
    hb_font_make_immutable(unscaled.get());
    return unscaled;
}

} // namespace

FontFace::Reader::Reader(hb_font_t* font)
    : _font(makeUnscaledFont(font))
    , _unitsPerEm(hb_face_get_upem(hb_font_get_face(font)))
    , _hasImages(hb_ot_color_has_png(hb_font_get_face(font)))
    , _hasLayers(hb_ot_color_has_layers(hb_font_get_face(font)))
{
}

FaceMetrics FontFace::Reader::metrics() const
{
    hb_font_extents_t extents{};
    if (!hb_font_get_h_extents(_font.get(), &extents))
        return {.ascent = 0.8, .descent = 0.2};
    return {em(extents.ascender), -em(extents.descender), em(extents.line_gap)};
}

std::uint32_t FontFace::Reader::glyph(char32_t character) const
{
    hb_codepoint_t glyph = 0;
    return hb_font_get_nominal_glyph(_font.get(), character, &glyph) ? glyph : 0;
}

RetainPtr<const CGPath> FontFace::Reader::outline(std::uint32_t glyph) const
{
    static hb_draw_funcs_t* const functions = makeDrawFunctions();
    auto path = adopt(CGPathCreateMutable());
    OutlinePen pen{path.get(), CGAffineTransformMakeScale(1 / _unitsPerEm, 1 / _unitsPerEm)};
    drawGlyph(_font.get(), glyph, functions, pen);
    if (path->isEmpty())
        return nullptr;
    return path;
}

std::vector<GlyphPicture::Layer> FontFace::Reader::layers(std::uint32_t glyph) const
{
    hb_face_t* face = hb_font_get_face(_font.get());
    std::array<hb_ot_color_layer_t, 16> part{};
    std::vector<GlyphPicture::Layer> layers;
    for (unsigned int total = 1; layers.size() < total;) {
        auto count = unsigned(part.size());
        total = hb_ot_color_glyph_get_layers(face, glyph, unsigned(layers.size()), &count, part.data());
        if (count == 0)
            break;
        for (const auto& layer : std::span(part).first(count)) {
            GlyphPicture::Layer& added = layers.emplace_back();
            added.outline = outline(layer.glyph);
            hb_color_t color = 0;
            unsigned int colorCount = 1;
            if (layer.color_index != 0xFFFF // the text's colour
                && hb_ot_color_palette_get_colors(face, 0, layer.color_index, &colorCount, &color) > 0)
                added.color = CGColorRGBA{hb_color_get_red(color) / 255.0, hb_color_get_green(color) / 255.0,
                    hb_color_get_blue(color) / 255.0, hb_color_get_alpha(color) / 255.0};
        }
    }
    return layers;
}

GlyphPicture FontFace::Reader::picture(std::uint32_t glyph) const
{
    GlyphPicture picture;
    if (_hasLayers)
        picture.layers = layers(glyph);
    if (!picture.layers.empty()) {
        CGRect ink = CGRectNull;
        for (const GlyphPicture::Layer& layer : picture.layers)
            ink = CGRectUnion(ink, CGPathGetPathBoundingBox(layer.outline.get()));
        picture.ink = CGRectIsNull(ink) ? CGRectZero : ink;
        return picture;
    }
    if (_hasImages) {
        const HarfBuzzPtr<hb_blob_t> png(hb_ot_color_glyph_reference_png(_font.get(), glyph));
        hb_glyph_extents_t extents{};
        if (hb_blob_get_length(png.get()) > 0 && hb_font_get_glyph_extents(_font.get(), glyph, &extents)) {
            picture.isImage = true;
            picture.ink = CGRectStandardize(CGRectMake(
                em(extents.x_bearing), em(extents.y_bearing), em(extents.width), em(extents.height)));
            return picture;
        }
    }
    picture.outline = outline(glyph);
    if (picture.outline)
        picture.ink = CGPathGetPathBoundingBox(picture.outline.get());
    return picture;
}

RetainPtr<CGImage> FontFace::Reader::image(std::uint32_t glyph) const
{
    const HarfBuzzPtr<hb_blob_t> png(hb_ot_color_glyph_reference_png(_font.get(), glyph));
    unsigned int length = 0;
    const char* bytes = hb_blob_get_data(png.get(), &length);
    ByteStream stream{bytes, length};
    const std::unique_ptr<cairo_surface_t, SurfaceDeleter> surface(
        cairo_image_surface_create_from_png_stream(readBytes, &stream));
    return makeImage(surface.get());
}
