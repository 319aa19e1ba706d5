#include "DrawnPixels.h"
#include "RecordingView.h"

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

namespace {

class NSViewDrawing : public testing::Test {
protected:
    RetainPtr<RecordingView> view(const char* name, NSRect frame, NSColor* color = nullptr)
    {
        auto made = make<RecordingView>(frame, name, log);
        made->color = color;
        return made;
    }

    Log log;
};

TEST_F(NSViewDrawing, ViewsAreDrawnBackToFrontAtTheirFrames)
{
    DrawnPixels pixels(4, 3);
    const auto root = view("root", NSMakeRect(50, 50, 4, 3), NSColor::redColor());
    const auto low = view("low", NSMakeRect(0, 0, 2, 2), NSColor::greenColor());
    const auto high = view("high", NSMakeRect(1, 1, 2, 2), NSColor::blueColor());
    root->addSubview(low);
    root->addSubview(high);
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(log, (Log{"root draws 0 0 4 3", "low draws 0 0 2 2", "high draws 0 0 2 2"}));
    EXPECT_EQ(pixels.text(), "rbbr/gbbr/ggrr");
}

TEST_F(NSViewDrawing, WithoutAWindowTheBackingIsWhatTheViewIsDrawnInto)
{
    DrawnPixels pixels(8, 6);
    const auto root = view("root", NSMakeRect(0, 0, 4, 3));
    const auto child = view("child", NSMakeRect(1, 1, 2, 1));
    root->addSubview(child);
    std::string backing;
    child->onDraw = [&](NSRect) { backing = describe(child->convertRectToBacking(child->bounds())); };
    CGContextScaleCTM(pixels.context(), 2, 2);
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(backing, "2 2 4 2");
    EXPECT_EQ(describe(child->convertRectToBacking(child->bounds())), "1 1 2 1");

    // A view that draws another one has its own scale again afterwards.
    DrawnPixels inner(4, 3);
    child->onDraw = [&](NSRect) {
        const auto other = view("other", NSMakeRect(0, 0, 4, 3));
        other->displayRectIgnoringOpacity(other->bounds(), inner.graphicsContext());
        backing = describe(child->convertRectToBacking(child->bounds()));
    };
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(backing, "2 2 4 2");
}

TEST_F(NSViewDrawing, AViewIsClippedToItsBoundsAndItsAncestors)
{
    DrawnPixels pixels(4, 3);
    const auto root = view("root", NSMakeRect(0, 0, 4, 3));
    const auto middle = view("middle", NSMakeRect(1, 0, 2, 2));
    const auto leaf = view("leaf", NSMakeRect(-5, 1, 20, 20));
    root->addSubview(middle);
    middle->addSubview(leaf);
    leaf->onDraw = [](NSRect) {
        CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
        CGContextSetRGBFillColor(context, 1, 0, 0, 1);
        CGContextFillRect(context, CGRectMake(-100, -100, 300, 300));
    };
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(log.back(), "leaf draws 5 0 2 1");
    EXPECT_EQ(pixels.text(), "..../.rr./....");
}

TEST_F(NSViewDrawing, OnlyTheRectangleIsDrawnAndItsCornerIsTheOrigin)
{
    DrawnPixels pixels(4, 3);
    const auto root = view("root", NSMakeRect(0, 0, 10, 10), NSColor::redColor());
    const auto inside = view("inside", NSMakeRect(3, 3, 1, 1), NSColor::greenColor());
    const auto outside = view("outside", NSMakeRect(7, 7, 1, 1), NSColor::greenColor());
    root->addSubview(inside);
    root->addSubview(outside);
    root->displayRectIgnoringOpacity(NSMakeRect(2, 3, 3, 2), pixels.graphicsContext());
    EXPECT_EQ(log, (Log{"root draws 2 3 3 2", "inside draws 0 0 1 1"}));
    EXPECT_EQ(pixels.text(), "..../rrr./rgr.");
}

TEST_F(NSViewDrawing, AFlippedViewHasItsOriginAtTheTop)
{
    DrawnPixels pixels(4, 3);
    const auto root = view("root", NSMakeRect(0, 0, 4, 3));
    root->flipped = true;
    root->onDraw = [](NSRect) {
        CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
        EXPECT_TRUE(NSGraphicsContext::currentContext()->isFlipped());
        CGContextSetRGBFillColor(context, 1, 0, 0, 1);
        CGContextFillRect(context, CGRectMake(0, 0, 2, 1));
    };
    const auto child = view("child", NSMakeRect(2, 1, 2, 2));
    child->onDraw = [](NSRect) {
        CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
        EXPECT_FALSE(NSGraphicsContext::currentContext()->isFlipped());
        CGContextSetRGBFillColor(context, 0, 1, 0, 1);
        CGContextFillRect(context, CGRectMake(0, 0, 1, 1));
    };
    root->addSubview(child);
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(pixels.text(), "rr../..../..g.");
    DrawnPixels part(2, 2);
    root->displayRectIgnoringOpacity(NSMakeRect(1, 0, 2, 2), part.graphicsContext());
    EXPECT_EQ(part.text(), "r./..");
}

TEST_F(NSViewDrawing, ScaledBoundsScaleTheDrawing)
{
    DrawnPixels pixels(4, 4);
    const auto root = view("root", NSMakeRect(0, 0, 4, 4));
    const auto scaled = view("scaled", NSMakeRect(0, 0, 4, 4));
    scaled->setBounds(NSMakeRect(10, 20, 2, 2));
    scaled->onDraw = [](NSRect) {
        CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
        CGContextSetRGBFillColor(context, 1, 0, 0, 1);
        CGContextFillRect(context, CGRectMake(11, 20, 1, 1));
    };
    root->addSubview(scaled);
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(log.back(), "scaled draws 10 20 2 2");
    EXPECT_EQ(pixels.text(), "..../..../..rr/..rr");
}

TEST_F(NSViewDrawing, TheContextsScaleMultipliesThePixels)
{
    DrawnPixels pixels(4, 4);
    CGContextScaleCTM(pixels.context(), 2, 2);
    const auto root = view("root", NSMakeRect(0, 0, 2, 2));
    const auto child = view("child", NSMakeRect(1, 1, 1, 1), NSColor::redColor());
    root->addSubview(child);
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(log.back(), "child draws 0 0 1 1");
    EXPECT_EQ(pixels.text(), "..rr/..rr/..../....");
}

TEST_F(NSViewDrawing, ARotatedContextRotatesTheView)
{
    DrawnPixels pixels(4, 4);
    CGContextConcatCTM(pixels.context(), CGAffineTransformMake(0, 1, -1, 0, 4, 0)); // a quarter turn
    const auto root = view("root", NSMakeRect(0, 0, 3, 2), NSColor::redColor());
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(pixels.text(), "..../..rr/..rr/..rr");
}

TEST_F(NSViewDrawing, HiddenSubviewsAreNotDrawn)
{
    DrawnPixels pixels(2, 2);
    const auto root = view("root", NSMakeRect(0, 0, 2, 2));
    const auto child = view("child", NSMakeRect(0, 0, 2, 2), NSColor::redColor());
    root->addSubview(child);
    child->setHidden(true);
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(log, Log{"root draws 0 0 2 2"});
    // Drawn directly, a hidden view is drawn.
    child->displayRectIgnoringOpacity(child->bounds(), pixels.graphicsContext());
    EXPECT_EQ(pixels.text(), "rr/rr");
}

TEST_F(NSViewDrawing, StateAndCurrentContextAreRestored)
{
    DrawnPixels pixels(2, 2);
    DrawnPixels outer(1, 1);
    const auto root = view("root", NSMakeRect(0, 0, 2, 2));
    root->onDraw = [](NSRect) {
        CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
        CGContextTranslateCTM(context, 5, 5);
        CGContextClipToRect(context, CGRectMake(0, 0, 0, 0));
    };
    const auto child = view("child", NSMakeRect(0, 0, 2, 2), NSColor::redColor());
    root->addSubview(child);
    NSGraphicsContext::setCurrentContext(outer.graphicsContext());
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(NSGraphicsContext::currentContext(), outer.graphicsContext());
    NSGraphicsContext::setCurrentContext(nullptr);
    EXPECT_EQ(pixels.text(), "rr/rr");
    EXPECT_EQ(describe(CGContextGetCTM(pixels.context())), "1 0 0 1 0 0");
}

TEST_F(NSViewDrawing, EachViewStartsWithATextMatrixOfItsOwn)
{
    DrawnPixels pixels(2, 2);
    CGContextSetTextPosition(pixels.context(), 7, 8);
    const auto root = view("root", NSMakeRect(0, 0, 2, 2));
    const auto child = view("child", NSMakeRect(0, 0, 2, 2));
    root->addSubview(child.get());
    std::string positions;
    for (RecordingView* drawn : {root.get(), child.get()}) {
        drawn->onDraw = [&positions](NSRect) {
            CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
            positions += describe(CGContextGetTextPosition(context)) + ";";
            CGContextSetTextPosition(context, 3, 4);
        };
    }
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(positions, "0 0;0 0;");
    EXPECT_EQ(describe(CGContextGetTextPosition(pixels.context())), "7 8");
}

TEST_F(NSViewDrawing, StateAndCurrentContextAreRestoredAfterAnException)
{
    DrawnPixels pixels(2, 2);
    const auto root = view("root", NSMakeRect(0, 0, 2, 2));
    root->onDraw = [](NSRect) {
        CGContextTranslateCTM(NSGraphicsContext::currentContext()->CGContext(), 5, 5);
        throw std::runtime_error("no");
    };
    EXPECT_THROW(
        root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext()), std::runtime_error);
    EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
    EXPECT_EQ(describe(CGContextGetCTM(pixels.context())), "1 0 0 1 0 0");
}

