#include "support/Canvas.h"
#include "support/EachVectorUnit.h"

#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
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

TEST(VectorUnits, DrawTheSameShadows)
{
    static constexpr int kWidth = 303; // too wide for its mask to be cached
    static constexpr int kHeight = 25;
    const auto drawn = [] {
        auto canvas = std::make_unique<Canvas>(kWidth, kHeight);
        CGContextSetShadow(canvas->context(), CGSizeMake(0, -1), 3.3);
        CGContextFillEllipseInRect(canvas->context(), CGRectMake(5.3, 4.6, 290.2, 14.7));
        return canvas;
    };
    const auto first = drawn();
    onEachVectorUnit([&] {
        const auto other = drawn();
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x)
                ASSERT_EQ(first->pixel(x, y), other->pixel(x, y)) << x << " " << y;
        }
    });
}
