// A QR code in a view: the encoder's own time, the path made from its symbol, and the whole drawing.

#include <KorvidAppKit/ZRQRCodeGenerator.h>
#include <KorvidAppKit/ZRQRView.h>

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSGraphicsContext.h>

#include <array>
#include <benchmark/benchmark.h>
#include <qrcodegen.h>
#include <string>

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
    state.counters["modules"] = qrcodegen_getSize(symbol.data());
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
