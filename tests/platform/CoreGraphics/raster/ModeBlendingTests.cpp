// Every blend mode against its formula in double precision, for random premultiplied pixels and coverages, on
// each kind of vector unit.

#include "../BlendReference.h"
#include "CoreGraphics/raster/ModeBlending.h"
#include "support/EachVectorUnit.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

/// The byte of the mode's result and that of the lerp are rounded.
constexpr double kTolerance = 1.002;
/// Several vectors of every unit and a remainder.
constexpr std::size_t kCount = 4099;

using ByteRow = std::vector<unsigned char>;

class ModeBlending : public testing::Test {
protected:
    /// Mostly any bytes, and often the ones at which formulas have their corners.
    unsigned char randomByte()
    {
        static constexpr unsigned char kCorners[]{0, 1, 127, 128, 254, 255};
        const unsigned value = _random();
        return value % 3 == 0 ? kCorners[value / 3 % 6] : static_cast<unsigned char>(value / 8);
    }

    /// Premultiplied pixels.
    ByteRow randomPixels(std::size_t count)
    {
        ByteRow bytes(4 * count);
        for (std::size_t i = 0; i < bytes.size(); i += 4) {
            bytes[i + 3] = randomByte();
            for (std::size_t c = 0; c < 3; ++c)
                bytes[i + c] = static_cast<unsigned char>((randomByte() * bytes[i + 3] + 127) / 255);
            if (_random() % 8 == 0) // a gray
                bytes[i + 1] = bytes[i + 2] = bytes[i];
        }
        return bytes;
    }
    ByteRow randomBytes(std::size_t count)
    {
        ByteRow bytes(count);
        std::ranges::generate(bytes, [&] { return randomByte(); });
        return bytes;
    }

private:
    std::mt19937 _random{2718};
};

BlendColor colorOf(const unsigned char* pixel, bool isOpaque = false)
{
    return {pixel[0] / 255.0, pixel[1] / 255.0, pixel[2] / 255.0, isOpaque ? 1 : pixel[3] / 255.0};
}

void expectNear(const BlendColor& exact, const BlendColor& below, double coverage, const unsigned char* pixel,
    std::size_t channelCount)
{
    for (std::size_t c = 0; c < channelCount; ++c) {
        const double expected = (below[c] + (exact[c] - below[c]) * coverage) * 255;
        ASSERT_NEAR(pixel[c], expected, kTolerance) << "component " << c << ", coverage " << coverage;
    }
}

} // namespace

TEST_F(ModeBlending, IsExactForPixelsOfEveryKind)
{
    const ByteRow source = randomPixels(kCount);
    const ByteRow before = randomPixels(kCount);
    const ByteRow coverage = randomBytes(kCount);
    for (const PixelLayout layout : {PixelLayout::RGBA, PixelLayout::RGBX}) {
        const bool isOpaque = layout == PixelLayout::RGBX;
        for (const CGBlendMode mode : kBlendModes) {
            SCOPED_TRACE(testing::Message() << "mode " << mode << (isOpaque ? ", opaque" : ""));
            ByteRow first;
            onEachVectorUnit([&] {
                ByteRow bytes = before;
                blendRow(mode, layout, bytes.data(), {source.data()}, coverage.data(), kCount);
                if (first.empty())
                    first = bytes;
                ASSERT_TRUE(bytes == first); // the same on every unit
            });
            for (std::size_t i = 0; i < kCount; ++i) {
                const BlendColor below = colorOf(&before[4 * i], isOpaque);
                expectNear(blendedExactly(mode, colorOf(&source[4 * i]), below), below, coverage[i] / 255.0,
                    &first[4 * i], isOpaque ? 3 : 4);
            }
        }
    }
}

TEST_F(ModeBlending, IsRoundedOnceWhereThereIsFullCoverage)
{
    const ByteRow source = randomPixels(kCount);
    const ByteRow before = randomPixels(kCount);
    for (const CGBlendMode mode : kBlendModes) {
        SCOPED_TRACE(mode);
        ByteRow bytes = before;
        blendRow(mode, PixelLayout::RGBA, bytes.data(), {source.data()}, nullptr, kCount);
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const std::size_t pixel = i / 4 * 4;
            const BlendColor exact = blendedExactly(mode, colorOf(&source[pixel]), colorOf(&before[pixel]));
            ASSERT_NEAR(bytes[i], exact[i % 4] * 255, 0.502) << "component " << i % 4;
        }
    }
}

