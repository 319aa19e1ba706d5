// Box blurs of images of random pixels.

#include "Benchmarks.h"
#include "PlainBoxBlur.h"
#include "Table.h"

#include <CoreGraphics/CGImage.h>
#include <KorvidAppKit/ZRBoxBlur.h>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <random>

namespace {

struct Blur {
    std::uint32_t side;   ///< of the image, in pixels
    std::int32_t boxSide; ///< of the box over which samples are averaged
};

/// Opaque, with the same pixels each time.
std::vector<std::uint32_t> randomPixels(std::uint32_t side)
{
    std::mt19937 random(3);
    std::vector<std::uint32_t> pixels(std::size_t{side} * side);
    for (auto& pixel : pixels)
        pixel = random() | 0xFF000000;
    return pixels;
}

/// Does not copy the pixels.
RetainPtr<CGImage> makeImage(const std::vector<std::uint32_t>& pixels, std::uint32_t side)
{
    const std::size_t bytesPerRow = sizeof pixels[0] * side;
    const auto provider =
        adopt(CGDataProviderCreateWithData(nullptr, pixels.data(), bytesPerRow * side, nullptr));
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    return adopt(CGImageCreate(side, side, 8, 32, bytesPerRow, space, kCGImageAlphaPremultipliedLast,
        provider, nullptr, true, kCGRenderingIntentDefault));
}

void blurImage(benchmark::State& state, Blur blur)
{
    const auto pixels = randomPixels(blur.side);
    const auto source = makeImage(pixels, blur.side);
    for (auto _ : state) {
        const auto blurred = adopt(ZRCreateBoxBlurredImage(source, blur.boxSide));
        benchmark::DoNotOptimize(blurred.get());
    }
}

/// Rounds where ours truncates, and centres even boxes differently. With `reuses` it writes into the same
/// pixels each time, which the system has to provide only once.
void blurMatrix(benchmark::State& state, Blur blur, bool reuses)
{
    cv::setNumThreads(1);
    auto pixels = randomPixels(blur.side);
    const cv::Mat source(int(blur.side), int(blur.side), CV_8UC4, pixels.data());
    cv::Mat blurred;
    for (auto _ : state) {
        if (!reuses)
            blurred = cv::Mat();
        cv::blur(source, blurred, {blur.boxSide, blur.boxSide}, {-1, -1}, cv::BORDER_REPLICATE);
        benchmark::DoNotOptimize(blurred.data);
    }
}

using BlurPixels = void (*)(const std::uint32_t* source, std::uint32_t* result, Blur);

void blurPixels(benchmark::State& state, Blur blur, BlurPixels function)
{
    const auto source = randomPixels(blur.side);
    std::vector<std::uint32_t> result(source.size());
    for (auto _ : state) {
        function(source.data(), result.data(), blur);
        benchmark::ClobberMemory();
    }
}

std::string nameOf(Blur blur)
{
    return nameOf(Size{int(blur.side), int(blur.side)}) + "/box of " + std::to_string(blur.boxSide);
}

} // namespace

void addBlurBenchmarks()
{
    addTable({"box blur", "Box blurs",
        "From an image to a new one. OpenCV's runs on one processor; \"same pixels\" writes into the same "
        "result each time, which saves it the pages of a new one; ours reuses those of the last large result "
        "that was released. Ours spreads the largest image over all processors; their times are added up."});
    for (const Blur blur : {Blur{512, 5}, Blur{512, 15}, Blur{512, 51}, Blur{512, 201}, Blur{4096, 15}}) {
        const std::string name = nameOf(blur);
        addBenchmark("box blur", name, kOurs, [=](benchmark::State& state) { blurImage(state, blur); });
        addBenchmark(
            "box blur", name, "OpenCV", [=](benchmark::State& state) { blurMatrix(state, blur, false); });
        addBenchmark("box blur", name, "OpenCV, same pixels",
            [=](benchmark::State& state) { blurMatrix(state, blur, true); });
    }
    addTable({"direct blur", "Direct blurs",
        "_boxBlurBitmap, which adds up every box from its samples, beside the plain loops that do the "
        "same."});
    for (const Blur blur : {Blur{512, 5}, Blur{512, 15}}) {
        const auto add = [&](const char* contender, BlurPixels function) {
            addBenchmark("direct blur", nameOf(blur), contender,
                [=](benchmark::State& state) { blurPixels(state, blur, function); });
        };
        add(kOurs, [](const std::uint32_t* source, std::uint32_t* result, Blur blur) {
            _boxBlurBitmap(source, result, blur.side, blur.side, blur.boxSide);
        });
        add("plain loops", [](const std::uint32_t* source, std::uint32_t* result, Blur blur) {
            plainBoxBlur(source, result, blur.side, blur.side, blur.boxSide);
        });
    }
}
