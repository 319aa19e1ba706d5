#include <AppKit/NSGraphicsContext.h>

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSColor.h>
#include <CoreGraphics/CGBitmapContext.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <thread>

namespace {

using RawPixel = std::array<std::uint8_t, 4>;

/// Memory for 2 x 2 pixels and a context that draws into it.
struct RawCanvas {
    std::array<RawPixel, 4> pixels{}; ///< top row first
    RetainPtr<CGContext> cgContext = adopt(CGBitmapContextCreate(pixels.data(), 2, 2, 8, 8,
        NSColorSpace::sRGBColorSpace()->CGColorSpace(), kCGImageAlphaPremultipliedLast));
    RetainPtr<NSGraphicsContext> context = NSGraphicsContext::graphicsContextWithCGContext(cgContext, false);

    /// Fills the canvas and returns the first pixel.
    RawPixel filled()
    {
        CGContextFillRect(cgContext, CGRectMake(0, 0, 2, 2));
        return pixels[0];
    }
};

/// Makes a context current for its lifetime.
class Current {
public:
    explicit Current(NSGraphicsContext* context) { NSGraphicsContext::setCurrentContext(context); }
    Current(const Current&) = delete;
    Current& operator=(const Current&) = delete;
    ~Current() { NSGraphicsContext::setCurrentContext(nullptr); }
};

} // namespace

TEST(NSGraphicsContext, WrapsACoreGraphicsContext)
{
    const RawCanvas canvas;
    EXPECT_EQ(canvas.context->CGContext(), canvas.cgContext);
    EXPECT_FALSE(canvas.context->isFlipped());
    EXPECT_TRUE(NSGraphicsContext::graphicsContextWithCGContext(canvas.cgContext, true)->isFlipped());
    EXPECT_EQ(NSGraphicsContext::graphicsContextWithCGContext(nullptr, false), nullptr);
}

TEST(NSGraphicsContext, IsNullOutsideOfDrawing)
{
    EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
}

TEST(NSGraphicsContext, IsCurrentOnOneThread)
{
    const RawCanvas canvas;
    const Current current(canvas.context);
    EXPECT_EQ(NSGraphicsContext::currentContext(), canvas.context);
    std::thread([] { EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr); }).join();
}

TEST(NSGraphicsContext, IsRetainedWhileItIsCurrent)
{
    RawCanvas canvas;
    const Current current(canvas.context);
    canvas.context = nullptr;
    EXPECT_EQ(NSGraphicsContext::currentContext()->CGContext(), canvas.cgContext);
}

TEST(NSGraphicsContext, SavesAndRestoresTheCurrentContextAndItsState)
{
    RawCanvas first;
    RawCanvas second;
    const Current current(first.context);
    NSColor::redColor()->setFill();

    NSGraphicsContext::saveGraphicsState();
    NSColor::greenColor()->setFill();
    NSGraphicsContext::setCurrentContext(second.context);
    NSGraphicsContext::saveGraphicsState();
    NSGraphicsContext::setCurrentContext(nullptr);
    NSGraphicsContext::saveGraphicsState();
    NSGraphicsContext::setCurrentContext(first.context);

    NSGraphicsContext::restoreGraphicsState();
    EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
    NSGraphicsContext::restoreGraphicsState();
    EXPECT_EQ(NSGraphicsContext::currentContext(), second.context);
    EXPECT_EQ(first.filled(), (RawPixel{0, 255, 0, 255}));
    NSGraphicsContext::restoreGraphicsState();
    EXPECT_EQ(NSGraphicsContext::currentContext(), first.context);
    EXPECT_EQ(first.filled(), (RawPixel{255, 0, 0, 255}));
}

TEST(NSGraphicsContext, IgnoresAnUnbalancedRestore)
{
    const RawCanvas canvas;
    const Current current(canvas.context);
    NSGraphicsContext::restoreGraphicsState();
    EXPECT_EQ(NSGraphicsContext::currentContext(), canvas.context);
}

TEST(NSGraphicsContext, SavesTheStateOfAContextThatIsNotCurrent)
{
    RawCanvas canvas;
    CGContextSetRGBFillColor(canvas.cgContext, 1, 0, 0, 1);
    NSGraphicsContext::saveGraphicsState(canvas.context);
    CGContextSetRGBFillColor(canvas.cgContext, 0, 1, 0, 1);
    NSGraphicsContext::restoreGraphicsState(canvas.context);
    EXPECT_EQ(canvas.filled(), (RawPixel{255, 0, 0, 255}));
    EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);

    EXPECT_NO_THROW(NSGraphicsContext::saveGraphicsState(nullptr));
    EXPECT_NO_THROW(NSGraphicsContext::restoreGraphicsState(nullptr));
}

