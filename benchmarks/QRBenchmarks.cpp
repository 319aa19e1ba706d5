// A QR code in a view: the encoder's own time, the path made from its symbol, the fill of that path beside
// raw cairo, and the whole drawing.

#include "BenchmarkCanvas.h"

#include <KorvidAppKit/ZRQRCodeGenerator.h>
#include <KorvidAppKit/ZRQRView.h>

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSGraphicsContext.h>

#include <array>
#include <qrcodegen.h>
#include <vector>

namespace {

/// 41 modules a side.
std::string text()
{
    return "https://example.org/a/path/of/some/length?with=arguments&that=make&it=long&enough=to+fill+it";
}

void encode(benchmark::State& state)
{
    const std::string utf8 = text();
    std::array<std::uint8_t, qrcodegen_BUFFER_LEN_MAX> scratch{}, symbol{};
    for (auto _ : state) {
        qrcodegen_encodeText(utf8.c_str(), scratch.data(), symbol.data(), qrcodegen_Ecc_MEDIUM, 1, 40,
            qrcodegen_Mask_AUTO, true);
        benchmark::DoNotOptimize(symbol);
    }
}
BENCHMARK(encode)->Name("QR/the encoder alone");

void makePath(benchmark::State& state)
{
    const NSString string(text());
    for (auto _ : state) {
        const auto path =
            adopt(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRPathFromText(string, nullptr));
        benchmark::DoNotOptimize(path.get());
    }
}
BENCHMARK(makePath)->Name("QR/copyQRPathFromText, encoder included");

// The squares of the symbol on a canvas of 200 pixels, modules between pixels.

constexpr Size kCanvas{200, 200};
constexpr double kModule = 190.0 / 41;

RetainPtr<CGPath> symbolPath()
{
    return adopt(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRPathFromText(NSString(text()), nullptr));
}

void fillOurSquares(benchmark::State& state)
{
    const Ours canvas(kCanvas);
    CGContextRef context = canvas.context.get();
    const auto path = symbolPath();
    CGContextTranslateCTM(context, 5, 195);
    CGContextScaleCTM(context, kModule, -kModule);
    for (auto _ : state) {
        CGContextAddPath(context, path.get());
        CGContextFillPath(context);
    }
}
BENCHMARK(fillOurSquares)->Name("QR/fill the path/ours");

void fillCairosSquares(benchmark::State& state)
{
    const Cairo canvas(kCanvas);
    cairo_t* cairo = canvas.cairo.get();
    std::vector<CGPoint> squares;
    CGPathApply(symbolPath().get(), &squares, [](void* info, const CGPathElement* element) {
        if (element->type == kCGPathElementMoveToPoint)
            static_cast<std::vector<CGPoint>*>(info)->push_back(element->points[0]);
    });
    cairo_translate(cairo, 5, 195);
    cairo_scale(cairo, kModule, -kModule);
    for (auto _ : state) {
        for (const CGPoint& square : squares)
            cairo_rectangle(cairo, square.x, square.y, 1, 1);
        cairo_fill(cairo);
    }
}
BENCHMARK(fillCairosSquares)->Name("QR/fill the path/cairo");

void drawView(benchmark::State& state)
{
    const auto view = make<ZRQRView>(NSMakeRect(0, 0, 200, 200));
    view->setInset(5);
    view->setString(NSString(text()));
    const auto rep = NSBitmapImageRep::initWithBitmapDataPlanes(
        nullptr, 200, 200, 8, 4, true, false, NSDeviceRGBColorSpace, 0, 0);
    NSGraphicsContext::setCurrentContext(
        NSGraphicsContext::graphicsContextWithBitmapImageRep(rep.get()).get());
    for (auto _ : state)
        view->drawRect(view->bounds());
    NSGraphicsContext::setCurrentContext(nullptr);
}
BENCHMARK(drawView)->Name("QR/ZRQRView::drawRect, encoder included");

} // namespace
