#include "support/Canvas.h"
#include "support/EachVectorUnit.h"

#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <concepts>
#include <fstream>
#include <sstream>
#include <string>

namespace {

/// What the system says about the first processor: its features by their names in /proc/cpuinfo.
std::vector<std::string> featuresOfProcessor()
{
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);) {
        if (!line.starts_with("flags"))
            continue;
        std::istringstream words(line.substr(line.find(':') + 1));
        return {std::istream_iterator<std::string>(words), {}};
    }
    return {};
}

} // namespace

#if HWY_ARCH_X86
TEST(VectorUnits, AreThoseWhoseInstructionsTheProcessorHas)
{
    const auto features = featuresOfProcessor();
    ASSERT_FALSE(features.empty());
    const auto has = [&](std::initializer_list<const char*> names) {
        return std::all_of(names.begin(), names.end(), [&](const char* name) {
            return std::find(features.begin(), features.end(), name) != features.end();
        });
    };
    const bool ssse3 = has({"ssse3"});
    const bool sse4 = ssse3 && has({"sse4_1", "sse4_2", "aes", "pclmulqdq"});
    const bool avx2 = sse4 && has({"avx2", "fma", "bmi1", "bmi2", "f16c", "abm"});
    const bool avx3 = avx2 && has({"avx512f", "avx512vl", "avx512dq", "avx512bw", "avx512cd"});
    const bool avx3DL = avx3
        && has({"avx512_vnni", "vpclmulqdq", "avx512vbmi", "avx512_vbmi2", "vaes", "avx512_vpopcntdq",
            "avx512_bitalg", "gfni"});
    const std::int64_t units = hwy::SupportedTargets();
    EXPECT_EQ((units & HWY_SSSE3) != 0, ssse3);
    EXPECT_EQ((units & HWY_SSE4) != 0, sse4);
    EXPECT_EQ((units & HWY_AVX2) != 0, avx2);
    EXPECT_EQ((units & HWY_AVX3) != 0, avx3);
    EXPECT_EQ((units & HWY_AVX3_DL) != 0, avx3DL);
}
#endif

TEST(VectorUnits, IncludeWhatTheCompilerMayUseAnyway)
{
    EXPECT_NE(hwy::SupportedTargets() & HWY_STATIC_TARGET, 0);
}

namespace {

/// Compares what is drawn in a canvas of a size on all vector units.
template <std::invocable<CGContextRef> Draw>
void expectTheSameOnEachVectorUnit(int width, int height, Draw draw)
{
    Canvas first(width, height);
    draw(first.context());
    onEachVectorUnit([&] {
        Canvas other(width, height);
        draw(other.context());
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(first.pixel(x, y), other.pixel(x, y)) << x << " " << y;
        }
    });
}

} // namespace

TEST(VectorUnits, DrawTheSameShadows)
{
    // Too wide for its mask to be cached.
    expectTheSameOnEachVectorUnit(303, 25, [](CGContextRef context) {
        CGContextSetShadow(context, CGSizeMake(0, -1), 3.3);
        CGContextFillEllipseInRect(context, CGRectMake(5.3, 4.6, 290.2, 14.7));
    });
}

TEST(VectorUnits, DrawTheSameEllipses)
{
    // Too large for their masks to be cached; the narrow ones are blended in another way.
    expectTheSameOnEachVectorUnit(300, 280, [](CGContextRef context) {
        CGContextSetRGBFillColor(context, 0.9, 0.4, 0.2, 0.7);
        CGContextSetLineWidth(context, 0.66);
        CGContextFillEllipseInRect(context, CGRectMake(1.3, 2.6, 287.2, 52.7));
        CGContextFillEllipseInRect(context, CGRectMake(20.3, 2.6, 43.2, 271.7));
        CGContextStrokeEllipseInRect(context, CGRectMake(60.4, 8.1, 37.3, 268.9));
    });
}

TEST(VectorUnits, DrawTheSameSquares)
{
    std::vector<CGRect> rects;
    for (int i = 0; i < 600; ++i) {
        const int column = i % 30;
        const int row = i / 30;
        if (i * i % 7 < 4)
            rects.push_back(CGRectMake(3.7 * column + 2.9, 5.3 * row + 1.6, 3.7, 5.3));
    }
    expectTheSameOnEachVectorUnit(120, 120, [&rects](CGContextRef context) {
        CGContextSetRGBFillColor(context, 1, 0.5, 0.25, 0.8);
        CGContextFillRects(context, rects.data(), rects.size());
    });
}
