#include <CoreGraphics/CGImage.h>

#include "ColorSpaces.h"
#include "CoreGraphics/CGImageInternal.h"
#include "Foundation/testing/NSLogCapture.h"
#include "support/Threads.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

RetainPtr<CGColorSpace> gray()
{
    return adopt(CGColorSpaceCreateDeviceGray());
}

/// A provider of its own copy of `bytes`, `offset` bytes past an address that is a multiple of 16.
RetainPtr<CGDataProvider> providerOf(const Bytes& bytes, std::size_t offset = 0)
{
    auto memory = std::make_unique<std::uint8_t[]>(bytes.size() + offset);
    std::copy(bytes.begin(), bytes.end(), memory.get() + offset);
    const std::uint8_t* first = memory.get() + offset;
    return adopt(CGDataProviderCreateWithData(memory.release(), first, bytes.size(),
        [](void* memory, const void*, std::size_t) { delete[] static_cast<std::uint8_t*>(memory); }));
}

/// The parameters of an image; each test changes the ones it checks.
struct Recipe {
    std::size_t width = 2;
    std::size_t height = 2;
    std::size_t bitsPerComponent = 8;
    std::size_t bitsPerPixel = 32;
    std::size_t bytesPerRow = 8;
    RetainPtr<CGColorSpace> space = deviceRGB();
    CGBitmapInfo bitmapInfo = kCGImageAlphaPremultipliedLast;
    RetainPtr<CGDataProvider> provider = providerOf(Bytes(16));
    const CGFloat* decode = nullptr;

    RetainPtr<CGImage> image() const
    {
        return adopt(CGImageCreate(width, height, bitsPerComponent, bitsPerPixel, bytesPerRow, space,
            bitmapInfo, provider, decode, true, kCGRenderingIntentPerceptual));
    }
    RetainPtr<CGImage> mask() const
    {
        return adopt(CGImageMaskCreate(
            width, height, bitsPerComponent, bitsPerPixel, bytesPerRow, provider, decode, false));
    }
};

/// The pixels of an image's drawable form, row after row without padding.
Bytes drawablePixels(const RetainPtr<CGImage>& image)
{
    const CGImage* drawable = image->drawable();
    Bytes pixels;
    for (std::size_t y = 0; y < drawable->height; ++y) {
        const std::uint8_t* row = drawable->bytes() + y * drawable->bytesPerRow;
        pixels.insert(pixels.end(), row, row + drawable->width * drawable->bitsPerPixel / 8);
    }
    return pixels;
}

TEST(CGImageCreate, ReportsItsParameters)
{
    Recipe recipe;
    recipe.bitmapInfo |= kCGBitmapByteOrder32Big;
    const auto image = recipe.image();
    EXPECT_EQ(CGImageGetWidth(image), 2U);
    EXPECT_EQ(CGImageGetHeight(image), 2U);
    EXPECT_EQ(CGImageGetBitsPerComponent(image), 8U);
    EXPECT_EQ(CGImageGetBitsPerPixel(image), 32U);
    EXPECT_EQ(CGImageGetBytesPerRow(image), 8U);
    EXPECT_EQ(CGImageGetColorSpace(image), deviceRGB().get());
    EXPECT_EQ(CGImageGetAlphaInfo(image), kCGImageAlphaPremultipliedLast);
    EXPECT_EQ(CGImageGetBitmapInfo(image), kCGImageAlphaPremultipliedLast | kCGBitmapByteOrder32Big);
    EXPECT_EQ(CGImageGetDataProvider(image), recipe.provider);
    EXPECT_EQ(CGImageGetRenderingIntent(image), kCGRenderingIntentPerceptual);
    EXPECT_TRUE(CGImageGetShouldInterpolate(image));
    EXPECT_FALSE(CGImageIsMask(image));
}