TEST_F(ModeBlending, IsExactForAlphas)
{
    const ByteRow source = randomBytes(kCount);
    const ByteRow before = randomBytes(kCount);
    const ByteRow coverage = randomBytes(kCount);
    for (const CGBlendMode mode : kBlendModes) {
        SCOPED_TRACE(mode);
        ByteRow first;
        onEachVectorUnit([&] {
            ByteRow bytes = before;
            blendRow(mode, PixelLayout::Alpha, bytes.data(), {source.data()}, coverage.data(), kCount);
            if (first.empty())
                first = bytes;
            ASSERT_TRUE(bytes == first);
        });
        for (std::size_t i = 0; i < kCount; ++i) {
            const double s = source[i] / 255.0;
            const double d = before[i] / 255.0;
            const double exact = blendedExactly(mode, {0, 0, 0, s}, {0, 0, 0, d})[3];
            ASSERT_NEAR(first[i], (d + (exact - d) * coverage[i] / 255) * 255, kTolerance);
        }
    }
}

TEST_F(ModeBlending, ASolidSourceIsTheSameAsARowOfIt)
{
    const ByteRow before = randomPixels(kCount);
    const ByteRow coverage = randomBytes(kCount);
    const unsigned char color[]{20, 130, 70, 180};
    for (const PixelLayout layout : {PixelLayout::RGBA, PixelLayout::Alpha}) {
        const bool isAlpha = layout == PixelLayout::Alpha;
        const std::size_t count = isAlpha ? 4 * kCount : kCount;
        ByteRow row;
        for (std::size_t i = 0; i < 4 * kCount; ++i)
            row.push_back(isAlpha ? color[3] : color[i % 4]);
        for (const CGBlendMode mode : kBlendModes) {
            for (const unsigned char* covers :
                {coverage.data(), static_cast<const unsigned char*>(nullptr)}) {
                ByteRow solid = before;
                ByteRow pixels = before;
                const std::size_t part = covers ? kCount : count;
                blendRow(mode, layout, solid.data(), {isAlpha ? color + 3 : color, true}, covers, part);
                blendRow(mode, layout, pixels.data(), {row.data()}, covers, part);
                ASSERT_TRUE(solid == pixels) << "mode " << mode;
            }
        }
    }
}

TEST_F(ModeBlending, RowsOfEveryLengthAtEveryAddressStopAtTheirEnd)
{
    const ByteRow source = randomPixels(80);
    const ByteRow before = randomPixels(80);
    const ByteRow coverage = randomBytes(80);
    for (const PixelLayout layout : {PixelLayout::RGBA, PixelLayout::Alpha}) {
        const std::size_t channels = layout == PixelLayout::RGBA ? 4 : 1;
        for (const CGBlendMode mode : {kCGBlendModeMultiply, kCGBlendModeHue}) {
            onEachVectorUnit([&] {
                ByteRow whole = before;
                blendRow(mode, layout, whole.data() + 1, {source.data()}, coverage.data(), 70);
                for (std::size_t count = 0; count <= 70; ++count) {
                    ByteRow bytes = before;
                    blendRow(mode, layout, bytes.data() + 1, {source.data()}, coverage.data(), count);
                    const auto end = std::ptrdiff_t(1 + count * channels);
                    ASSERT_TRUE(std::equal(bytes.begin(), bytes.begin() + end, whole.begin())) << count;
                    ASSERT_TRUE(std::equal(bytes.begin() + end, bytes.end(), before.begin() + end)) << count;
                }
            });
        }
    }
}

TEST_F(ModeBlending, PixelsThatAreNotPremultipliedStayInRange)
{
    // Colours above their alpha count as the greatest value, instead of wrapping around.
    const unsigned char white[]{255, 255, 255, 0};
    for (const CGBlendMode mode : {kCGBlendModeMultiply, kCGBlendModeNormal, kCGBlendModeScreen,
             kCGBlendModeLighten, kCGBlendModeXOR, kCGBlendModePlusLighter}) {
        unsigned char bytes[]{255, 255, 255, 0};
        blendRow(mode, PixelLayout::RGBA, bytes, {white}, nullptr, 1);
        EXPECT_EQ(int(bytes[0]), 255) << mode;
    }
}

TEST_F(ModeBlending, WithoutCoverageNothingChanges)
{
    const ByteRow before = randomPixels(kCount);
    const ByteRow source = randomPixels(kCount);
    const ByteRow coverage(kCount, 0);
    for (const CGBlendMode mode : kBlendModes) {
        ByteRow bytes = before;
        blendRow(mode, PixelLayout::RGBA, bytes.data(), {source.data()}, coverage.data(), kCount);
        EXPECT_TRUE(bytes == before) << mode;
    }
}

TEST_F(ModeBlending, KnowsItsModes)
{
    std::vector<int> modes;
    for (int mode = -2; mode < 40; ++mode) {
        if (isBlendMode(CGBlendMode(mode)))
            modes.push_back(mode);
    }
    EXPECT_EQ(modes, std::vector<int>(std::begin(kBlendModes), std::end(kBlendModes)));
}
