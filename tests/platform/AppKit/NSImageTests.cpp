#include <AppKit/NSImage.h>

#include "BitmapPixels.h"
#include "DrawnPixels.h"
#include "Foundation/testing/NSLogCapture.h"
#include "support/Describe.h"

#include <AppKit/NSColor.h>
#include <gtest/gtest.h>

#include <limits>

namespace {

const Bytes kRedBytes{255, 0, 0, 255};
const Bytes kGreenBytes{0, 255, 0, 255};
const Bytes kBlueBytes{0, 0, 255, 255};
const Bytes kWhiteBytes{255, 255, 255, 255};
const Bytes kClearBytes{0, 0, 0, 0};

/// An image of RGBA pixels, rows from the top.
RetainPtr<CGImage> imageOf(std::size_t width, std::size_t height, const std::vector<Bytes>& colors)
{
    Bytes bytes;
    for (const Bytes& color : colors)
        bytes.insert(bytes.end(), color.begin(), color.end());
    return image(width, height, 4, kCGImageAlphaPremultipliedLast, bytes);
}

/// Red and green above blue and white, in one point.
RetainPtr<NSImage> makeFourColors(NSSize size = {1, 1})
{
    return make<NSImage>(imageOf(2, 2, {kRedBytes, kGreenBytes, kBlueBytes, kWhiteBytes}), size);
}

/// Makes a context current for the time of the test.
class CurrentPixels : public DrawnPixels {
public:
    CurrentPixels(std::size_t width, std::size_t height, bool flipped = false)
        : DrawnPixels(width, height)
    {
        if (flipped) {
            CGContextTranslateCTM(context(), 0, static_cast<CGFloat>(height));
            CGContextScaleCTM(context(), 1, -1);
        }
        NSGraphicsContext::setCurrentContext(
            NSGraphicsContext::graphicsContextWithCGContext(context(), flipped));
    }
    CurrentPixels(const CurrentPixels&) = delete;
    CurrentPixels& operator=(const CurrentPixels&) = delete;
    ~CurrentPixels() { NSGraphicsContext::setCurrentContext(nullptr); }
};

/// Sets a colour and fills a rectangle with it.
void fill(NSRect rect, NSColor* color)
{
    color->set();
    NSRectFill(rect);
}

} // namespace

// Size and pixels.

TEST(NSImage, HasTheGivenSizeOrOnePointForEachPixel)
{
    const auto pixels = imageOf(2, 1, {kRedBytes, kGreenBytes});
    EXPECT_EQ(describe(make<NSImage>(pixels, NSMakeSize(30, 40))->size()), "30 40");
    EXPECT_EQ(describe(make<NSImage>(pixels, NSZeroSize)->size()), "2 1");
    EXPECT_EQ(describe(make<NSImage>(NSMakeSize(3, 4))->size()), "3 4");
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(describe(make<NSImage>(NSMakeSize(kNaN, -4))->size()), "0 0");
    const auto image = make<NSImage>(pixels, NSMakeSize(-1, 40));
    EXPECT_EQ(describe(image->size()), "0 40");
    image->setSize(NSMakeSize(5, std::numeric_limits<double>::infinity()));
    EXPECT_EQ(describe(image->size()), "5 0");
}

TEST(NSImage, LendsItsPixels)
{
    const auto pixels = imageOf(2, 1, {kRedBytes, kGreenBytes});
    EXPECT_EQ(make<NSImage>(pixels, NSZeroSize)->CGImageForProposedRect(), pixels);
    EXPECT_EQ(make<NSImage>(NSMakeSize(1, 1))->CGImageForProposedRect(), nullptr);
    const auto none = make<NSImage>(RetainPtr<CGImage>(), NSZeroSize);
    EXPECT_EQ(none->CGImageForProposedRect(), nullptr);
    EXPECT_EQ(describe(none->size()), "0 0");
}

// Drawing it.

TEST(NSImage, IsDrawnUprightInBothKindsOfContexts)
{
    for (const bool flipped : {false, true}) {
        SCOPED_TRACE(flipped ? "flipped" : "upright");
        CurrentPixels pixels(4, 3, flipped);
        makeFourColors()->drawInRect(NSMakeRect(1, flipped ? 1 : 0, 2, 2));
        EXPECT_EQ(pixels.text(), "..../.rg./.bw.");
    }
}