TEST(NSGraphicsContext, DrawsInTheColorsThatAreSet)
{
    RawCanvas canvas;
    const Current current(canvas.context);
    const auto stroked = [&] {
        CGContextStrokeRectWithWidth(canvas.cgContext, CGRectMake(0, 0, 2, 2), 4);
        return canvas.pixels[0];
    };
    NSColor::blueColor()->set();
    EXPECT_EQ(canvas.filled(), (RawPixel{0, 0, 255, 255}));
    NSColor::whiteColor()->setFill();
    EXPECT_EQ(canvas.filled(), (RawPixel{255, 255, 255, 255}));
    EXPECT_EQ(stroked(), (RawPixel{0, 0, 255, 255}));
    NSColor::redColor()->setStroke();
    EXPECT_EQ(stroked(), (RawPixel{255, 0, 0, 255}));
    EXPECT_EQ(canvas.filled(), (RawPixel{255, 255, 255, 255}));
}

TEST(NSGraphicsContext, ClampsColorsWhenDrawing)
{
    RawCanvas canvas;
    const Current current(canvas.context);
    NSColor::colorWithSRGBRed(7, -1, 0.5, 2)->setFill();
    EXPECT_EQ(canvas.filled(), (RawPixel{255, 0, 128, 255}));
    NSColor::colorWithWhite(-1 / 255.0, 1)->setFill();
    EXPECT_EQ(canvas.filled(), (RawPixel{0, 0, 0, 255}));
}

TEST(NSGraphicsContext, IgnoresSetColorsOutsideOfDrawing)
{
    EXPECT_NO_THROW(NSColor::redColor()->set());
}

TEST(NSGraphicsContext, DrawsIntoABitmap)
{
    const auto rep = NSBitmapImageRep::initWithBitmapDataPlanes(
        nullptr, 3, 2, 8, 4, true, false, NSCalibratedRGBColorSpace, 0, 0);
    {
        const auto context = NSGraphicsContext::graphicsContextWithBitmapImageRep(rep);
        const Current current(context);
        NSColor::redColor()->setFill();
        CGContextFillRect(context->CGContext(), CGRectMake(0, 0, 1, 1));
        context->flushGraphics();
        EXPECT_FALSE(context->isFlipped());
    }
    EXPECT_TRUE(rep->colorAtX(0, 1)->isEqual(NSColor::redColor())) << "y points upward";
    EXPECT_EQ(rep->colorAtX(0, 0)->alphaComponent(), 0);
    EXPECT_EQ(rep->colorAtX(1, 1)->alphaComponent(), 0);
}

TEST(NSGraphicsContext, RetainsTheBitmapThatItDrawsInto)
{
    auto rep = NSBitmapImageRep::initWithBitmapDataPlanes(
        nullptr, 3, 2, 8, 4, true, false, NSDeviceRGBColorSpace, 0, 0);
    const auto context = NSGraphicsContext::graphicsContextWithBitmapImageRep(rep);
    rep = nullptr;
    CGContextFillRect(context->CGContext(), CGRectMake(0, 0, 3, 2)); // into memory that is still alive
    EXPECT_NE(context->CGContext(), nullptr);
}

TEST(NSGraphicsContext, IsNullForUnsupportedLayouts)
{
    RawPixel pixel{};
    const auto provider = adopt(CGDataProviderCreateWithData(nullptr, pixel.data(), pixel.size(), nullptr));
    const auto straight = adopt(CGImageCreate(1, 1, 8, 32, 4, NSColorSpace::sRGBColorSpace()->CGColorSpace(),
        kCGImageAlphaLast, provider, nullptr, false, kCGRenderingIntentDefault));
    const auto rep = NSBitmapImageRep::initWithCGImage(straight);
    EXPECT_EQ(NSGraphicsContext::graphicsContextWithBitmapImageRep(rep), nullptr);
    EXPECT_EQ(NSGraphicsContext::graphicsContextWithBitmapImageRep(nullptr), nullptr);
}
