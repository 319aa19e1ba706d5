#include "PlainBoxBlur.h"

#include <CoreGraphics/CGImage.h>
#include <Foundation/NSData.h>
#include <KorvidAppKit/ZRBoxBlur.h>

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <random>
#include <vector>

// Box blurs of random pixels. What counts is the time of all threads together: ours shares the largest image
// out, the peer runs on one.

namespace {

struct Image {
    explicit Image(const benchmark::State& state)
        : side(static_cast<std::uint32_t>(state.range(0)))
        , boxDim(static_cast<std::int32_t>(state.range(1)))
        , source(std::size_t{side} * side)
        , result(source.size())
    {
        std::mt19937 random(3);
        for (auto& pixel : source)
            pixel = random() | 0xFF000000;
    }

    /// Without a copy of the pixels.
    RetainPtr<CGImage> makeCGImage()
    {
        const auto provider = adopt(
            CGDataProviderCreateWithData(nullptr, source.data(), source.size() * sizeof source[0], nullptr));
        const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
        return adopt(CGImageCreate(side, side, 8, 32, sizeof source[0] * side, space.get(),
            kCGImageAlphaPremultipliedLast, provider.get(), nullptr, true, kCGRenderingIntentDefault));
    }

    std::uint32_t side;
    std::int32_t boxDim;
    std::vector<std::uint32_t> source, result;
};

template <class Blur> void blur(benchmark::State& state, Image& image, const Blur& blur)
{
    for (auto _ : state) {
        blur();
        benchmark::ClobberMemory();
    }
    using benchmark::Counter;
    state.counters["perPixel"] = Counter(
        static_cast<double>(image.source.size()), Counter::kIsIterationInvariantRate | Counter::kInvert);
}

void anyBoxes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgNames({"side", "boxDim"});
    benchmark->Args({512, 5})->Args({512, 15})->Args({512, 51})->Args({512, 201})->Args({4096, 15});
    benchmark->Unit(benchmark::kMicrosecond)->MeasureProcessCPUTime();
}

void smallBoxes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgNames({"side", "boxDim"})->Args({512, 5})->Args({512, 15});
    benchmark->Unit(benchmark::kMicrosecond)->MeasureProcessCPUTime();
}

/// From an image to a new one.
void blur_ours(benchmark::State& state)
{
    Image image(state);
    const auto source = image.makeCGImage();
    blur(state, image, [&] {
        const auto blurred = adopt(ZRCreateBoxBlurredImage(source.get(), image.boxDim));
        benchmark::DoNotOptimize(blurred.get());
    });
}
BENCHMARK(blur_ours)->Apply(anyBoxes);

/// From pixels to new ones. It rounds where ours cuts off, and its even boxes lie elsewhere.
void blur_OpenCV(benchmark::State& state)
{
    cv::setNumThreads(1);
    Image image(state);
    const auto side = static_cast<int>(image.side);
    const cv::Mat source(side, side, CV_8UC4, image.source.data());
    blur(state, image, [&] {
        cv::Mat blurred;
        cv::blur(source, blurred, {image.boxDim, image.boxDim}, {-1, -1}, cv::BORDER_REPLICATE);
        benchmark::DoNotOptimize(blurred.data);
    });
    state.SetLabel(CV_VERSION);
}
BENCHMARK(blur_OpenCV)->Apply(anyBoxes);

/// Into the same pixels each time, so that the system has no memory to hand out.
void blur_OpenCVIntoTheSamePixels(benchmark::State& state)
{
    cv::setNumThreads(1);
    Image image(state);
    const auto side = static_cast<int>(image.side);
    const cv::Mat source(side, side, CV_8UC4, image.source.data());
    cv::Mat blurred(side, side, CV_8UC4, image.result.data());
    blur(state, image, [&] {
        cv::blur(source, blurred, {image.boxDim, image.boxDim}, {-1, -1}, cv::BORDER_REPLICATE);
    });
}
BENCHMARK(blur_OpenCVIntoTheSamePixels)->Apply(anyBoxes);

void blurDirectly_ours(benchmark::State& state)
{
    Image image(state);
    blur(state, image, [&] {
        _boxBlurBitmap(image.source.data(), image.result.data(), image.side, image.side, image.boxDim);
    });
}
BENCHMARK(blurDirectly_ours)->Apply(smallBoxes);

void blurDirectly_plainRule(benchmark::State& state)
{
    Image image(state);
    blur(state, image, [&] {
        plainBoxBlur(image.source.data(), image.result.data(), image.side, image.side, image.boxDim);
    });
}
BENCHMARK(blurDirectly_plainRule)->Apply(smallBoxes);

} // namespace