TEST_F(NSViewDrawing, EmptyAndInvalidRectanglesDrawNothing)
{
    DrawnPixels pixels(2, 2);
    const auto root = view("root", NSMakeRect(0, 0, 2, 2), NSColor::redColor());
    root->displayRectIgnoringOpacity(root->bounds(), nullptr);
    root->displayRectIgnoringOpacity(NSZeroRect, pixels.graphicsContext());
    root->displayRectIgnoringOpacity(NSMakeRect(NAN, 0, NAN, 2), pixels.graphicsContext());
    root->displayRectIgnoringOpacity(NSMakeRect(5, 5, 2, 2), pixels.graphicsContext());
    view("empty", NSZeroRect)->displayRectIgnoringOpacity(NSMakeRect(0, 0, 2, 2), pixels.graphicsContext());
    EXPECT_EQ(log, Log{});
    EXPECT_EQ(pixels.text(), "../..");
}

TEST_F(NSViewDrawing, ANegativeRectangleIsStandardized)
{
    DrawnPixels pixels(2, 2);
    const auto root = view("root", NSMakeRect(0, 0, 2, 2), NSColor::redColor());
    root->displayRectIgnoringOpacity(NSMakeRect(2, 1, -1, -1), pixels.graphicsContext());
    EXPECT_EQ(pixels.text(), "../r.");
}

