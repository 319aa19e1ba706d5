#include "PlainAngles.h"

#include <KorvidAppKit/ZRAngularGradient.h>

#include <QConicalGradient>
#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>
#include <vector>

// A sweep of angles over a square image: ours, the plain loop that gives the same bytes, and Qt's conical
// gradient, whose bytes are only similar.

namespace {

void setPixels(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * state.range(0) * state.range(0));
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgName("side")->Arg(512)->Arg(4096)->Unit(benchmark::kMicrosecond)->UseRealTime();
}

void angles_ours(benchmark::State& state)
{
    const auto side = static_cast<double>(state.range(0));
    for (auto _ : state) {
        const auto image = adopt(ZRCreateAngularGradientImage(true, side, side, 0));
        benchmark::DoNotOptimize(image.get());
    }
    setPixels(state);
}
BENCHMARK(angles_ours)->Apply(sizes);

void angles_oursWithRing(benchmark::State& state)
{
    const auto side = static_cast<double>(state.range(0));
    for (auto _ : state) {
        const auto image = adopt(ZRCreateAngularGradientImage(true, side, side, side / 8));
        benchmark::DoNotOptimize(image.get());
    }
    setPixels(state);
}
BENCHMARK(angles_oursWithRing)->Apply(sizes);

void angles_plainLoop(benchmark::State& state)
{
    const auto side = static_cast<std::size_t>(state.range(0));
    std::vector<std::uint8_t> pixels(side * side);
    for (auto _ : state) {
        plainAngles(pixels.data(), side, side, true);
        benchmark::ClobberMemory();
    }
    setPixels(state);
}
BENCHMARK(angles_plainLoop)->Apply(sizes);

void angles_Qt(benchmark::State& state)
{
    const auto side = static_cast<int>(state.range(0));
    QConicalGradient gradient(side / 2.0, side / 2.0, 0);
    gradient.setColorAt(0, QColor(0, 0, 0, 255)); // Qt's angles grow the other way round
    gradient.setColorAt(1, QColor(0, 0, 0, 0));
    for (auto _ : state) {
        QImage image(side, side, QImage::Format_Alpha8);
        image.fill(0);
        QPainter(&image).fillRect(image.rect(), gradient);
        benchmark::DoNotOptimize(image.constBits());
    }
    setPixels(state);
}
BENCHMARK(angles_Qt)->Apply(sizes);

} // namespace
