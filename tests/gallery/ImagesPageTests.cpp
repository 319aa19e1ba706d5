#include "PageNamed.h"
#include "support/Rendering.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <QuartzCore/CALayer.h>

#include <gtest/gtest.h>

namespace {

/// The page of images in a window.
class ImagesPage : public testing::Test {
protected:
    enum Card { Part, Interpolation, Compositing, Layers };

    ImagesPage() { window->contentView()->addSubview(page); }

    NSView* card(Card card) const { return page->subviews()[card]; }

    /// Presses the mouse at a point of a view, and drags it to another one.
    void drag(NSView* view, NSPoint from, NSPoint to) const
    {
        const auto send = [&](NSEventType type, NSPoint point) {
            const auto event = NSEvent::mouseEventWithType(type, view->convertPointToView(point, nullptr), 0,
                0, window->windowNumber(), nullptr, 0, 1, 1);
            window->sendEvent(event);
        };
        send(NSEventTypeLeftMouseDown, from);
        send(NSEventTypeLeftMouseDragged, to);
        send(NSEventTypeLeftMouseUp, to);
    }

    static Rendering draw(NSView* view)
    {
        Rendering rendering(int(view->bounds().size.width), int(view->bounds().size.height));
        rendering.draw(view);
        return rendering;
    }

    RetainPtr<NSView> page = makePageNamed("images");
    RetainPtr<NSWindow> window =
        make<NSWindow>(page->frame(), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
};

} // namespace

// Cards are 180 x 180; pictures lie between 12 and 168, and from 32 to 168 upward.

TEST_F(ImagesPage, ADragMovesTheFrameOfThePart)
{
    NSView* view = card(Part);
    takeDisplayMark(view);
    // The whole is a square of 72 points, from (12, 64) on. Its lower left corner is transparent.
    drag(view, {50, 90}, {12, 64});
    EXPECT_TRUE(takeDisplayMark(view));
    const auto atCorner = draw(view);
    EXPECT_EQ(atCorner.at(12.5, 64.5), atCorner.at(168 - 0.5, 64.5)) << "two frames in one colour";
    EXPECT_NE(atCorner.at(12.5, 64.5), atCorner.at(4, 64.5)) << "on a card in another one";
    EXPECT_EQ(atCorner.at(12.5 + 21, 70), atCorner.at(12.5, 64.5)) << "0.3 x 72 wide";
    EXPECT_EQ(atCorner.at(100, 68), atCorner.at(4, 64.5)) << "the part's corner is transparent";

    drag(view, {12, 64}, {48, 100});
    const auto inMiddle = draw(view);
    EXPECT_EQ(inMiddle.at(12.5, 64.5), inMiddle.at(4, 64.5));
    EXPECT_NE(inMiddle.at(100, 68), inMiddle.at(4, 64.5)) << "the part is in the ball";
}

TEST_F(ImagesPage, ResamplesWithoutAndWithMixedColours)
{
    const auto rendering = draw(card(Interpolation));
    // 16 pixels on 44 points: neighbours within a pixel are equal where nothing is mixed.
    const auto changes = [&](CGFloat left) {
        int count = 0;
        for (int x = 1; x < 44; ++x)
            count += rendering.at(left + x, 135) != rendering.at(left + x - 1, 135);
        return count;
    };
    EXPECT_LE(changes(12), 15);
    EXPECT_GT(changes(68), 20);
    EXPECT_GT(changes(124), 20);
}

TEST_F(ImagesPage, ADragSetsTheAlphaOfTheImageAbove)
{
    NSView* view = card(Compositing);
    takeDisplayMark(view);
    // The middle of the picture "over", where the disc and the square are.
    const NSPoint place{34, 146};
    drag(view, {90, 100}, {4, 100}); // left of the pictures: 0
    EXPECT_TRUE(takeDisplayMark(view));
    const auto blue = draw(view).at(place.x, place.y);
    EXPECT_GT(blue.bytes[2], blue.bytes[0]);
    drag(view, {90, 100}, {176, 100});
    const auto orange = draw(view).at(place.x, place.y);
    EXPECT_GT(orange.bytes[0], orange.bytes[2] + 80);
    drag(view, {90, 100}, {90, 100});
    const auto mixed = draw(view).at(place.x, place.y);
    EXPECT_NEAR(mixed.bytes[0], (blue.bytes[0] + orange.bytes[0]) / 2.0, 2);
    EXPECT_NEAR(mixed.bytes[2], (blue.bytes[2] + orange.bytes[2]) / 2.0, 2);
}

TEST_F(ImagesPage, ADragMovesTheFrontLayerWithinItsView)
{
    NSView* view = card(Layers)->subviews().front();
    const auto& layers = view->layer()->sublayers();
    ASSERT_EQ(layers.size(), 3u);
    const CGRect behind = layers[1]->frame();
    const NSSize size = view->bounds().size;
    drag(view, {1, 1}, {-50, size.height + 50});
    const CGRect front = layers[2]->frame();
    EXPECT_EQ(front.origin.x, 0);
    EXPECT_EQ(CGRectGetMaxY(front), size.height);
    EXPECT_TRUE(CGRectEqualToRect(layers[1]->frame(), behind));
}