TEST(CGImageCreate, RetainsItsDataProvider)
{
    bool released = false;
    const Bytes bytes(16);
    {
        Recipe recipe;
        recipe.provider = adopt(CGDataProviderCreateWithData(&released, bytes.data(), bytes.size(),
            [](void* info, const void*, std::size_t) { *static_cast<bool*>(info) = true; }));
        const auto image = recipe.image();
        recipe.provider = nullptr;
        const auto copy = adopt(CGImageCreateCopy(image));
        EXPECT_EQ(copy, image) << "an image cannot change";
        EXPECT_FALSE(released);
    }
    EXPECT_TRUE(released);
}

TEST(CGImageCreate, AcceptsOnlyTheSupportedLayouts)
{
    struct Layout {
        std::size_t bitsPerPixel;
        RetainPtr<CGColorSpace> space;
        CGBitmapInfo alphaInfo;
        CGPixelFormat format;
    };
    const Layout layouts[] = {
        {32, deviceRGB(), kCGImageAlphaPremultipliedLast, CGPixelFormat::RGBAPremultiplied},
        {32, deviceRGB(), kCGImageAlphaPremultipliedFirst, CGPixelFormat::ARGBPremultiplied},
        {32, deviceRGB(), kCGImageAlphaLast, CGPixelFormat::RGBAStraight},
        {32, deviceRGB(), kCGImageAlphaFirst, CGPixelFormat::ARGBStraight},
        {32, deviceRGB(), kCGImageAlphaNoneSkipLast, CGPixelFormat::RGBX},
        {32, deviceRGB(), kCGImageAlphaNoneSkipFirst, CGPixelFormat::XRGB},
        {24, deviceRGB(), kCGImageAlphaNone, CGPixelFormat::RGB},
        {8, gray(), kCGImageAlphaNone, CGPixelFormat::Gray},
        {8, nullptr, kCGImageAlphaOnly, CGPixelFormat::Alpha},
    };
    // All combinations; those not listed are rejected.
    const NSLogCapture log;
    for (const std::size_t bitsPerPixel : {1, 8, 16, 24, 32, 64}) {
        for (CGBitmapInfo alphaInfo = 0; alphaInfo < 9; ++alphaInfo) {
            for (const auto& space : {deviceRGB(), gray(), RetainPtr<CGColorSpace>()}) {
                Recipe recipe;
                recipe.bitsPerPixel = bitsPerPixel;
                recipe.bitmapInfo = alphaInfo;
                recipe.space = space;
                const auto image = recipe.image();
                const auto layout =
                    std::find_if(std::begin(layouts), std::end(layouts), [&](const Layout& l) {
                        return l.bitsPerPixel == bitsPerPixel && l.alphaInfo == alphaInfo
                            && (l.space == space || l.format == CGPixelFormat::Alpha);
                    });
                ASSERT_EQ(bool(image), layout != std::end(layouts)) << bitsPerPixel << ' ' << alphaInfo;
                if (image) {
                    EXPECT_EQ(image->format, layout->format);
                }
            }
        }
    }
}

