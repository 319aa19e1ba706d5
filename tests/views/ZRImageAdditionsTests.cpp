#include "support/Canvas.h"
#include "support/Describe.h"

#include <KorvidAppKit/ZRAppKitAdditions.h>

#include <AppKit/NSColor.h>
#include <AppKit/NSImage.h>

namespace {

using ZRAppKitAdditions_NSImage::imageByTinting;

constexpr CanvasPixel kHalfBlue = rgba(0, 0, 128, 128);

/// An image of 3 x 1 pixels in a size in points: opaque green, blue of half the alpha, nothing.
RetainPtr<NSImage> makeImage(NSSize size)
{
    Canvas canvas(3, 1);
    canvas.setPixel(0, 0, kGreen);
    canvas.setPixel(1, 0, kHalfBlue);
    return make<NSImage>(adopt(CGBitmapContextCreateImage(canvas.context())), size);
}

std::vector<CanvasPixel> pixelsOf(const NSImage& image)
{
    Canvas canvas(3, 1);
    CGContextDrawImage(canvas.context(), CGRectMake(0, 0, 3, 1), image.CGImageForProposedRect());
    return {canvas.pixel(0, 0), canvas.pixel(1, 0), canvas.pixel(2, 0)};
}

RetainPtr<NSColor> red(CGFloat alpha)
{
    return NSColor::colorWithSRGBRed(1, 0, 0, alpha);
}

TEST(ImageByTinting, EveryPixelKeepsItsAlphaAndTakesTheColour)
{
    const auto tinted = imageByTinting(makeImage({3, 1}).get(), red(1).get());
    EXPECT_EQ(pixelsOf(*tinted),
        (std::vector<CanvasPixel>{rgba(255, 0, 0, 255), rgba(128, 0, 0, 128), kTransparent}));
}

TEST(ImageByTinting, ATranslucentColourIsMixedIn)
{
    // 0.4 of red over the rest.
    const auto tinted = imageByTinting(makeImage({3, 1}).get(), red(0.4).get());
    EXPECT_EQ(pixelsOf(*tinted),
        (std::vector<CanvasPixel>{rgba(102, 153, 0, 255), rgba(51, 0, 77, 128), kTransparent}));
}

TEST(ImageByTinting, TheImageItselfDoesNotChange)
{
    const auto image = makeImage({3, 1});
    imageByTinting(image.get(), red(1).get())->setSize({9, 9});
    EXPECT_EQ(pixelsOf(*image), (std::vector<CanvasPixel>{kGreen, kHalfBlue, kTransparent}));
    EXPECT_EQ(describe(image->size()), "3 1");
}

TEST(ImageByTinting, TheCopyHasTheSameSize)
{
    // Half a point for each pixel, and more points than pixels.
    for (const NSSize size : {NSMakeSize(1.5, 0.5), NSMakeSize(30, 10)}) {
        const auto tinted = imageByTinting(makeImage(size).get(), red(1).get());
        EXPECT_EQ(describe(tinted->size()), describe(size));
        EXPECT_EQ(CGImageGetWidth(tinted->CGImageForProposedRect()), 3U);
        EXPECT_EQ(pixelsOf(*tinted),
            (std::vector<CanvasPixel>{rgba(255, 0, 0, 255), rgba(128, 0, 0, 128), kTransparent}));
    }
}

TEST(ImageByTinting, MissingArguments)
{
    EXPECT_FALSE(imageByTinting(nullptr, red(1).get()));
    const auto image = makeImage({3, 1});
    const auto copy = imageByTinting(image.get(), nullptr);
    EXPECT_NE(copy, image);
    EXPECT_EQ(pixelsOf(*copy), (std::vector<CanvasPixel>{kGreen, kHalfBlue, kTransparent}));
}

} // namespace
