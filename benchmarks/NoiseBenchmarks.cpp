// Images of noise, sample by sample.

#include "Benchmarks.h"
#include "PlainNoise.h"
#include "Table.h"

#include <KorvidAppKit/ZRNoise.h>

namespace {

constexpr const char* kTable = "noise";
constexpr float kOriginX = 3.5F, kOriginY = 7.25F, kFrequency = 1;
constexpr float kSmoothStep =
    1 / 64.0F;                      ///< 64 samples from one lattice point to the next in the first octave
constexpr float kCoarseStep = 1.3F; ///< each sample lies in a cell of its own

struct Image {
    std::size_t side;
    std::int32_t octaves;
    float step;
};

using Fill = void (*)(const Image&, float* samples);

void fillAtOnce(const Image& image, float* samples)
{
    ZRFillPerlinNoise(samples, image.side, image.side, image.side, kOriginX, kOriginY, image.step, kFrequency,
        image.octaves);
}

void fillBySingleCalls(const Image& image, float* samples)
{
    for (std::size_t row = 0; row < image.side; ++row) {
        const float y = kOriginY + float(row) * image.step;
        for (std::size_t column = 0; column < image.side; ++column)
            *samples++ = perlin2d(kOriginX + float(column) * image.step, y, kFrequency, image.octaves);
    }
}

void fillPlainly(const Image& image, float* samples)
{
    plainFillNoise(
        samples, image.side, image.side, kOriginX, kOriginY, image.step, kFrequency, image.octaves);
}

void add(const std::string& name, const Image& image)
{
    const auto addOne = [&](const char* contender, Fill fill) {
        addBenchmark(kTable, name, contender, [=](benchmark::State& state) {
            std::vector<float> samples(image.side * image.side);
            for (auto _ : state) {
                fill(image, samples.data());
                benchmark::ClobberMemory();
            }
            setItems(state, samples.size());
        });
    };
    addOne(kOurs, fillAtOnce);
    addOne("perlin2d for each sample", fillBySingleCalls);
    addOne("plain loop", fillPlainly);
}

} // namespace

void addNoiseBenchmarks()
{
    addTable({kTable, "Noise",
        "Times of one sample of an image. The plain loop follows the formula of the noise; ours makes the "
        "same "
        "bits. ZRFillPerlinNoise spreads the largest image over all processors; their times are added up."});
    constexpr int kOctaves = 6;
    for (const std::size_t side : {16, 64, 256, 2048}) {
        const std::string size = std::to_string(side) + "x" + std::to_string(side);
        add(size + "/6 octaves", {side, kOctaves, kSmoothStep});
    }
    add("256x256/1 octave", {256, 1, kSmoothStep});
    add("256x256/6 octaves, coarse", {256, kOctaves, kCoarseStep});
}