TEST(CGImageCreate, RejectsAndLogsInconsistentParameters)
{
    const auto messageFor = [](auto change, bool asMask = false) {
        const NSLogCapture log;
        Recipe recipe;
        if (asMask) {
            recipe.bitsPerPixel = 8;
            recipe.bytesPerRow = 2;
        }
        change(recipe);
        EXPECT_FALSE(asMask ? recipe.mask() : recipe.image());
        const auto messages = log.messages();
        EXPECT_EQ(messages.size(), 1U);
        return messages.empty() ? std::string() : messages.front();
    };
    const std::string layout = "CGImageCreate: no image: this layout of pixels is not supported";
    const CGFloat decode[] = {1, 0};
    EXPECT_EQ(messageFor([](Recipe& r) { r.bitsPerComponent = 16; }), layout);
    EXPECT_EQ(messageFor([](Recipe& r) { r.bitsPerComponent = 0; }), layout);
    EXPECT_EQ(messageFor([](Recipe& r) { r.bitsPerPixel = 33; }), layout);
    EXPECT_EQ(messageFor([](Recipe& r) { r.bitmapInfo |= kCGBitmapByteOrder32Little; }), layout);
    EXPECT_EQ(messageFor([](Recipe& r) { r.bitmapInfo |= 1 << 8; }), layout) << "floating point";
    EXPECT_EQ(messageFor([](Recipe& r) { r.space = nullptr; }), layout);
    EXPECT_EQ(
        messageFor([](Recipe& r) { r.space = adopt(CGColorSpaceCreatePattern(deviceRGB().get())); }), layout);
    EXPECT_EQ(messageFor([&](Recipe& r) { r.decode = decode; }), layout);

    const std::string side = "CGImageCreate: no image: a side is 0 pixels long";
    EXPECT_EQ(messageFor([](Recipe& r) { r.width = 0; }), side);
    EXPECT_EQ(messageFor([](Recipe& r) { r.height = 0; }), side);
    EXPECT_EQ(messageFor([](Recipe& r) { r.provider = nullptr; }),
        "CGImageCreate: no image: there is no data provider");

    const std::string row = "CGImageCreate: no image: the pixels of a row do not fit into bytesPerRow";
    EXPECT_EQ(messageFor([](Recipe& r) { r.bytesPerRow = 7; }), row);
    EXPECT_EQ(messageFor([](Recipe& r) { r.width = SIZE_MAX; }), row);
    EXPECT_EQ(messageFor([](Recipe& r) { r.width = SIZE_MAX / 4 + 2; }), row) << "4 × width is 4 again";

    const std::string data = "CGImageCreate: no image: the rows need more bytes than the data provider has";
    EXPECT_EQ(messageFor([](Recipe& r) { r.height = 3; }), data);
    EXPECT_EQ(messageFor([](Recipe& r) { r.height = SIZE_MAX; }), data);
    EXPECT_EQ(messageFor([](Recipe& r) { r.bytesPerRow = SIZE_MAX; }), data);
    EXPECT_EQ(messageFor([](Recipe& r) { r.provider = providerOf(Bytes(15)); }), data);

    const std::string samples = "CGImageMaskCreate: no image: this layout of pixels is not supported";
    EXPECT_EQ(messageFor([](Recipe& r) { r.bitsPerComponent = 1; }, true), samples);
    EXPECT_EQ(messageFor([](Recipe& r) { r.bitsPerPixel = 32; }, true), samples);
    EXPECT_EQ(messageFor([&](Recipe& r) { r.decode = decode; }, true), samples);
    EXPECT_EQ(messageFor([](Recipe& r) { r.height = 100; }, true),
        "CGImageMaskCreate: no image: the rows need more bytes than the data provider has");
}

TEST(CGImageCreate, AcceptsALastRowWithoutPadding)
{
    Recipe recipe;
    recipe.bytesPerRow = 100;
    recipe.provider = providerOf(Bytes(108));
    EXPECT_TRUE(recipe.image());
}

TEST(CGImageMaskCreate, ReturnsAMaskWithoutColourSpace)
{
    Recipe recipe;
    recipe.bitsPerPixel = 8;
    const auto mask = recipe.mask();
    EXPECT_TRUE(CGImageIsMask(mask));
    EXPECT_EQ(CGImageGetColorSpace(mask), nullptr);
    EXPECT_EQ(CGImageGetAlphaInfo(mask), kCGImageAlphaNone);
    EXPECT_EQ(CGImageGetBitmapInfo(mask), 0U);
    EXPECT_EQ(CGImageGetBitsPerPixel(mask), 8U);
    EXPECT_FALSE(CGImageGetShouldInterpolate(mask));
}

