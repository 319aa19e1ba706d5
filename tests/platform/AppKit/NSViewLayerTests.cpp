#include "DrawnPixels.h"
#include "RecordingView.h"

#include "AppKit/ViewPainter.h"
#include "support/AllocationCounter.h"

#include <AppKit/NSBitmapImageRep.h>
#include <CoreGraphics/CGGradient.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

// Views draw as if each had a transparent layer of its own, composited over the views below it.

namespace {

CGContextRef currentContext()
{
    return NSGraphicsContext::currentContext()->CGContext();
}

void fill(CGRect rect, NSColor* color, CGBlendMode mode = kCGBlendModeNormal)
{
    CGContextSetBlendMode(currentContext(), mode);
    CGContextSetFillColorWithColor(currentContext(), color->CGColor());
    CGContextFillRect(currentContext(), rect);
}

/// A green root view, and subviews that draw with the test's functions.
class NSViewLayer : public testing::Test {
protected:
    RetainPtr<RecordingView> makeView(const char* name, NSRect frame, std::function<void(NSRect)> draw)
    {
        auto view = make<RecordingView>(frame, name, log);
        view->onDraw = std::move(draw);
        return view;
    }
    /// A view that is red except for a rectangle that it clears.
    RetainPtr<RecordingView> makeRedWithHole(const char* name, NSRect frame, NSRect hole)
    {
        auto view = makeView(name, frame, [hole](NSRect) { CGContextClearRect(currentContext(), hole); });
        view->color = NSColor::redColor();
        return view;
    }
    RetainPtr<RecordingView> makeRoot(CGFloat width, CGFloat height, NSColor* color = NSColor::greenColor())
    {
        auto root = makeView("root", NSMakeRect(0, 0, width, height), nullptr);
        root->color = color;
        return root;
    }
    /// The whole view at a scale.
    static DrawnPixels drawn(NSView* view, std::size_t scale = 1)
    {
        DrawnPixels pixels(static_cast<std::size_t>(view->bounds().size.width) * scale,
            static_cast<std::size_t>(view->bounds().size.height) * scale);
        CGContextScaleCTM(pixels.context(), static_cast<CGFloat>(scale), static_cast<CGFloat>(scale));
        view->displayRectIgnoringOpacity(view->bounds(), pixels.graphicsContext());
        return pixels;
    }