TEST(NSImage, IsUpsideDownInAFlippedContextUnlessToldOtherwise)
{
    CurrentPixels pixels(4, 2, true);
    const auto image = makeFourColors();
    image->drawInRect(NSMakeRect(0, 0, 2, 2), NSZeroRect, NSCompositingOperationSourceOver, 1);
    image->drawInRect(NSMakeRect(2, 0, 2, 2), NSZeroRect, NSCompositingOperationSourceOver, 1, true);
    EXPECT_EQ(pixels.text(), "bwrg/rgbw");
}

TEST(NSImage, APartIsDrawnAlone)
{
    const auto image = makeFourColors(NSMakeSize(20, 20));
    CurrentPixels pixels(4, 2);
    CGContextSetInterpolationQuality(pixels.context(), kCGInterpolationNone);
    // The right half, then the lower left quarter.
    image->drawInRect(NSMakeRect(0, 0, 2, 2), NSMakeRect(10, 0, 10, 20), NSCompositingOperationSourceOver, 1);
    image->drawInRect(NSMakeRect(2, 0, 1, 1), NSMakeRect(0, 0, 10, 10), NSCompositingOperationSourceOver, 1);
    EXPECT_EQ(pixels.text(), "gg../wwb.");
}

TEST(NSImage, IsCompositedWithTheOperationAndTheFraction)
{
    CurrentPixels pixels(2, 1);
    fill(NSMakeRect(0, 0, 1, 1), NSColor::greenColor());
    const auto red = make<NSImage>(imageOf(1, 1, {kRedBytes}), NSZeroSize);
    red->drawInRect(NSMakeRect(0, 0, 2, 1), NSZeroRect, NSCompositingOperationSourceAtop, 1);
    EXPECT_EQ(pixels.text(), "r.");
    red->drawInRect(NSMakeRect(0, 0, 2, 1), NSZeroRect, NSCompositingOperationCopy, 0.2);
    EXPECT_EQ(pixels.bytes(), (Bytes{51, 0, 0, 51, 51, 0, 0, 51}));
    // The context is as before.
    fill(NSMakeRect(0, 0, 1, 1), NSColor::blueColor());
    EXPECT_EQ(pixels.text().substr(0, 1), "b");
}

TEST(NSImage, DrawsNothingWithoutPixelsARectangleAContextOrAnOperation)
{
    const NSLogCapture log;
    {
        CurrentPixels pixels(2, 1);
        make<NSImage>(NSMakeSize(2, 1))->drawInRect(NSMakeRect(0, 0, 2, 1));
        makeFourColors()->drawInRect(NSMakeRect(0, 0, -2, 1));
        EXPECT_TRUE(log.messages().empty());
        makeFourColors()->drawInRect(
            NSMakeRect(0, 0, 2, 1), NSZeroRect, static_cast<NSCompositingOperation>(9), 1);
        EXPECT_EQ(pixels.text(), "..");
        EXPECT_EQ(log.messages().size(), 1);
    }
    makeFourColors()->drawInRect(NSMakeRect(0, 0, 2, 1));
    EXPECT_EQ(log.messages().size(), 1);
}

// Drawing on it.

TEST(NSImageFocus, DrawsOnItsPixelsInPoints)
{
    const auto image = makeFourColors(); // two pixels for each point
    image->lockFocus();
    fill(NSMakeRect(0, 0.5, 0.5, 0.5), NSColor::blackColor());
    image->unlockFocus();
    EXPECT_EQ(pixels(image->CGImageForProposedRect()),
        (Bytes{0, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255}));
    EXPECT_EQ(describe(image->size()), "1 1");
}

