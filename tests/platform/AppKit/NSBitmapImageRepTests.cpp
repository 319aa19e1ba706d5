#include <AppKit/NSBitmapImageRep.h>

#include "BitmapPixels.h"

#include <AppKit/NSColor.h>

#include <gtest/gtest.h>

#include <utility>

namespace {

std::vector<double> componentsOf(const RetainPtr<NSColor>& color)
{
    std::vector<double> result(color->numberOfComponents());
    color->getComponents(result.data());
    return result;
}

using Components = std::vector<double>;

} // namespace

TEST(NSBitmapImageRep, WrapsAnImageUnchanged)
{
    const auto cgImage = image(2, 1, 4, kCGImageAlphaPremultipliedLast, {1, 2, 3, 4, 5, 6, 7, 8});
    const auto rep = NSBitmapImageRep::initWithCGImage(cgImage);
    EXPECT_EQ(rep->pixelsWide(), 2);
    EXPECT_EQ(rep->pixelsHigh(), 1);
    EXPECT_EQ(rep->size().width, 2);
    EXPECT_EQ(rep->size().height, 1);
    EXPECT_EQ(rep->bytesPerRow(), 8);
    EXPECT_TRUE(rep->hasAlpha());
    EXPECT_EQ(rep->CGImage(), cgImage);
    EXPECT_EQ(NSBitmapImageRep::initWithCGImage(nullptr), nullptr);
}

TEST(NSBitmapImageRep, BitmapDataCanBeChangedWithoutChangingTheImage)
{
    const auto cgImage = image(1, 2, 4, kCGImageAlphaPremultipliedLast, {1, 2, 3, 4, 5, 6, 7, 8});
    const auto rep = NSBitmapImageRep::initWithCGImage(cgImage);
    unsigned char* const bytes = rep->bitmapData();
    EXPECT_EQ(rep->bitmapData(), bytes);
    bytes[4] = 50;
    EXPECT_EQ(pixels(cgImage), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));

    const auto changed = rep->CGImage();
    bytes[5] = 60;
    EXPECT_EQ(pixels(changed), (Bytes{1, 2, 3, 4, 50, 6, 7, 8})) << "an image does not change";
    EXPECT_EQ(pixels(rep), (Bytes{1, 2, 3, 4, 50, 60, 7, 8}));
    EXPECT_EQ(CGImageGetAlphaInfo(changed), kCGImageAlphaPremultipliedLast);
    EXPECT_TRUE(CGColorSpaceEqualToColorSpace(
        CGImageGetColorSpace(changed), NSColorSpace::sRGBColorSpace()->CGColorSpace()));
}

TEST(NSBitmapImageRep, BitmapDataIncludesRowPadding)
{
    // Two bytes of padding, which the last row may lack.
    const auto rows = provider({1, 2, 9, 9, 3, 4});
    const auto cgImage =
        adopt(CGImageCreate(2, 2, 8, 8, 4, NSColorSpace::deviceGrayColorSpace()->CGColorSpace(),
            kCGImageAlphaNone, rows, nullptr, false, kCGRenderingIntentDefault));
    const auto rep = NSBitmapImageRep::initWithCGImage(cgImage);
    EXPECT_EQ(rep->bytesPerRow(), 4);
    rep->bitmapData()[5] = 40;
    EXPECT_EQ(pixels(rep), (Bytes{1, 2, 3, 40}));
    EXPECT_EQ(pixels(thereAndBack(*rep)), (Bytes{1, 2, 3, 40}));
}

TEST(NSBitmapImageRep, RemainsAMaskAfterBitmapDataIsRead)
{
    const auto mask = adopt(CGImageMaskCreate(2, 1, 8, 8, 2, provider({0, 200}).get(), nullptr, false));
    const auto rep = NSBitmapImageRep::initWithCGImage(mask);
    rep->bitmapData()[0] = 100;
    EXPECT_TRUE(CGImageIsMask(rep->CGImage().get()));
    EXPECT_EQ(pixels(rep), (Bytes{100, 200}));
}

TEST(NSBitmapImageRep, AllocatesTransparentPixels)
{
    const auto rep = NSBitmapImageRep::initWithBitmapDataPlanes(
        nullptr, 3, 2, 8, 4, true, false, NSDeviceRGBColorSpace, 0, 0);
    EXPECT_EQ(rep->pixelsWide(), 3);
    EXPECT_EQ(rep->pixelsHigh(), 2);
    EXPECT_EQ(rep->bytesPerRow(), 12);
    EXPECT_TRUE(rep->hasAlpha());
    EXPECT_EQ(pixels(rep), Bytes(24));
    EXPECT_TRUE(CGColorSpaceEqualToColorSpace(
        CGImageGetColorSpace(rep->CGImage().get()), NSColorSpace::deviceRGBColorSpace()->CGColorSpace()));
}

TEST(NSBitmapImageRep, UsesTheCallersMemory)
{
    Bytes memory(2 * 8);
    unsigned char* planes[] = {memory.data()};
    const auto rep = NSBitmapImageRep::initWithBitmapDataPlanes(
        planes, 1, 2, 8, 4, true, false, NSCalibratedRGBColorSpace, 8, 32);
    EXPECT_EQ(rep->bitmapData(), memory.data());
    EXPECT_EQ(rep->bytesPerRow(), 8);
    memory[8] = 77;
    EXPECT_EQ(pixels(rep), (Bytes{0, 0, 0, 0, 77, 0, 0, 0}));
}