TEST(CGImage, AcceptsNullEverywhere)
{
    EXPECT_EQ(CGImageCreateCopy(nullptr), nullptr);
    EXPECT_EQ(CGImageRetain(nullptr), nullptr);
    CGImageRelease(nullptr);
    EXPECT_FALSE(CGImageIsMask(nullptr));
    EXPECT_EQ(CGImageGetWidth(nullptr), 0U);
    EXPECT_EQ(CGImageGetHeight(nullptr), 0U);
    EXPECT_EQ(CGImageGetBitsPerComponent(nullptr), 0U);
    EXPECT_EQ(CGImageGetBitsPerPixel(nullptr), 0U);
    EXPECT_EQ(CGImageGetBytesPerRow(nullptr), 0U);
    EXPECT_EQ(CGImageGetColorSpace(nullptr), nullptr);
    EXPECT_EQ(CGImageGetAlphaInfo(nullptr), kCGImageAlphaNone);
    EXPECT_EQ(CGImageGetBitmapInfo(nullptr), 0U);
    EXPECT_FALSE(CGImageGetShouldInterpolate(nullptr));
    EXPECT_EQ(CGImageGetRenderingIntent(nullptr), kCGRenderingIntentDefault);
    EXPECT_EQ(CGImageGetDataProvider(nullptr), nullptr);
}

TEST(CGImageDrawable, IsTheImageItselfWhenNoConversionIsNeeded)
{
    Recipe recipe;
    const auto image = recipe.image();
    EXPECT_EQ(image->drawable(), image);
    recipe.bitmapInfo = kCGImageAlphaNoneSkipLast;
    const auto opaque = recipe.image();
    EXPECT_EQ(opaque->drawable(), opaque);
    recipe.bitsPerPixel = 8;
    recipe.bitmapInfo = kCGImageAlphaOnly;
    const auto alpha = recipe.image();
    EXPECT_EQ(alpha->drawable(), alpha);
}

TEST(CGImageDrawable, ReordersAndPremultipliesComponents)
{
    const auto drawn = [](std::size_t bitsPerPixel, CGBitmapInfo alphaInfo, const Bytes& bytes) {
        Recipe recipe;
        recipe.height = 1;
        recipe.bitsPerPixel = bitsPerPixel;
        recipe.bitmapInfo = alphaInfo;
        recipe.provider = providerOf(bytes);
        const auto image = recipe.image();
        EXPECT_EQ(image->drawable(), image->drawable()) << "made once";
        EXPECT_EQ(image->drawable()->format,
            alphaInfo == kCGImageAlphaNoneSkipFirst || alphaInfo == kCGImageAlphaNone
                ? CGPixelFormat::RGBX
                : CGPixelFormat::RGBAPremultiplied);
        return drawablePixels(image);
    };
    const Bytes first = {128, 10, 20, 30, 255, 40, 50, 60};
    EXPECT_EQ(drawn(32, kCGImageAlphaPremultipliedFirst, first), (Bytes{10, 20, 30, 128, 40, 50, 60, 255}));
    EXPECT_EQ(drawn(32, kCGImageAlphaNoneSkipFirst, first), (Bytes{10, 20, 30, 128, 40, 50, 60, 255}));
    // 10 × 128 / 255 = 5.02, 20: 10.04, 30: 15.06
    EXPECT_EQ(drawn(32, kCGImageAlphaFirst, first), (Bytes{5, 10, 15, 128, 40, 50, 60, 255}));
    EXPECT_EQ(drawn(32, kCGImageAlphaLast, {10, 20, 30, 128, 200, 100, 50, 0}),
        (Bytes{5, 10, 15, 128, 0, 0, 0, 0}));
    EXPECT_EQ(drawn(24, kCGImageAlphaNone, {1, 2, 3, 4, 5, 6}), (Bytes{1, 2, 3, 255, 4, 5, 6, 255}));
}

TEST(CGImageDrawable, PremultipliesEveryPairToTheNearest)
{
    for (int alpha = 0; alpha < 256; ++alpha) {
        Bytes bytes;
        for (int value = 0; value < 256; ++value)
            bytes.insert(bytes.end(), {std::uint8_t(value), 0, 255, std::uint8_t(alpha)});
        Recipe recipe;
        recipe.width = 256;
        recipe.height = 1;
        recipe.bytesPerRow = 1024;
        recipe.bitmapInfo = kCGImageAlphaLast;
        recipe.provider = providerOf(bytes);
        const auto pixels = drawablePixels(recipe.image());
        for (std::size_t value = 0; value < 256; ++value) {
            ASSERT_EQ(pixels[4 * value], std::lround(value * alpha / 255.0)) << value << " × " << alpha;
            ASSERT_EQ(pixels[4 * value + 2], alpha);
        }
    }
}