TEST(NSImageFocus, TintingKeepsTheAlphaOfEveryPixel)
{
    const Bytes half{100, 50, 0, 128};
    const auto image = make<NSImage>(imageOf(3, 1, {kRedBytes, half, kClearBytes}), NSZeroSize);
    const auto tinted = image->copy();
    tinted->lockFocus();
    NSColor::blueColor()->set();
    NSRectFillUsingOperation(NSMakeRect(0, 0, 3, 1), NSCompositingOperationSourceAtop);
    tinted->unlockFocus();
    EXPECT_EQ(pixels(tinted->CGImageForProposedRect()), (Bytes{0, 0, 255, 255, 0, 0, 128, 128, 0, 0, 0, 0}));
    EXPECT_EQ(pixels(image->CGImageForProposedRect()), (Bytes{255, 0, 0, 255, 100, 50, 0, 128, 0, 0, 0, 0}));
}

TEST(NSImageFocus, ACopySharesNothingThatChanges)
{
    const auto image = makeFourColors();
    const auto copy = image->copy();
    EXPECT_EQ(copy->CGImageForProposedRect(), image->CGImageForProposedRect());
    image->setSize(NSMakeSize(8, 8));
    image->lockFocus();
    fill(NSMakeRect(0, 0, 8, 8), NSColor::redColor());
    const auto whileLocked = image->copy();
    image->unlockFocus();
    EXPECT_EQ(describe(copy->size()), "1 1");
    EXPECT_NE(copy->CGImageForProposedRect(), image->CGImageForProposedRect());
    EXPECT_EQ(whileLocked->CGImageForProposedRect(), copy->CGImageForProposedRect());
}

TEST(NSImageFocus, APictureWithoutPixelsGetsThoseOfTheScreen)
{
    const auto image = make<NSImage>(NSMakeSize(2, 1.5));
    image->lockFocus();
    fill(NSMakeRect(0, 0, 1, 1), NSColor::redColor());
    image->unlockFocus();
    const CGImageRef pixels = image->CGImageForProposedRect();
    ASSERT_TRUE(pixels);
    EXPECT_EQ(CGImageGetWidth(pixels), 2); // the screen of the tests has a scale of 1
    EXPECT_EQ(CGImageGetHeight(pixels), 2);
}

TEST(NSImageFocus, RestoresTheContextThatWasCurrent)
{
    CurrentPixels outer(1, 1);
    const RetainPtr<NSGraphicsContext> before = NSGraphicsContext::currentContext();
    const auto image = makeFourColors();
    image->lockFocus();
    EXPECT_NE(NSGraphicsContext::currentContext(), before);
    EXPECT_FALSE(NSGraphicsContext::currentContext()->isFlipped());
    image->unlockFocus();
    EXPECT_EQ(NSGraphicsContext::currentContext(), before);
    image->unlockFocus(); // without a lock
    EXPECT_EQ(NSGraphicsContext::currentContext(), before);
}

TEST(NSImageFocus, MayBeLockedTwice)
{
    const auto image = make<NSImage>(imageOf(2, 1, {kClearBytes, kClearBytes}), NSZeroSize);
    image->lockFocus();
    fill(NSMakeRect(0, 0, 1, 1), NSColor::redColor());
    image->lockFocus();
    fill(NSMakeRect(1, 0, 1, 1), NSColor::greenColor());
    image->unlockFocus();
    EXPECT_EQ(pixels(image->CGImageForProposedRect()), (Bytes{255, 0, 0, 255, 0, 255, 0, 255}));
    fill(NSMakeRect(0, 0, 1, 1), NSColor::blueColor());
    image->unlockFocus();
    EXPECT_EQ(pixels(image->CGImageForProposedRect()), (Bytes{0, 0, 255, 255, 0, 255, 0, 255}));
    EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
}

TEST(NSImageFocus, APictureWithoutASizeOrTooLargeKeepsNothing)
{
    const NSLogCapture log; // Core Graphics says that the bitmap is too large
    for (const NSSize size : {NSMakeSize(0, 5), NSMakeSize(1e9, 1)}) {
        SCOPED_TRACE(size.width);
        const auto image = make<NSImage>(size);
        image->lockFocus();
        ASSERT_TRUE(NSGraphicsContext::currentContext());
        fill(NSMakeRect(0, 0, 5, 5), NSColor::redColor());
        image->unlockFocus();
        EXPECT_EQ(image->CGImageForProposedRect(), nullptr);
    }
}
