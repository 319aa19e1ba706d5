// Fills in blend modes, through a mask and without one.

#include "Benchmarks.h"
#include "CairoCanvas.h"
#include "KorvidCanvas.h"
#include "QtCanvas.h"
#include "Table.h"

#include <optional>

namespace {

struct Mode {
    const char* name;
    CGBlendMode ours;
    cairo_operator_t cairo;
    std::optional<QPainter::CompositionMode> qt; ///< none where QPainter has no such mode
};

const Mode kModes[]{
    {"multiply", kCGBlendModeMultiply, CAIRO_OPERATOR_MULTIPLY, QPainter::CompositionMode_Multiply},
    {"screen", kCGBlendModeScreen, CAIRO_OPERATOR_SCREEN, QPainter::CompositionMode_Screen},
    {"overlay", kCGBlendModeOverlay, CAIRO_OPERATOR_OVERLAY, QPainter::CompositionMode_Overlay},
    {"soft light", kCGBlendModeSoftLight, CAIRO_OPERATOR_SOFT_LIGHT, QPainter::CompositionMode_SoftLight},
    {"color burn", kCGBlendModeColorBurn, CAIRO_OPERATOR_COLOR_BURN, QPainter::CompositionMode_ColorBurn},
    {"difference", kCGBlendModeDifference, CAIRO_OPERATOR_DIFFERENCE, QPainter::CompositionMode_Difference},
    {"luminosity", kCGBlendModeLuminosity, CAIRO_OPERATOR_HSL_LUMINOSITY, std::nullopt},
    {"source atop", kCGBlendModeSourceAtop, CAIRO_OPERATOR_ATOP, QPainter::CompositionMode_SourceAtop},
    {"xor", kCGBlendModeXOR, CAIRO_OPERATOR_XOR, QPainter::CompositionMode_Xor},
};

constexpr double kAlpha = 0.6;

/// Fills all of the canvas, so that the modes have something to blend with.
void fillBackdrop(KorvidCanvas& canvas, Size size)
{
    CGContextSetRGBFillColor(canvas.context(), 0.9, 0.5, 0.3, 0.8);
    fillRect(canvas, whole(size));
    CGContextSetRGBFillColor(canvas.context(), kColor[0], kColor[1], kColor[2], kAlpha);
}
void fillBackdrop(CairoCanvas& canvas, Size size)
{
    cairo_set_source_rgba(canvas.cairo(), 0.9, 0.5, 0.3, 0.8);
    fillRect(canvas, whole(size));
    cairo_set_source_rgba(canvas.cairo(), kColor[0], kColor[1], kColor[2], kAlpha);
}
void fillBackdrop(QtCanvas& canvas, Size size)
{
    canvas.painter().fillRect(qtRect(whole(size)), QColor::fromRgbF(0.9F, 0.5F, 0.3F, 0.8F));
}

void setMode(KorvidCanvas& canvas, const Mode& mode)
{
    CGContextSetBlendMode(canvas.context(), mode.ours);
}
void setMode(CairoCanvas& canvas, const Mode& mode)
{
    cairo_set_operator(canvas.cairo(), mode.cairo);
}
void setMode(QtCanvas& canvas, const Mode& mode)
{
    canvas.painter().setCompositionMode(*mode.qt);
}

template <class Canvas, class Draw> void add(const std::string& name, const Mode& mode, Size size, Draw draw)
{
    addBenchmark("blend", name, Canvas::kLibrary, [=](benchmark::State& state) {
        Canvas canvas(size, kAlpha);
        fillBackdrop(canvas, size);
        setMode(canvas, mode);
        for (auto _ : state)
            draw(canvas, size);
    });
}

/// A mask of the ellipse in a rectangle.
CairoPtr<cairo_surface_t> ellipseMask(Size size)
{
    CairoPtr<cairo_surface_t> mask(cairo_image_surface_create(CAIRO_FORMAT_A8, size.width, size.height));
    const CairoPtr<cairo_t> cairo(cairo_create(mask.get()));
    addEllipse(cairo.get(), fractional(size));
    cairo_fill(cairo.get());
    return mask;
}

/// Our fill of the whole canvas through a mask, and cairo_mask_surface.
void addMasked(const std::string& name, const Mode& mode, Size size)
{
    addBenchmark("blend", name, KorvidCanvas::kLibrary, [=](benchmark::State& state) {
        KorvidCanvas canvas(size, kAlpha);
        fillBackdrop(canvas, size);
        const auto mask = ellipseMask(size);
        const auto bytesPerRow = std::size_t(cairo_image_surface_get_stride(mask.get()));
        const auto provider = adopt(CGDataProviderCreateWithData(nullptr,
            cairo_image_surface_get_data(mask.get()), bytesPerRow * std::size_t(size.height), nullptr));
        const auto gray = adopt(CGColorSpaceCreateDeviceGray());
        const auto image = adopt(CGImageCreate(std::size_t(size.width), std::size_t(size.height), 8, 8,
            bytesPerRow, gray, kCGImageAlphaNone, provider, nullptr, false, kCGRenderingIntentDefault));
        CGContextClipToMask(canvas.context(), whole(size), image);
        setMode(canvas, mode);
        for (auto _ : state)
            fillRect(canvas, whole(size));
    });
    addBenchmark("blend", name, CairoCanvas::kLibrary, [=](benchmark::State& state) {
        CairoCanvas canvas(size, kAlpha);
        fillBackdrop(canvas, size);
        const auto mask = ellipseMask(size);
        setMode(canvas, mode);
        for (auto _ : state)
            cairo_mask_surface(canvas.cairo(), mask.get(), 0, 0);
    });
}

} // namespace

void addBlendBenchmarks()
{
    addTable({"blend", "Blend modes",
        "A translucent colour over a translucent one: the whole canvas as a rectangle, an ellipse, and the "
        "whole "
        "canvas through a mask in memory, which QPainter has no function for. cairo_mask_surface paints the "
        "mask; ours is a clip. cairo and QPainter would erase what is outside of an ellipse in some other "
        "modes."});
    const auto drawWhole = [](auto& canvas, Size size) { fillRect(canvas, whole(size)); };
    const auto drawEllipse = [](auto& canvas, Size size) { fillEllipse(canvas, fractional(size)); };
    for (const Mode& mode : kModes) {
        for (const Size size : kSizes) {
            const auto addShape = [&](const std::string& shape, auto draw) {
                const std::string name = std::string(mode.name) + ", " + shape + "/" + nameOf(size);
                add<KorvidCanvas>(name, mode, size, draw);
                add<CairoCanvas>(name, mode, size, draw);
                if (mode.qt)
                    add<QtCanvas>(name, mode, size, draw);
            };
            addShape("rectangle", drawWhole);
            addShape("ellipse", drawEllipse);
            addMasked(std::string(mode.name) + ", mask/" + nameOf(size), mode, size);
        }
    }
}