    Log log;
};

TEST_F(NSViewLayer, EveryBlendModeActsOnTheViewsOwnLayer)
{
    struct Case {
        const char* name;
        CGBlendMode mode;
        NSColor* color;
        /// Where the view is transparent, and where it is red; the superview is green.
        const char* pixels;
    };
    const Case cases[] = {
        {"normal", kCGBlendModeNormal, NSColor::blueColor(), "bb"},
        {"clear", kCGBlendModeClear, NSColor::blueColor(), "gg"},
        {"copy of a colour", kCGBlendModeCopy, NSColor::blueColor(), "bb"},
        {"copy of nothing", kCGBlendModeCopy, NSColor::clearColor(), "gg"},
        {"source in", kCGBlendModeSourceIn, NSColor::blueColor(), "gb"},
        {"source out", kCGBlendModeSourceOut, NSColor::blueColor(), "bg"},
        {"source atop", kCGBlendModeSourceAtop, NSColor::blueColor(), "gb"},
        {"destination over", kCGBlendModeDestinationOver, NSColor::blueColor(), "br"},
        {"destination out", kCGBlendModeDestinationOut, NSColor::blueColor(), "gg"},
        {"xor", kCGBlendModeXOR, NSColor::blueColor(), "bg"},
        {"plus lighter", kCGBlendModePlusLighter, NSColor::blueColor(), "bm"},
        {"multiply", kCGBlendModeMultiply, NSColor::blueColor(), "bk"},
        {"screen", kCGBlendModeScreen, NSColor::blueColor(), "bm"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto root = makeRoot(2, 1);
        const auto view = makeView("view", NSMakeRect(0, 0, 2, 1), [&c](NSRect) {
            fill(CGRectMake(1, 0, 1, 1), NSColor::redColor());
            fill(CGRectMake(0, 0, 2, 1), c.color, c.mode);
        });
        root->addSubview(view);
        EXPECT_EQ(drawn(root).text(), c.pixels) << "when it is new";
        EXPECT_EQ(drawn(root).text(), c.pixels) << "when its layer is known";
    }
}

TEST_F(NSViewLayer, TranslucentPixelsOfTheLayerAreBlendedOverTheSuperview)
{
    const auto root = makeRoot(2, 1);
    const auto half = NSColor::colorWithSRGBRed(0, 0, 1, 128 / 255.0);
    const auto view = makeView("view", NSMakeRect(0, 0, 2, 1), [&](NSRect) {
        fill(CGRectMake(0, 0, 2, 1), NSColor::redColor());
        fill(CGRectMake(0, 0, 1, 1), half, kCGBlendModeCopy);
        fill(CGRectMake(1.5, 0, 1, 1), half, kCGBlendModeClear);
    });
    root->addSubview(view);
    const DrawnPixels pixels = drawn(root);
    // Half blue instead of red, over green; and the red that a clear of half a pixel (coverage 128) leaves.
    const std::vector<unsigned char> expected{0, 127, 128, 255, 127, 128, 0, 255};
    EXPECT_EQ(pixels.bytes(), expected);
}

TEST_F(NSViewLayer, AHoleShowsTheSuperviewAtAnyScaleFlippedOrNot)
{
    for (const bool flipped : {false, true}) {
        SCOPED_TRACE(flipped ? "flipped" : "upright");
        const auto root = makeRoot(3, 3);
        const auto view = makeRedWithHole("view", NSMakeRect(0, 0, 2, 2), NSMakeRect(0, 0, 1, 1));
        view->flipped = flipped;
        root->addSubview(view);
        EXPECT_EQ(drawn(root).text(), flipped ? "ggg/grg/rrg" : "ggg/rrg/grg");
        EXPECT_EQ(drawn(root, 2).text(),
            flipped ? "gggggg/gggggg/ggrrgg/ggrrgg/rrrrgg/rrrrgg"
                    : "gggggg/gggggg/rrrrgg/rrrrgg/ggrrgg/ggrrgg");
    }
}

TEST_F(NSViewLayer, EachViewHasItsOwnLayer)
{
    const auto root = makeRoot(4, 1);
    // Clears pixels of its own layer only, not of the views below and above.
    const auto middle = makeRedWithHole("middle", NSMakeRect(0, 0, 4, 1), NSMakeRect(0, 0, 3, 1));
    const auto leaf = makeView("leaf", NSMakeRect(1, 0, 3, 1), [](NSRect) {
        fill(CGRectMake(0, 0, 3, 1), NSColor::blueColor());
        CGContextClearRect(currentContext(), CGRectMake(1, 0, 2, 1));
    });
    root->addSubview(middle);
    middle->addSubview(leaf);
    EXPECT_EQ(drawn(root).text(), "gbgr");
    EXPECT_EQ(drawn(root).text(), "gbgr");
}

TEST_F(NSViewLayer, AHoleShowsTheSiblingBelow)
{
    const auto root = makeRoot(3, 1);
    const auto low = makeView("low", NSMakeRect(0, 0, 2, 1), nullptr);
    low->color = NSColor::blueColor();
    const auto high = makeRedWithHole("high", NSMakeRect(1, 0, 2, 1), NSMakeRect(0, 0, 1, 1));
    root->addSubview(low);
    root->addSubview(high);
    EXPECT_EQ(drawn(root).text(), "bbr");
}

TEST_F(NSViewLayer, WithoutViewsBelowAHoleShowsTheContextsPixels)
{
    const auto root = makeRedWithHole("root", NSMakeRect(0, 0, 2, 1), NSMakeRect(0, 0, 1, 1));
    EXPECT_EQ(drawn(root).text(), ".r");
    DrawnPixels pixels(3, 2);
    CGContextSetRGBFillColor(pixels.context(), 1, 1, 1, 1);
    CGContextFillRect(pixels.context(), CGRectMake(0, 0, 3, 2));
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(pixels.text(), "www/wrw");

    const auto bitmap = root->bitmapImageRepForCachingDisplayInRect(root->bounds());
    root->cacheDisplayInRect(root->bounds(), bitmap);
    const auto hole = bitmap->colorAtX(0, 0);
    EXPECT_EQ(hole->alphaComponent(), 0);
    EXPECT_EQ(bitmap->colorAtX(1, 0)->redComponent(), 1);
}

TEST_F(NSViewLayer, ANewViewCausesOneRedrawOfTheWholeTree)
{
    const auto root = makeRoot(2, 1);
    const auto first = makeRedWithHole("first", NSMakeRect(0, 0, 1, 1), NSMakeRect(0, 0, 1, 1));
    const auto second = makeRedWithHole("second", NSMakeRect(1, 0, 1, 1), NSMakeRect(0, 0, 1, 1));
    root->addSubview(first);
    root->addSubview(second);
    const Log all{"root draws 0 0 2 1", "first draws 0 0 1 1", "second draws 0 0 1 1"};
    Log twice = all;
    twice.insert(twice.end(), all.begin(), all.end());
    drawn(root);
    EXPECT_EQ(log, twice);
    log.clear();
    drawn(root);
    EXPECT_EQ(log, all);
}

TEST_F(NSViewLayer, SourceOverAloneIsDrawnOnce)
{
    const auto root = makeRoot(2, 1);
    const auto view = makeView("view", NSMakeRect(0, 0, 2, 1), [](NSRect) {
        CGContextSetShadow(currentContext(), CGSizeMake(1, 0), 1);
        fill(CGRectMake(0, 0, 1, 1), NSColor::redColor());
        CGContextSetShadowWithColor(currentContext(), CGSizeZero, 0, nullptr);
        // An opaque colour in copy mode gives the same pixels.
        fill(CGRectMake(0, 0, 1, 1), NSColor::blueColor(), kCGBlendModeCopy);
    });
    root->addSubview(view);
    drawn(root);
    EXPECT_EQ(log, (Log{"root draws 0 0 2 1", "view draws 0 0 2 1"}));
}

TEST_F(NSViewLayer, ModesInATransparencyLayerNeedNoLayerOfTheView)
{
    int draws = 0;
    const auto root = makeRoot(2, 1);
    root->addSubview(makeView("view", NSMakeRect(0, 0, 2, 1), [&](NSRect) {
        ++draws;
        CGContextBeginTransparencyLayer(currentContext(), nullptr);
        fill(NSMakeRect(0, 0, 2, 1), NSColor::redColor());
        fill(NSMakeRect(0, 0, 1, 1), NSColor::redColor(), kCGBlendModeDifference);
        CGContextClearRect(currentContext(), NSMakeRect(1, 0, 1, 1));
        CGContextEndTransparencyLayer(currentContext());
    }));
    EXPECT_EQ(drawn(root).text(), "kg");
    EXPECT_EQ(draws, 1);
}

TEST_F(NSViewLayer, ATransparencyLayerThatAViewDoesNotEndIsEndedWithTheView)
{
    const auto root = makeRoot(2, 1);
    root->addSubview(makeView("forgets", NSMakeRect(0, 0, 1, 1), [&](NSRect) {
        CGContextBeginTransparencyLayer(currentContext(), nullptr);
        fill(NSMakeRect(0, 0, 1, 1), NSColor::redColor());
    }));
    root->addSubview(makeView(
        "next", NSMakeRect(1, 0, 1, 1), [&](NSRect) { fill(NSMakeRect(0, 0, 1, 1), NSColor::blueColor()); }));
    EXPECT_EQ(drawn(root).text(), "rb");
}

TEST_F(NSViewLayer, SourceOverAloneNeedsNoMemoryForALayer)
{
    const auto root = makeRoot(200, 200);
    const auto view = makeView("view", NSMakeRect(0, 0, 200, 200),
        [](NSRect) { fill(CGRectMake(10, 10, 50, 50), NSColor::redColor()); });
    root->addSubview(view);
    DrawnPixels pixels(200, 200);
    SavedPixels::Memory memory;
    ViewPainter painter(pixels.context(), memory);
    const auto draw = [&] {
        painter.draw(*root, CGAffineTransformIdentity, root->bounds(), [] { ADD_FAILURE() << "again"; });
    };
    draw();
    draw();
    EXPECT_TRUE(memory.empty());
}

TEST_F(NSViewLayer, TheMemoryOfLayersIsReused)
{
    log.reserve(100);
    const auto root = makeRoot(200, 200);
    const auto view = makeRedWithHole("view", NSMakeRect(0, 0, 200, 200), NSMakeRect(0, 0, 100, 100));
    root->addSubview(view);
    DrawnPixels pixels(200, 200);
    SavedPixels::Memory memory;
    ViewPainter painter(pixels.context(), memory);
    int restored = 0;
    const auto draw = [&] {
        painter.draw(*root, CGAffineTransformIdentity, root->bounds(), [&] { ++restored; });
    };
    draw();
    EXPECT_EQ(restored, 1);
    const AllocationCounter allocations;
    draw();
    EXPECT_EQ(restored, 1);
    EXPECT_LT(allocations.largest(), 1000); // what the views write into the log
    EXPECT_EQ(memory.size(), 200 * 201);    // the backdrop and a row
}

TEST_F(NSViewLayer, AShadowInCopyModeReplacesOnlyTheViewsPixels)
{
    const auto root = makeRoot(2, 1);
    const auto view = makeView("view", NSMakeRect(0, 0, 2, 1), [](NSRect) {
        fill(CGRectMake(0, 0, 2, 1), NSColor::redColor());
        const auto half = NSColor::colorWithSRGBRed(0, 0, 0, 128 / 255.0);
        CGContextSetShadowWithColor(currentContext(), CGSizeMake(1, 0), 0, half->CGColor());
        fill(CGRectMake(0, 0, 1, 1), NSColor::blueColor(), kCGBlendModeCopy);
    });
    root->addSubview(view);
    const std::vector<unsigned char> expected{0, 0, 255, 255, 0, 127, 0, 255};
    EXPECT_EQ(drawn(root).bytes(), expected);
}

TEST_F(NSViewLayer, EveryDrawingFunctionIsDetected)
{
    DrawnPixels nothing(1, 1);
    const auto transparent = adopt(CGBitmapContextCreateImage(nothing.context()));
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    const CGFloat components[8] = {};
    const auto gradient = adopt(CGGradientCreateWithColorComponents(space, components, nullptr, 2));
    constexpr CGRect kAll{{0, 0}, {1, 1}};
    struct Case {
        const char* name;
        std::function<void(CGContextRef)> paint;
    };
    // Each of them replaces the red pixel by nothing.
    const Case cases[] = {
        {"fill", [&](CGContextRef context) { CGContextFillRect(context, kAll); }},
        {"path",
            [&](CGContextRef context) {
                CGContextAddRect(context, kAll);
                CGContextAddRect(context, CGRectMake(5, 5, 1, 1));
                CGContextEOFillPath(context);
            }},
        {"stroke", [&](CGContextRef context) { CGContextStrokeRectWithWidth(context, kAll, 4); }},
        {"image", [&](CGContextRef context) { CGContextDrawImage(context, kAll, transparent); }},
        {"linear gradient",
            [&](CGContextRef context) {
                CGContextDrawLinearGradient(
                    context, gradient, CGPointZero, CGPointMake(1, 0), kCGGradientDrawsAfterEndLocation);
            }},
        {"radial gradient",
            [&](CGContextRef context) {
                CGContextDrawRadialGradient(
                    context, gradient, CGPointZero, 0, CGPointZero, 1, kCGGradientDrawsAfterEndLocation);
            }},
        {"transparency layer",
            [&](CGContextRef context) {
                CGContextBeginTransparencyLayer(context, nullptr);
                CGContextEndTransparencyLayer(context);
            }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto root = makeRoot(1, 1);
        const auto view = makeView("view", NSMakeRect(0, 0, 1, 1), [&](NSRect) {
            fill(kAll, NSColor::redColor());
            CGContextSetBlendMode(currentContext(), kCGBlendModeCopy);
            CGContextSetRGBFillColor(currentContext(), 0, 0, 0, 0);
            CGContextSetRGBStrokeColor(currentContext(), 0, 0, 0, 0);
            c.paint(currentContext());
        });
        root->addSubview(view);
        EXPECT_EQ(drawn(root).text(), "g");
    }
}

TEST_F(NSViewLayer, APartialRedrawMatchesAFullOne)
{
    const auto root = makeRoot(6, 6, NSColor::colorWithSRGBRed(0.3, 0.6, 0.9, 0.8).get());
    const auto view = makeView("view", NSMakeRect(0.5, 0.5, 5, 5), [](NSRect) {
        fill(CGRectMake(0.25, 0.25, 4, 4), NSColor::colorWithSRGBRed(1, 0.5, 0, 0.7).get());
        CGContextSetBlendMode(currentContext(), kCGBlendModeSourceOut);
        CGContextFillEllipseInRect(currentContext(), CGRectMake(1, 1, 3.3, 3.3));
    });
    root->addSubview(view);
    for (const CGFloat scale : {1.0, 2.0}) {
        SCOPED_TRACE(scale);
        const auto size = static_cast<std::size_t>(6 * scale);
        const auto draw = [&](DrawnPixels& pixels, CGRect clip) {
            CGContextSaveGState(pixels.context());
            CGContextScaleCTM(pixels.context(), scale, scale);
            CGContextClipToRect(pixels.context(), clip);
            root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
            CGContextRestoreGState(pixels.context());
        };
        DrawnPixels whole(size, size);
        draw(whole, root->bounds());
        DrawnPixels parts(size, size);
        for (const CGRect part : {CGRectMake(0, 0, 2, 6), CGRectMake(2, 0, 4, 3), CGRectMake(2, 3, 4, 3)})
            draw(parts, part);
        EXPECT_EQ(parts.bytes(), whole.bytes());
    }
}

TEST_F(NSViewLayer, LayersWorkInARotatedContext)
{
    DrawnPixels pixels(4, 4);
    CGContextConcatCTM(pixels.context(), CGAffineTransformMake(0, 1, -1, 0, 4, 0)); // a quarter turn
    const auto root = makeRoot(3, 2);
    const auto view = makeRedWithHole("view", NSMakeRect(0, 0, 2, 2), NSMakeRect(0, 0, 1, 1));
    root->addSubview(view);
    root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
    EXPECT_EQ(pixels.text(), "..../..gg/..rr/..rg");
}

TEST_F(NSViewLayer, LayersWorkInOpaqueAndAlphaOnlyContexts)
{
    const auto root = makeRoot(2, 1);
    const auto view = makeRedWithHole("view", NSMakeRect(0, 0, 2, 1), NSMakeRect(0, 0, 1, 1));
    root->addSubview(view);
    DrawnPixels opaque(2, 2, kCGImageAlphaNoneSkipLast);
    root->displayRectIgnoringOpacity(root->bounds(), opaque.graphicsContext());
    EXPECT_EQ(opaque.bytes()[9], 255);  // green of the first pixel below
    EXPECT_EQ(opaque.bytes()[12], 255); // red of the second
    EXPECT_EQ(opaque.bytes()[1] + opaque.bytes()[4], 0);

    unsigned char alphas[4] = {};
    const auto context = adopt(CGBitmapContextCreate(alphas, 2, 2, 8, 2, nullptr, kCGImageAlphaOnly));
    root->displayRectIgnoringOpacity(
        root->bounds(), NSGraphicsContext::graphicsContextWithCGContext(context, false).get());
    EXPECT_EQ((std::vector<int>(std::begin(alphas), std::end(alphas))), (std::vector<int>{0, 0, 255, 255}));
}

TEST_F(NSViewLayer, AViewMayDrawOthersIntoItsContext)
{
    const auto stamp = makeRedWithHole("stamp", NSMakeRect(0, 0, 2, 1), NSMakeRect(0, 0, 1, 1));
    for (const bool clears : {false, true}) {
        SCOPED_TRACE(clears ? "with a hole of its own" : "without one");
        const auto root = makeRoot(3, 1);
        const auto view = makeView("view", NSMakeRect(0, 0, 3, 1), [&](NSRect) {
            fill(CGRectMake(0, 0, 3, 1), NSColor::blueColor());
            stamp->displayRectIgnoringOpacity(stamp->bounds(), NSGraphicsContext::currentContext());
            if (clears)
                CGContextClearRect(currentContext(), CGRectMake(2, 0, 1, 1));
        });
        root->addSubview(view);
        EXPECT_EQ(drawn(root).text(), clears ? "brg" : "brb");
    }
}

TEST_F(NSViewLayer, AThrowingViewDoesNotAffectTheOthers)
{
    const auto root = makeRoot(2, 1);
    const auto view = makeRedWithHole("view", NSMakeRect(0, 0, 2, 1), NSMakeRect(0, 0, 1, 1));
    const auto failing = makeView("failing", NSMakeRect(0, 0, 1, 1), [](NSRect) {
        CGContextClearRect(currentContext(), CGRectMake(0, 0, 1, 1));
        throw std::runtime_error("no");
    });
    root->addSubview(view);
    root->addSubview(failing);
    DrawnPixels pixels(2, 1);
    for (const char* when : {"when they are new", "when their layers are known"}) {
        SCOPED_TRACE(when);
        EXPECT_THROW(
            root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext()), std::runtime_error);
        EXPECT_EQ(pixels.text(), "gr");
    }
    // After drawing, the caller's context clears pixels again.
    CGContextClearRect(pixels.context(), CGRectMake(0, 0, 2, 1));
    EXPECT_EQ(pixels.text(), "..");
}

TEST_F(NSViewLayer, ViewsReplacedDuringDrawingAreDrawnInLayers)
{
    const auto root = makeRoot(2, 1);
    root->onDraw = [&](NSRect) {
        while (!root->subviews().empty())
            root->subviews().back()->removeFromSuperview();
        root->addSubview(makeRedWithHole("new", NSMakeRect(0, 0, 2, 1), NSMakeRect(0, 0, 1, 1)));
    };
    EXPECT_EQ(drawn(root).text(), "gr");
}

} // namespace
