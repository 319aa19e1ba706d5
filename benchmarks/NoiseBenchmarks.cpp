#include "PlainNoise.h"

#include <KorvidAppKit/ZRNoise.h>

#include <benchmark/benchmark.h>
#include <vector>

// Images of noise: the plain loop over the rule, the same loop over perlin2d, and ZRFillPerlinNoise, which
// for the largest shares the work out over all processors. Smooth images have 64 samples from one lattice
// point to the next in the first layer; in coarse ones every sample lies in a cell of its own.

namespace {

struct Image {
    explicit Image(const benchmark::State& state)
        : side(static_cast<std::size_t>(state.range(0)))
        , depth(static_cast<std::int32_t>(state.range(1)))
        , step(state.range(2) ? 1.3F : 1 / 64.0F)
        , samples(side * side)
    {
    }

    std::size_t side;
    std::int32_t depth;
    float step;
    std::vector<float> samples;
};

constexpr float kOriginX = 3.5F, kOriginY = 7.25F, kFrequency = 1;

void cases(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgNames({"side", "depth", "coarse"});
    for (const std::int64_t side : {16, 64, 256, 2048})
        benchmark->Args({side, 6, 0});
    benchmark->Args({256, 1, 0})->Args({256, 6, 1});
    // By the clock: the largest image takes several threads.
    benchmark->UseRealTime();
}

template <class Fill> void noise(benchmark::State& state, const Fill& fill)
{
    Image image(state);
    for (auto _ : state) {
        fill(image);
        benchmark::ClobberMemory();
    }
    using benchmark::Counter;
    state.counters["perSample"] = Counter(
        static_cast<double>(image.samples.size()), Counter::kIsIterationInvariantRate | Counter::kInvert);
}

void noise_ours(benchmark::State& state)
{
    noise(state, [](Image& image) {
        ZRFillPerlinNoise(image.samples.data(), image.side, image.side, image.side, kOriginX, kOriginY,
            image.step, kFrequency, image.depth);
    });
}
BENCHMARK(noise_ours)->Apply(cases);

void noise_oursInSingleCalls(benchmark::State& state)
{
    noise(state, [](Image& image) {
        float* sample = image.samples.data();
        for (std::size_t r = 0; r < image.side; ++r) {
            const float y = kOriginY + static_cast<float>(r) * image.step;
            for (std::size_t c = 0; c < image.side; ++c)
                *sample++ =
                    perlin2d(kOriginX + static_cast<float>(c) * image.step, y, kFrequency, image.depth);
        }
    });
}
BENCHMARK(noise_oursInSingleCalls)->Apply(cases);

void noise_plainRule(benchmark::State& state)
{
    noise(state, [](Image& image) {
        plainFillNoise(image.samples.data(), image.side, image.side, kOriginX, kOriginY, image.step,
            kFrequency, image.depth);
    });
}
BENCHMARK(noise_plainRule)->Apply(cases);

} // namespace
