// A QR code: the encoder's own time, the fill of a symbol's path, and the drawing of a view.

#include "Benchmarks.h"
#include "CairoCanvas.h"
#include "CurrentContext.h"
#include "KorvidCanvas.h"
#include "QtCanvas.h"
#include "Table.h"

#include <KorvidAppKit/ZRQRCodeGenerator.h>
#include <KorvidAppKit/ZRQRView.h>

#include <QPainterPath>

#include <array>
#include <qrcodegen.h>

namespace {

constexpr Size kCanvas{200, 200};
constexpr double kInset = 5;
constexpr int kModules = 41; ///< of the symbol of kText, on a side
constexpr double kModule = (kCanvas.width - 2 * kInset) / kModules;
constexpr char kText[] =
    "https://example.org/a/path/of/some/length?with=arguments&that=make&it=long&enough=to+fill+it";

/// One square for each dark module, in units of modules.
RetainPtr<CGPath> symbolPath()
{
    return adopt(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRPathFromText(NSString(kText), nullptr));
}

/// The same in pixels of the canvas.
std::vector<CGRect> symbolSquares()
{
    std::vector<CGRect> squares;
    CGPathApply(symbolPath().get(), &squares, [](void* info, const CGPathElement* element) {
        if (element->type == kCGPathElementMoveToPoint)
            static_cast<std::vector<CGRect>*>(info)->push_back(
                CGRectMake(kInset + element->points[0].x * kModule, kInset + element->points[0].y * kModule,
                    kModule, kModule));
    });
    return squares;
}

void fillKorvidSymbol(benchmark::State& state)
{
    const KorvidCanvas canvas(kCanvas);
    const auto path = symbolPath();
    CGContextTranslateCTM(canvas.context(), kInset, kCanvas.height - kInset);
    CGContextScaleCTM(canvas.context(), kModule, -kModule);
    for (auto _ : state) {
        CGContextAddPath(canvas.context(), path);
        CGContextFillPath(canvas.context());
    }
}

void fillCairoSymbol(benchmark::State& state)
{
    const CairoCanvas canvas(kCanvas);
    const auto squares = symbolSquares();
    for (auto _ : state) {
        for (const CGRect& square : squares)
            addRect(canvas.cairo(), square);
        cairo_fill(canvas.cairo());
    }
}

void fillQtSymbol(benchmark::State& state)
{
    QtCanvas canvas(kCanvas);
    QPainterPath path;
    for (const CGRect& square : symbolSquares())
        path.addRect(qtRect(square));
    path.setFillRule(Qt::WindingFill);
    for (auto _ : state)
        canvas.painter().fillPath(path, canvas.color());
}

void encode(benchmark::State& state)
{
    std::array<std::uint8_t, qrcodegen_BUFFER_LEN_MAX> scratch{}, symbol{};
    for (auto _ : state) {
        qrcodegen_encodeText(
            kText, scratch.data(), symbol.data(), qrcodegen_Ecc_MEDIUM, 1, 40, qrcodegen_Mask_AUTO, true);
        benchmark::DoNotOptimize(symbol);
    }
}

void makePath(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(symbolPath().get());
}

void drawView(benchmark::State& state)
{
    const KorvidCanvas canvas(kCanvas);
    const CurrentContext current(canvas);
    const auto view = make<ZRQRView>(whole(kCanvas));
    view->setInset(kInset);
    view->setString(kText);
    for (auto _ : state)
        view->drawRect(view->bounds());
}

} // namespace

void addQRBenchmarks()
{
    addTable({"QR", "QR codes",
        "A symbol of 41 modules a side on 200 x 200 pixels, with modules between the pixels. The encoder, "
        "qrcodegen, takes the larger part of the times that include it."});
    addBenchmark("QR", "fill the path", KorvidCanvas::kLibrary, fillKorvidSymbol);
    addBenchmark("QR", "fill the path", CairoCanvas::kLibrary, fillCairoSymbol);
    addBenchmark("QR", "fill the path", QtCanvas::kLibrary, fillQtSymbol);
    addBenchmark("QR", "encode and make the path", kOurs, makePath);
    addBenchmark("QR", "draw a ZRQRView", kOurs, drawView);
    addBenchmark("QR", "encode only", "qrcodegen", encode);
}