TEST(NSBitmapImageRep, IsNullForUnsupportedLayouts)
{
    const auto make = [](NSInteger width, NSInteger height, NSInteger bits, NSInteger samples, bool alpha,
                          bool planar, const char* space, NSInteger rowBytes, NSInteger pixelBits) {
        return NSBitmapImageRep::initWithBitmapDataPlanes(
            nullptr, width, height, bits, samples, alpha, planar, space, rowBytes, pixelBits);
    };
    constexpr auto kSpace = NSDeviceRGBColorSpace;
    constexpr NSInteger kMost = INT64_MAX;
    EXPECT_NE(make(3, 2, 8, 4, true, false, kSpace, 0, 0), nullptr);
    EXPECT_EQ(make(0, 2, 8, 4, true, false, kSpace, 0, 0), nullptr);
    EXPECT_EQ(make(3, -2, 8, 4, true, false, kSpace, 0, 0), nullptr);
    EXPECT_EQ(make(3, 2, 16, 4, true, false, kSpace, 0, 0), nullptr);
    EXPECT_EQ(make(3, 2, 8, 3, true, false, kSpace, 0, 0), nullptr);
    EXPECT_EQ(make(3, 2, 8, 4, false, false, kSpace, 0, 0), nullptr);
    EXPECT_EQ(make(3, 2, 8, 4, true, true, kSpace, 0, 0), nullptr);
    EXPECT_EQ(make(3, 2, 8, 4, true, false, "CMYK", 0, 0), nullptr);
    EXPECT_EQ(make(3, 2, 8, 4, true, false, nullptr, 0, 0), nullptr);
    EXPECT_EQ(make(3, 2, 8, 4, true, false, kSpace, 11, 0), nullptr);
    EXPECT_EQ(make(3, 2, 8, 4, true, false, kSpace, -12, 0), nullptr);
    EXPECT_EQ(make(3, 2, 8, 4, true, false, kSpace, 0, 24), nullptr);
    EXPECT_EQ(make(kMost, kMost, 8, 4, true, false, kSpace, 0, 0), nullptr);
    EXPECT_EQ(make(1, (1 << 26) + 1, 8, 4, true, false, kSpace, 0, 0), nullptr);
    EXPECT_EQ(make(3, 2, 8, 4, true, false, kSpace, kMost, 0), nullptr);
}

TEST(NSBitmapImageRep, ReadsColorsFromTheTopLeft)
{
    const auto gray =
        rep(2, 2, 1, kCGImageAlphaNone, {0, 51, 102, 255}, NSColorSpace::deviceGrayColorSpace());
    EXPECT_EQ(componentsOf(gray->colorAtX(0, 0)), (Components{0, 1}));
    EXPECT_EQ(componentsOf(gray->colorAtX(1, 0)), (Components{51 / 255.0, 1}));
    EXPECT_EQ(componentsOf(gray->colorAtX(0, 1)), (Components{102 / 255.0, 1}));
    EXPECT_EQ(componentsOf(gray->colorAtX(1, 1)), (Components{1, 1}));
    EXPECT_EQ(gray->colorAtX(0, 0)->colorSpace(), NSColorSpace::deviceGrayColorSpace());
    for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {2, 0}, {0, 2}})
        EXPECT_EQ(gray->colorAtX(x, y), nullptr);
}

TEST(NSBitmapImageRep, ReturnsColorsWithStraightAlpha)
{
    const auto premultiplied =
        rep(3, 1, 4, kCGImageAlphaPremultipliedLast, {64, 32, 0, 128, 0, 0, 0, 0, 200, 100, 50, 100});
    EXPECT_EQ(componentsOf(premultiplied->colorAtX(0, 0)), (Components{0.5, 0.25, 0, 128 / 255.0}));
    EXPECT_EQ(componentsOf(premultiplied->colorAtX(1, 0)), (Components{0, 0, 0, 0}));
    EXPECT_EQ(componentsOf(premultiplied->colorAtX(2, 0)), (Components{1, 1, 0.5, 100 / 255.0}))
        << "more colour than alpha";
    EXPECT_EQ(premultiplied->colorAtX(0, 0)->colorSpace(), NSColorSpace::sRGBColorSpace());

    const auto straight = rep(1, 1, 4, kCGImageAlphaFirst, {51, 255, 102, 0});
    EXPECT_EQ(componentsOf(straight->colorAtX(0, 0)), (Components{1, 102 / 255.0, 0, 51 / 255.0}));
    const auto opaque = rep(1, 1, 4, kCGImageAlphaNoneSkipLast, {255, 102, 0, 7});
    EXPECT_EQ(componentsOf(opaque->colorAtX(0, 0)), (Components{1, 102 / 255.0, 0, 1}));
    EXPECT_FALSE(opaque->hasAlpha());
}

TEST(NSBitmapImageRep, ReadsMasksAsBlackWithTheirCoverageAsAlpha)
{
    const auto alpha = rep(1, 1, 1, kCGImageAlphaOnly, {51}, nullptr);
    EXPECT_EQ(componentsOf(alpha->colorAtX(0, 0)), (Components{0, 51 / 255.0}));
    const auto mask = adopt(CGImageMaskCreate(1, 1, 8, 8, 1, provider({51}).get(), nullptr, false));
    EXPECT_EQ(
        componentsOf(NSBitmapImageRep::initWithCGImage(mask)->colorAtX(0, 0)), (Components{0, 204 / 255.0}));
}
