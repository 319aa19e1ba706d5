#include <AppKit/NSCursor.h>

#include "RecordingView.h"

#include <AppKit/NSTrackingArea.h>
#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

#include <set>

namespace {

/// A view whose left half, or whole, has a cursor.
class CursorView : public NSView {
public:
    CursorView(NSRect frame, NSCursor* cursor)
        : NSView(frame)
        , cursor(cursor)
    {
    }
    RetainPtr<NSCursor> cursor;
    bool isWhole = false;
    int resets = 0;
    void resetCursorRects() override
    {
        ++resets;
        const CGFloat width = bounds().size.width;
        addCursorRect(NSMakeRect(0, 0, isWhole ? width : width / 2, bounds().size.height), cursor);
    }
};

class CursorRects : public testing::Test {
protected:
    RetainPtr<NSWindow> window = make<NSWindow>(
        NSMakeRect(0, 0, 100, 100), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    RetainPtr<CursorView> view = make<CursorView>(NSMakeRect(0, 0, 40, 40), NSCursor::pointingHandCursor());

    CursorRects()
    {
        NSCursor::arrowCursor()->set();
        window->contentView()->addSubview(view);
    }
    void send(NSEventType type, CGFloat x, CGFloat y) const
    {
        const auto event = NSEvent::mouseEventWithType(
            type, NSMakePoint(x, y), 0, 0, window->windowNumber(), nullptr, 0, 0, 0);
        window->sendEvent(event);
    }
    NSCursor* cursorAt(CGFloat x, CGFloat y) const
    {
        send(NSEventTypeMouseMoved, x, y);
        return NSCursor::currentCursor();
    }
};

} // namespace

TEST(NSCursor, ThereAreNineDifferentOnes)
{
    const std::set<NSCursor*> cursors{NSCursor::arrowCursor(), NSCursor::IBeamCursor(),
        NSCursor::crosshairCursor(), NSCursor::closedHandCursor(), NSCursor::openHandCursor(),
        NSCursor::pointingHandCursor(), NSCursor::resizeLeftRightCursor(), NSCursor::resizeUpDownCursor(),
        NSCursor::operationNotAllowedCursor()};
    EXPECT_EQ(cursors.size(), 9u);
    EXPECT_EQ(NSCursor::IBeamCursor(), NSCursor::IBeamCursor());
}

TEST(NSCursor, TheOneThatWasSetIsCurrent)
{
    NSCursor::crosshairCursor()->set();
    EXPECT_EQ(NSCursor::currentCursor(), NSCursor::crosshairCursor());
    NSCursor::arrowCursor()->set();
    EXPECT_EQ(NSCursor::currentCursor(), NSCursor::arrowCursor());
}

TEST_F(CursorRects, SetTheCursorWhileThePointerIsInThem)
{
    EXPECT_EQ(cursorAt(50, 50), NSCursor::arrowCursor());
    EXPECT_EQ(cursorAt(19, 10), NSCursor::pointingHandCursor());
    EXPECT_EQ(cursorAt(21, 10), NSCursor::arrowCursor());
}

TEST_F(CursorRects, OfSubviewsCoverThoseOfSuperviewsAndLaterOnesEarlierOnes)
{
    view->isWhole = true;
    const auto inner = make<CursorView>(NSMakeRect(0, 0, 20, 20), NSCursor::IBeamCursor());
    view->addSubview(inner);
    EXPECT_EQ(cursorAt(5, 5), NSCursor::IBeamCursor());
    EXPECT_EQ(cursorAt(15, 5), NSCursor::pointingHandCursor());
    view->addCursorRect(NSMakeRect(10, 0, 10, 10), NSCursor::crosshairCursor());
    EXPECT_EQ(cursorAt(16, 5), NSCursor::crosshairCursor());
    // A view without a cursor hides those below it that are not its superviews'.
    window->contentView()->addSubview(make<NSView>(NSMakeRect(0, 0, 40, 40)));
    EXPECT_EQ(cursorAt(5, 5), NSCursor::arrowCursor());
}

TEST_F(CursorRects, AreResetWhenTheViewsPlaceChangesOrTheyAreInvalidated)
{
    cursorAt(5, 5);
    cursorAt(6, 5);
    EXPECT_EQ(view->resets, 1);
    view->setFrameSize(NSMakeSize(60, 40));
    EXPECT_EQ(cursorAt(29, 10), NSCursor::pointingHandCursor());
    EXPECT_EQ(view->resets, 2);
    view->cursor = NSCursor::IBeamCursor();
    EXPECT_EQ(cursorAt(28, 10), NSCursor::pointingHandCursor());
    window->invalidateCursorRectsForView(view);
    window->invalidateCursorRectsForView(nullptr);
    EXPECT_EQ(cursorAt(28, 10), NSCursor::IBeamCursor());
    EXPECT_EQ(view->resets, 3);
    // The old rectangles are gone.
    view->setFrameSize(NSMakeSize(20, 40));
    EXPECT_EQ(cursorAt(15, 10), NSCursor::arrowCursor());
}

TEST_F(CursorRects, ACursorThatAViewSetsStaysUntilTheReleaseOfTheButton)
{
    EXPECT_EQ(cursorAt(5, 5), NSCursor::pointingHandCursor());
    send(NSEventTypeLeftMouseDown, 5, 5);
    NSCursor::closedHandCursor()->set();
    send(NSEventTypeLeftMouseDragged, 80, 80);
    EXPECT_EQ(NSCursor::currentCursor(), NSCursor::closedHandCursor());
    send(NSEventTypeLeftMouseDragged, 6, 5);
    send(NSEventTypeLeftMouseUp, 6, 5);
    EXPECT_EQ(NSCursor::currentCursor(), NSCursor::pointingHandCursor());
}

TEST_F(CursorRects, ComeBackAfterThePointerHasLeftTheWindow)
{
    EXPECT_EQ(cursorAt(5, 5), NSCursor::pointingHandCursor());
    const auto exit = NSEvent::enterExitEventWithType(
        NSEventTypeMouseExited, NSMakePoint(-5, 5), 0, 0, window->windowNumber(), nullptr);
    window->sendEvent(exit);
    NSCursor::arrowCursor()->set(); // as another window does
    EXPECT_EQ(cursorAt(5, 5), NSCursor::pointingHandCursor());
}

TEST_F(CursorRects, ATrackingAreaMayAskItsOwnerForTheCursor)
{
    class Owner : public NSResponder {
    public:
        int updates = 0;
        void cursorUpdate(NSEvent* event) override
        {
            ++updates;
            EXPECT_EQ(event->type(), NSEventTypeCursorUpdate);
            NSCursor::resizeLeftRightCursor()->set();
        }
    };
    const auto owner = make<Owner>();
    view->addTrackingArea(make<NSTrackingArea>(
        NSMakeRect(30, 0, 10, 40), NSTrackingCursorUpdate | NSTrackingActiveAlways, owner));
    EXPECT_EQ(cursorAt(35, 5), NSCursor::resizeLeftRightCursor());
    cursorAt(36, 5);
    EXPECT_EQ(owner->updates, 1);
    EXPECT_EQ(cursorAt(25, 5), NSCursor::arrowCursor());
    EXPECT_EQ(cursorAt(36, 5), NSCursor::resizeLeftRightCursor());
    EXPECT_EQ(owner->updates, 2);
}

TEST_F(CursorRects, ARequestThatNobodyHandlesSetsTheArrow)
{
    EXPECT_EQ(cursorAt(5, 5), NSCursor::pointingHandCursor());
    view->addTrackingArea(make<NSTrackingArea>(
        NSMakeRect(30, 0, 10, 40), NSTrackingCursorUpdate | NSTrackingActiveAlways, view));
    EXPECT_EQ(cursorAt(35, 5), NSCursor::arrowCursor());
}
