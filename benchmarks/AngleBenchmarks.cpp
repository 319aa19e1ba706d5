// Images whose values grow with the angle around their centre.

#include "Benchmarks.h"
#include "PlainAngles.h"
#include "Table.h"

#include <KorvidAppKit/ZRAngularGradient.h>

#include <QConicalGradient>
#include <QImage>
#include <QPainter>

namespace {

constexpr const char* kTable = "angles";

void makeImage(benchmark::State& state, std::size_t side, double ringWidth)
{
    for (auto _ : state) {
        const auto image = adopt(ZRCreateAngularGradientImage(true, double(side), double(side), ringWidth));
        benchmark::DoNotOptimize(image.get());
    }
}

void fillPlainly(benchmark::State& state, std::size_t side)
{
    std::vector<std::uint8_t> pixels(side * side);
    for (auto _ : state) {
        plainAngles(pixels.data(), side, side, true);
        benchmark::ClobberMemory();
    }
}

/// Its values are only similar.
void paintConicalGradient(benchmark::State& state, std::size_t side)
{
    QConicalGradient gradient(double(side) / 2, double(side) / 2, 0);
    gradient.setColorAt(0, QColor(0, 0, 0, 255)); // Qt's angles grow counterclockwise
    gradient.setColorAt(1, QColor(0, 0, 0, 0));
    const QSize pixels{int(side), int(side)};
    for (auto _ : state) {
        QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(image.rect(), gradient);
        benchmark::DoNotOptimize(image.constBits());
    }
}

} // namespace

void addAngleBenchmarks()
{
    addTable({kTable, "Angular gradients",
        "A new mask with the angle around its centre. The plain loop calls atan2 for each pixel and makes "
        "the same "
        "values; QPainter fills an image with a QConicalGradient, whose values are similar. Ours and "
        "QPainter's "
        "spread large images over all processors; their times are added up."});
    for (const std::size_t side : {512, 4096}) {
        const std::string name = nameOf(Size{int(side), int(side)});
        addBenchmark(kTable, name, kOurs, [=](benchmark::State& state) { makeImage(state, side, 0); });
        addBenchmark(kTable, name, "plain loop", [=](benchmark::State& state) { fillPlainly(state, side); });
        addBenchmark(kTable, name, "Qt", [=](benchmark::State& state) { paintConicalGradient(state, side); });
        addBenchmark(kTable, name + "/with a ring", kOurs,
            [=](benchmark::State& state) { makeImage(state, side, double(side) / 8); });
    }
}