TEST_F(NSViewDrawing, AViewRemovedDuringDrawingIsNotDrawn)
{
    DrawnPixels pixels(2, 1);
    const auto root = view("root", NSMakeRect(0, 0, 2, 1));
    const auto first = view("first", NSMakeRect(0, 0, 1, 1), NSColor::redColor());
    auto second = view("second", NSMakeRect(1, 0, 1, 1), NSColor::greenColor());
    root->addSubview(first);
    root->addSubview(second);
    first->onDraw = [&](NSRect) {
        if (NSView* doomed = std::exchange(second, nullptr).get())
            doomed->removeFromSuperview();
    };
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(pixels.text(), "r.");
}

TEST_F(NSViewDrawing, DisplayMarksLastUntilTheViewIsDrawn)
{
    DrawnPixels pixels(2, 2);
    const auto root = view("root", NSMakeRect(0, 0, 2, 2));
    EXPECT_FALSE(root->needsDisplay());
    root->setNeedsDisplay(true);
    EXPECT_TRUE(root->needsDisplay());
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_FALSE(root->needsDisplay());
    root->setNeedsDisplayInRect(NSMakeRect(1, 1, 1, 1));
    EXPECT_TRUE(root->needsDisplay());
    root->setNeedsDisplay(false);
    root->setNeedsDisplayInRect(NSMakeRect(2, 2, 5, 5));
    root->setNeedsDisplayInRect(NSZeroRect);
    root->setNeedsDisplayInRect(NSMakeRect(NAN, 0, 1, 1));
    EXPECT_FALSE(root->needsDisplay());
}

TEST_F(NSViewDrawing, AMarkSetWhileDrawingIsPreserved)
{
    DrawnPixels pixels(2, 2);
    const auto root = view("root", NSMakeRect(0, 0, 2, 2));
    root->onDraw = [&](NSRect) { root->setNeedsDisplay(true); };
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_TRUE(root->needsDisplay());
}

TEST_F(NSViewDrawing, ABitmapIsFilledByARectangleOfTheView)
{
    const auto root = view("root", NSMakeRect(0, 0, 4, 4), NSColor::redColor());
    const auto bitmap = root->bitmapImageRepForCachingDisplayInRect(NSMakeRect(1, 1, 2, 1.5));
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->pixelsWide(), 2);
    EXPECT_EQ(bitmap->pixelsHigh(), 2);
    EXPECT_EQ(bitmap->bitmapData()[3], 0);
    root->cacheDisplayInRect(NSMakeRect(1, 1, 2, 1.5), bitmap);
    const unsigned char* data = bitmap->bitmapData();
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(data[4 * i] << 8 | data[4 * i + 3], 0xFFFF) << i;
}

TEST_F(NSViewDrawing, AnEmptyOrInvalidRectangleHasNoBitmap)
{
    const auto root = view("root", NSMakeRect(0, 0, 4, 4), NSColor::redColor());
    EXPECT_FALSE(root->bitmapImageRepForCachingDisplayInRect(NSZeroRect));
    EXPECT_FALSE(root->bitmapImageRepForCachingDisplayInRect(NSMakeRect(0, 0, NAN, 1)));
    EXPECT_FALSE(root->bitmapImageRepForCachingDisplayInRect(NSMakeRect(0, 0, 1e12, 1)));
    root->cacheDisplayInRect(root->bounds(), nullptr);
    const auto bitmap = root->bitmapImageRepForCachingDisplayInRect(root->bounds());
    root->cacheDisplayInRect(NSZeroRect, bitmap);
    EXPECT_EQ(log, Log{});
}

} // namespace
