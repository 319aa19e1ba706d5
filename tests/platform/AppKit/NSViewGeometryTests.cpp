#include "RecordingView.h"

#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

#include <cmath>

namespace {

class NSViewGeometry : public testing::Test {
protected:
    RetainPtr<RecordingView> view(NSRect frame, bool flipped = false)
    {
        auto made = make<RecordingView>(frame, "view", log);
        made->flipped = flipped;
        return made;
    }

    Log log;
};

TEST_F(NSViewGeometry, InvalidFramesAreSanitized)
{
    EXPECT_EQ(describe(view(NSMakeRect(NAN, INFINITY, -5, NAN))->frame()), "0 0 0 0");
    const auto one = view(NSMakeRect(0, 0, 5, 5));
    one->setFrame(NSMakeRect(-3, 4, -1, 7));
    EXPECT_EQ(describe(one->frame()), "-3 4 0 7");
    one->setFrameOrigin(NSMakePoint(1, NAN));
    EXPECT_EQ(describe(one->frame()), "1 0 0 7");
}

TEST_F(NSViewGeometry, BoundsScaleWithTheFrame)
{
    const auto one = view(NSMakeRect(0, 0, 100, 50));
    one->setFrameSize(NSMakeSize(60, 40));
    EXPECT_EQ(describe(one->bounds()), "0 0 60 40");
    one->setBoundsSize(NSMakeSize(30, 10));
    EXPECT_EQ(describe(one->frame()), "0 0 60 40");
    one->setFrameSize(NSMakeSize(120, 80));
    EXPECT_EQ(describe(one->bounds()), "0 0 60 20");
    // A collapsed view recovers its scale.
    one->setFrameSize(NSZeroSize);
    EXPECT_EQ(describe(one->bounds()), "0 0 0 0");
    one->setFrameSize(NSMakeSize(60, 40));
    EXPECT_EQ(describe(one->bounds()), "0 0 30 10");
}

TEST_F(NSViewGeometry, InvalidBoundsChangeNothing)
{
    const auto one = view(NSMakeRect(0, 0, 100, 50));
    for (const NSSize size :
        {NSMakeSize(0, 0), NSMakeSize(-1, -1), NSMakeSize(NAN, INFINITY), NSMakeSize(1e-320, 1e308)})
        one->setBoundsSize(size);
    EXPECT_EQ(describe(one->bounds().origin), "0 0");
    EXPECT_EQ(one->bounds().size.width, 100);
    one->setBoundsOrigin(NSMakePoint(NAN, 5));
    EXPECT_EQ(describe(one->bounds().origin), "0 5");
    const auto empty = view(NSZeroRect);
    empty->setBoundsSize(NSMakeSize(10, 10));
    EXPECT_EQ(describe(empty->bounds()), "0 0 0 0");
}

TEST_F(NSViewGeometry, ChangesMarkForDisplayAndEqualValuesDoNot)
{
    const auto one = view(NSMakeRect(0, 0, 100, 50));
    const auto marks = [&](auto&& change) {
        one->setNeedsDisplay(false);
        change();
        return one->needsDisplay();
    };
    EXPECT_TRUE(marks([&] { one->setFrameSize(NSMakeSize(50, 50)); }));
    EXPECT_FALSE(marks([&] { one->setFrameSize(NSMakeSize(50, 50)); }));
    EXPECT_TRUE(marks([&] { one->setBoundsOrigin(NSMakePoint(3, 3)); }));
    EXPECT_FALSE(marks([&] { one->setBoundsOrigin(NSMakePoint(3, 3)); }));
    EXPECT_TRUE(marks([&] { one->setBoundsSize(NSMakeSize(25, 50)); }));
    EXPECT_FALSE(marks([&] { one->setBoundsSize(NSMakeSize(25, 50)); }));
    EXPECT_FALSE(marks([&] { one->setBounds(one->bounds()); }));
    EXPECT_FALSE(marks([&] { one->setFrameOrigin(NSMakePoint(9, 9)); }));
}

TEST_F(NSViewGeometry, PointsConvertThroughNestedViews)
{
    const auto root = view(NSMakeRect(0, 0, 200, 200));
    const auto middle = view(NSMakeRect(10, 20, 100, 100));
    const auto leaf = view(NSMakeRect(5, 6, 20, 20));
    root->addSubview(middle);
    middle->addSubview(leaf);
    EXPECT_EQ(describe(leaf->convertPointToView(NSMakePoint(1, 2), root)), "16 28");
    EXPECT_EQ(describe(leaf->convertPointFromView(NSMakePoint(16, 28), root)), "1 2");
    EXPECT_EQ(describe(root->convertPointToView(NSMakePoint(16, 28), leaf)), "1 2");
    EXPECT_EQ(describe(leaf->convertPointToView(NSMakePoint(1, 2), middle)), "6 8");
    EXPECT_EQ(describe(leaf->convertPointToView(NSMakePoint(1, 2), leaf)), "1 2");
    EXPECT_EQ(describe(leaf->convertPointToView(NSMakePoint(1, 2), nullptr)), "16 28");
    EXPECT_EQ(describe(leaf->convertPointFromView(NSMakePoint(16, 28), nullptr)), "1 2");
}

TEST_F(NSViewGeometry, AFlippedViewMeasuresFromItsTop)
{
    const auto root = view(NSMakeRect(0, 0, 200, 200));
    const auto flipped = view(NSMakeRect(10, 20, 100, 50), true);
    const auto upright = view(NSMakeRect(5, 6, 20, 10));
    const auto flippedInFlipped = view(NSMakeRect(50, 6, 20, 10), true);
    root->addSubview(flipped);
    flipped->addSubview(upright);
    flipped->addSubview(flippedInFlipped);
    EXPECT_EQ(describe(flipped->convertPointToView(NSMakePoint(0, 0), root)), "10 70");
    EXPECT_EQ(describe(flipped->convertPointToView(NSMakePoint(3, 50), root)), "13 20");
    EXPECT_EQ(describe(upright->convertPointToView(NSMakePoint(0, 0), flipped)), "5 16");
    EXPECT_EQ(describe(upright->convertPointToView(NSMakePoint(0, 10), root)), "15 64");
    EXPECT_EQ(describe(flippedInFlipped->convertPointToView(NSMakePoint(0, 0), root)), "60 64");
    EXPECT_EQ(describe(upright->convertPointToView(NSMakePoint(0, 0), flippedInFlipped)), "-45 10");
    EXPECT_EQ(describe(flipped->convertRectToView(NSMakeRect(0, 0, 10, 5), root)), "10 65 10 5");
    EXPECT_EQ(describe(root->convertRectToView(NSMakeRect(10, 65, 10, 5), flipped)), "0 0 10 5");
    EXPECT_EQ(describe(flipped->convertSizeToView(NSMakeSize(3, 4), root)), "3 4");
}

TEST_F(NSViewGeometry, AScaledViewScalesPoints)
{
    const auto root = view(NSMakeRect(0, 0, 200, 200));
    const auto scaled = view(NSMakeRect(10, 20, 100, 50));
    scaled->setBounds(NSMakeRect(-5, 7, 50, 10)); // a unit is two points wide, five high
    const auto scaledFlipped = view(NSMakeRect(10, 120, 100, 50), true);
    scaledFlipped->setBounds(NSMakeRect(-5, 7, 50, 10));
    root->addSubview(scaled);
    root->addSubview(scaledFlipped);
    EXPECT_EQ(describe(scaled->convertPointToView(NSMakePoint(-5, 7), root)), "10 20");
    EXPECT_EQ(describe(scaled->convertPointToView(NSMakePoint(0, 8), root)), "20 25");
    EXPECT_EQ(describe(root->convertPointToView(NSMakePoint(20, 25), scaled)), "0 8");
    EXPECT_EQ(describe(scaled->convertRectToView(scaled->bounds(), root)), "10 20 100 50");
    EXPECT_EQ(describe(scaled->convertSizeToView(NSMakeSize(1, 1), root)), "2 5");
    EXPECT_EQ(describe(scaled->convertSizeFromView(NSMakeSize(2, 5), root)), "1 1");
    EXPECT_EQ(describe(scaled->convertSizeFromView(NSMakeSize(2, 5), nullptr)), "1 1");
    EXPECT_EQ(describe(scaledFlipped->convertPointToView(NSMakePoint(-5, 7), root)), "10 170");
    EXPECT_EQ(describe(scaledFlipped->convertPointToView(NSMakePoint(0, 8), root)), "20 165");
    EXPECT_EQ(describe(scaledFlipped->convertRectToView(scaledFlipped->bounds(), root)), "10 120 100 50");
}

TEST_F(NSViewGeometry, RectanglesConvertFromAnyViewOfTheTree)
{
    const auto root = view(NSMakeRect(0, 0, 200, 200));
    const auto flipped = view(NSMakeRect(10, 20, 100, 50), true);
    const auto scaled = view(NSMakeRect(5, 6, 20, 10));
    const auto sibling = view(NSMakeRect(100, 100, 50, 50));
    scaled->setBounds(NSMakeRect(-5, 7, 10, 2)); // a unit is two points wide, five high
    root->addSubview(flipped);
    root->addSubview(sibling);
    flipped->addSubview(scaled);
    const NSRect rect = NSMakeRect(1, 2, 4, 10);
    // The superview's bottom is at y = 50 of the flipped view.
    EXPECT_EQ(describe(flipped->convertRectFromView(rect, root)), "-9 58 4 10");
    EXPECT_EQ(describe(root->convertRectFromView(rect, flipped)), "11 58 4 10");
    // The scaled view's bottom left corner, (-5, 7) in it, is (5, 16) in the flipped one.
    EXPECT_EQ(describe(scaled->convertRectFromView(rect, flipped)), "-7 7.8 2 2");
    EXPECT_EQ(describe(flipped->convertRectFromView(rect, scaled)), "17 -9 8 50");
    EXPECT_EQ(describe(scaled->convertRectFromView(rect, scaled)), "1 2 4 10");
    EXPECT_EQ(describe(sibling->convertRectFromView(rect, flipped)), "-89 -42 4 10");
    EXPECT_EQ(describe(sibling->convertRectFromView(rect, nullptr)), "-99 -98 4 10");
    EXPECT_EQ(describe(flipped->convertRectFromView(NSMakeRect(5, 12, -4, -10), nullptr)), "-9 58 4 10");
}

TEST_F(NSViewGeometry, BackingCoordinatesAreThoseOfTheWindowWithoutAScale)
{
    const auto root = view(NSMakeRect(0, 0, 200, 200));
    const auto child = view(NSMakeRect(10, 20, 100, 50), true);
    root->addSubview(child);
    EXPECT_EQ(describe(child->convertRectToBacking(NSMakeRect(0, 0, 10, 5))), "10 65 10 5");
    EXPECT_EQ(describe(child->convertRectFromBacking(NSMakeRect(10, 65, 10, 5))), "0 0 10 5");
}

TEST_F(NSViewGeometry, InAWindowTheVisibleRectIsClippedToTheSuperviews)
{
    const auto window =
        make<NSWindow>(NSMakeRect(0, 0, 20, 20), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    const auto child = view(NSMakeRect(-5, 10, 100, 100), true);
    const auto leaf = view(NSMakeRect(0, 80, 10, 20));
    child->addSubview(leaf);
    window->contentView()->addSubview(child);
    // 20 points wide from the content's left edge; the lowest 10 points, which are the last ones here.
    EXPECT_EQ(describe(child->visibleRect()), "5 90 20 10");
    EXPECT_EQ(describe(leaf->visibleRect()), "5 0 5 10");
    child->setFrameOrigin(NSMakePoint(20, 0));
    EXPECT_EQ(describe(child->visibleRect()), "0 0 0 0");
}

TEST_F(NSViewGeometry, WithoutAWindowSuperviewsDoNotClipTheVisibleRect)
{
    const auto root = view(NSMakeRect(0, 0, 20, 20));
    const auto child = view(NSMakeRect(-5, 10, 100, 100), true);
    root->addSubview(child);
    EXPECT_EQ(describe(child->visibleRect()), "0 0 100 100");
    child->setBounds(NSMakeRect(3, 4, 50, 50));
    EXPECT_EQ(describe(child->visibleRect()), "3 4 50 50");
}

TEST_F(NSViewGeometry, TheVisibleRectOfAHiddenViewIsZero)
{
    const auto window =
        make<NSWindow>(NSMakeRect(0, 0, 20, 20), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    const auto detached = make<NSView>(NSMakeRect(0, 0, 9, 9));
    for (NSView* root : {window->contentView(), detached.get()}) {
        SCOPED_TRACE(root->window() ? "in a window" : "without a window");
        const auto middle = view(NSMakeRect(0, 0, 9, 9));
        const auto leaf = view(NSMakeRect(0, 0, 9, 9));
        root->addSubview(middle);
        middle->addSubview(leaf);
        EXPECT_EQ(describe(leaf->visibleRect()), "0 0 9 9");
        middle->setHidden(true);
        EXPECT_EQ(describe(middle->visibleRect()), "0 0 0 0");
        EXPECT_EQ(describe(leaf->visibleRect()), "0 0 0 0");
        EXPECT_EQ(describe(root->visibleRect()), describe(root->bounds()));
    }
}

TEST_F(NSViewGeometry, NoIntrinsicSizeByDefault)
{
    const auto one = view(NSZeroRect);
    EXPECT_EQ(describe(one->intrinsicContentSize()), "-1 -1");
    EXPECT_EQ(NSViewNoIntrinsicMetric, -1);
}

TEST_F(NSViewGeometry, SuperviewsAreNotifiedOfANewIntrinsicSize)
{
    const auto root = make<RecordingView>(NSZeroRect, "root", log);
    const auto middle = make<RecordingView>(NSZeroRect, "middle", log);
    const auto leaf = make<RecordingView>(NSZeroRect, "leaf", log);
    root->addSubview(middle);
    middle->addSubview(leaf);
    leaf->invalidateIntrinsicContentSize();
    EXPECT_EQ(log, (Log{"middle lays out", "root lays out"}));
}

// Autoresizing.

/// The child's frame, (10, 20, 30, 40) in 100 x 100, after the superview is resized to 160 x 130.
std::string resized(NSAutoresizingMaskOptions mask, bool flipped = false)
{
    Log log;
    const auto parent = make<RecordingView>(NSMakeRect(0, 0, 100, 100), "parent", log);
    parent->flipped = flipped;
    const auto child = make<NSView>(NSMakeRect(10, 20, 30, 40));
    child->setAutoresizingMask(mask);
    parent->addSubview(child);
    parent->setFrameSize(NSMakeSize(160, 130));
    return describe(child->frame());
}

TEST(NSViewAutoresizing, OnlyFlexiblePartsChange)
{
    EXPECT_EQ(resized(NSViewNotSizable), "10 20 30 40");
    EXPECT_EQ(resized(NSViewMaxXMargin | NSViewMaxYMargin), "10 20 30 40");
    EXPECT_EQ(resized(NSViewMinXMargin | NSViewMinYMargin), "70 50 30 40");
    EXPECT_EQ(resized(NSViewWidthSizable), "10 20 90 40");
    EXPECT_EQ(resized(NSViewHeightSizable), "10 20 30 70");
    EXPECT_EQ(resized(NSViewWidthSizable | NSViewHeightSizable), "10 20 90 70");
}

TEST(NSViewAutoresizing, FlexiblePartsShareInProportion)
{
    // Margins of 10 and 60 share 60 points: 8.57 and 51.43. The edges, at 18.57 and 48.57, are floored.
    EXPECT_EQ(resized(NSViewMinXMargin | NSViewMaxXMargin), "18 20 30 40");
    // Width 30 and margin 60 share 60: 20 and 40.
    EXPECT_EQ(resized(NSViewWidthSizable | NSViewMaxXMargin), "10 20 50 40");
    // All three: everything times 1.6.
    EXPECT_EQ(resized(NSViewMinXMargin | NSViewWidthSizable | NSViewMaxXMargin), "16 20 48 40");
}

TEST(NSViewAutoresizing, AFlippedSuperviewAppliesTheSameRulesInItsCoordinates)
{
    EXPECT_EQ(resized(NSViewMinYMargin, true), "10 50 30 40");
    EXPECT_EQ(resized(NSViewHeightSizable | NSViewMaxYMargin, true), "10 20 30 55");
}

/// A child's frame after its superview of 100 x 100 is resized, in an unflipped superview and in a flipped
/// one.
std::string resizedInBoth(NSRect frame, NSAutoresizingMaskOptions mask, NSSize size)
{
    std::string frames;
    for (const bool flipped : {false, true}) {
        Log log;
        const auto parent = make<RecordingView>(NSMakeRect(0, 0, 100, 100), "parent", log);
        parent->flipped = flipped;
        const auto child = make<NSView>(frame);
        child->setAutoresizingMask(mask);
        parent->addSubview(child);
        parent->setFrameSize(size);
        frames += (flipped ? " / " : "") + describe(child->frame());
    }
    return frames;
}

TEST(NSViewAutoresizing, FloorsBothEdgesInTheSuperviewsCoordinates)
{
    const NSRect frame = NSMakeRect(7, 5, 21, 33);
    // Height 33 and margin 62 share -10: the edge at 38 goes to 34.53.
    EXPECT_EQ(resizedInBoth(frame, NSViewHeightSizable | NSViewMaxYMargin, NSMakeSize(100, 90)),
        "7 5 21 29 / 7 5 21 29");
    // Margin 5 and height 33 share -10: the edge at 5 goes to 3.68, the one at 38 to 28.
    EXPECT_EQ(resizedInBoth(frame, NSViewMinYMargin | NSViewHeightSizable, NSMakeSize(100, 90)),
        "7 3 21 25 / 7 3 21 25");
    // All by 0.9: 4.5 and 34.2.
    EXPECT_EQ(
        resizedInBoth(frame, NSViewMinYMargin | NSViewHeightSizable | NSViewMaxYMargin, NSMakeSize(100, 90)),
        "7 4 21 30 / 7 4 21 30");
    // The same horizontally: 6.3 and 25.2.
    EXPECT_EQ(
        resizedInBoth(frame, NSViewMinXMargin | NSViewWidthSizable | NSViewMaxXMargin, NSMakeSize(90, 100)),
        "6 5 19 33 / 6 5 19 33");
    // Negative edges are floored, too: -7.7.
    EXPECT_EQ(resizedInBoth(NSMakeRect(-7, 5, 107, 33),
                  NSViewMinXMargin | NSViewWidthSizable | NSViewMaxXMargin, NSMakeSize(110, 100)),
        "-8 5 118 33 / -8 5 118 33");
}

TEST(NSViewAutoresizing, AnEdgeOnThePixelGridIsPreserved)
{
    // Each third of 0.3 is slightly less than 0.1 in binary; the sum must not be floored to the previous
    // pixel.
    const auto parent = make<NSView>(NSMakeRect(0, 0, 0.3, 10));
    const auto child = make<NSView>(NSMakeRect(0.1, 0, 0.1, 10));
    child->setAutoresizingMask(NSViewMinXMargin | NSViewWidthSizable | NSViewMaxXMargin);
    parent->addSubview(child);
    parent->setFrameSize(NSMakeSize(300, 10));
    EXPECT_EQ(describe(child->frame()), "100 0 100 10");
}

TEST(NSViewAutoresizing, ThePixelGridIsThatOfTheRootView)
{
    for (const bool flipped : {false, true}) {
        SCOPED_TRACE(flipped ? "flipped" : "upright");
        Log log;
        const auto root = make<NSView>(NSMakeRect(0, 0, 200, 200));
        const auto parent = make<RecordingView>(NSMakeRect(0.25, 0.25, 100, 99.5), "parent", log);
        parent->flipped = flipped;
        const auto child = make<NSView>(NSMakeRect(10, 10, 10, 10));
        child->setAutoresizingMask(NSViewMinXMargin | NSViewMinYMargin);
        root->addSubview(parent);
        parent->addSubview(child);
        parent->setFrameSize(NSMakeSize(105, 104.5));
        // Pixels begin at 0.75 of each point of the superview, from the left, the bottom and the top.
        EXPECT_EQ(describe(child->frame()), "14.75 14.75 10 10");
    }
}

TEST(NSViewAutoresizing, PartsOfZeroLengthShareEvenly)
{
    const auto parent = make<NSView>(NSMakeRect(0, 0, 30, 30));
    const auto child = make<NSView>(NSMakeRect(0, 0, 30, 30));
    child->setAutoresizingMask(NSViewMinXMargin | NSViewMaxXMargin | NSViewHeightSizable);
    parent->addSubview(child);
    parent->setFrameSize(NSMakeSize(50, 0));
    EXPECT_EQ(describe(child->frame()), "10 0 30 0");
    parent->setFrameSize(NSMakeSize(50, 20));
    EXPECT_EQ(describe(child->frame()), "10 0 30 20");
}

TEST(NSViewAutoresizing, ItCanBeDisabled)
{
    const auto parent = make<NSView>(NSMakeRect(0, 0, 100, 100));
    const auto child = make<NSView>(NSMakeRect(0, 0, 100, 100));
    child->setAutoresizingMask(NSViewWidthSizable);
    parent->addSubview(child);
    EXPECT_TRUE(parent->autoresizesSubviews());
    parent->setAutoresizesSubviews(false);
    parent->setFrameSize(NSMakeSize(50, 50));
    EXPECT_EQ(describe(child->frame()), "0 0 100 100");
}

TEST(NSViewAutoresizing, AScaledSuperviewResizesInItsBoundsCoordinates)
{
    const auto parent = make<NSView>(NSMakeRect(0, 0, 100, 100));
    parent->setBounds(NSMakeRect(100, 100, 50, 50));
    const auto child = make<NSView>(NSMakeRect(110, 110, 30, 30));
    child->setAutoresizingMask(NSViewWidthSizable | NSViewMinYMargin);
    parent->addSubview(child);
    parent->setFrameSize(NSMakeSize(120, 120));
    EXPECT_EQ(describe(child->frame()), "110 120 40 30");
}

} // namespace