TEST(CGImageDrawable, ExpandsGraysAndInvertsMasks)
{
    Recipe recipe;
    recipe.width = 3;
    recipe.height = 1;
    recipe.bitsPerPixel = 8;
    recipe.bitmapInfo = kCGImageAlphaNone;
    recipe.provider = providerOf({0, 15, 255});
    recipe.bytesPerRow = 3;
    recipe.space = gray();
    EXPECT_EQ(drawablePixels(recipe.image()), (Bytes{0, 0, 0, 255, 15, 15, 15, 255, 255, 255, 255, 255}));
    // A gamma of 2.2 where sRGB is linear: 15 comes out 9 lower.
    recipe.space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceGenericGrayGamma2_2));
    EXPECT_EQ(drawablePixels(recipe.image()), (Bytes{0, 0, 0, 255, 6, 6, 6, 255, 255, 255, 255, 255}));

    const auto mask = recipe.mask();
    EXPECT_EQ(mask->drawable()->format, CGPixelFormat::Alpha);
    EXPECT_EQ(drawablePixels(mask), (Bytes{255, 240, 0}));
    recipe.bitmapInfo = kCGImageAlphaOnly;
    EXPECT_EQ(drawablePixels(recipe.image()), (Bytes{0, 15, 255}));
}

TEST(CGImageDrawable, AlignsRowsToFourBytes)
{
    Bytes bytes(30);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i);
    Recipe recipe;
    recipe.bytesPerRow = 15;
    recipe.provider = providerOf(bytes, 1);
    const auto image = recipe.image();
    const CGImage* drawable = image->drawable();
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(drawable->bytes()) % 4, 0U);
    EXPECT_EQ(drawable->bytesPerRow % 4, 0U);
    EXPECT_EQ(drawablePixels(image), (Bytes{0, 1, 2, 3, 4, 5, 6, 7, 15, 16, 17, 18, 19, 20, 21, 22}));

    recipe.bitsPerPixel = 8;
    recipe.bitmapInfo = kCGImageAlphaOnly;
    EXPECT_EQ(drawablePixels(recipe.image()), (Bytes{0, 1, 15, 16}));
    EXPECT_EQ(recipe.image()->drawable()->bytesPerRow % 4, 0U);
}

TEST(CGImageDrawable, IsCreatedOnceForAllThreads)
{
    for (int trial = 0; trial < 50; ++trial) {
        Recipe recipe;
        recipe.bitmapInfo = kCGImageAlphaFirst;
        const auto image = recipe.image();
        const CGImage* seen[4] = {};
        onThreads(4, [&](int thread) {
            const RetainPtr<CGImage> another(image);
            seen[thread] = another->drawable();
        });
        for (const CGImage* one : seen)
            EXPECT_EQ(one, seen[0]);
    }
}

TEST(CGImageCreateWithCopiedPixels, CopiesTheRowsImmediately)
{
    Bytes bytes = {1, 2, 3, 99, 99, 4, 5, 6, 99, 99};
    const auto image =
        adopt(CGImageCreateWithCopiedPixels(bytes.data(), 3, 2, 8, 5, nullptr, kCGImageAlphaOnly));
    bytes.assign(bytes.size(), 0);
    EXPECT_EQ(drawablePixels(image), (Bytes{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(image->drawable(), image);
    EXPECT_TRUE(CGImageGetShouldInterpolate(image));
}

TEST(CGImageCreateWithCopiedPixels, RejectsWhatCGImageCreateRejects)
{
    const NSLogCapture log;
    const Bytes bytes(16);
    EXPECT_EQ(CGImageCreateWithCopiedPixels(bytes.data(), 2, 2, 32, 8, nullptr, kCGImageAlphaLast), nullptr);
    EXPECT_EQ(log.messages(),
        std::vector<std::string>{"CGImageCreate: no image: this layout of pixels is not supported"});
}

} // namespace
