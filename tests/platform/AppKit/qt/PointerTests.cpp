#include "Foundation/testing/ManualClock.h"
#include "RecordedWindow.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSCursor.h>
#include <AppKit/NSTrackingArea.h>
#include <QMouseEvent>
#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>
#include <gtest/gtest.h>

// The pointer without a button, its cursor, and the keyboard focus, from Qt's side.

namespace {

class Pointer : public RecordedWindow {
protected:
    void SetUp() override
    {
        RecordedWindow::SetUp();
        makeKey(window);
    }
    void TearDown() override { NSCursor::arrowCursor()->set(); }

    void makeKey(NSWindow* shown)
    {
        shown->makeKeyAndOrderFront();
        ASSERT_TRUE(serveUntil([&] { return shown->isKeyWindow(); }));
        QCoreApplication::processEvents();
        log.clear();
    }
    void track(NSTrackingAreaOptions options)
    {
        view->addTrackingArea(make<NSTrackingArea>(NSMakeRect(0, 0, 50, 30), options, view));
    }
    void moveTo(QPointF place)
    {
        QMouseEvent event(QEvent::MouseMove, place.toPoint(), place, widget->mapToGlobal(place), Qt::NoButton,
            Qt::NoButton, {});
        QCoreApplication::sendEvent(widget, &event);
    }
    void enter(QPointF place)
    {
        QEnterEvent event(place, place, widget->mapToGlobal(place));
        QCoreApplication::sendEvent(widget, &event);
    }
    void leave()
    {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(widget, &event);
    }
};

TEST_F(Pointer, MovesEntersAndLeaves)
{
    track(NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved | NSTrackingActiveAlways);
    enter({5, 5});
    moveTo({25, 85});
    moveTo({26.5, 84.25});
    leave();
    ASSERT_EQ(log.size(), 4u);
    log[3] = log[3].substr(0, 11); // the place of the real pointer is any
    EXPECT_EQ(
        log, (Log{"view entered 5 5 x0", "view moved 5 5 x0", "view moved 6.5 5.75 x0", "view exited"}));
}

TEST_F(Pointer, EntersWithTheWindowWithoutAFurtherMove)
{
    track(NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways);
    enter({25, 85});
    EXPECT_EQ(log, Log{"view entered 5 5 x0"});
    EXPECT_EQ(NSApp->currentEvent()->type(), NSEventTypeMouseMoved);
    EXPECT_EQ(NSApp->currentEvent()->clickCount(), 0);
    EXPECT_EQ(NSApp->currentEvent()->pressure(), 0);
}

TEST_F(Pointer, AreasOfTheKeyWindowFollowTheKeyboardFocus)
{
    track(NSTrackingMouseEnteredAndExited | NSTrackingActiveInKeyWindow);
    moveTo({25, 85});
    const auto other = shownWindow(NSMakeRect(200, 200, 50, 50), make<NSView>().get());
    makeKey(other);
    moveTo({26, 85});
    EXPECT_EQ(log, Log{});
    window->makeKeyWindow();
    ASSERT_TRUE(serveUntil([&] { return window->isKeyWindow(); }));
    EXPECT_EQ(log, Log{"view entered 6 5 x0"});
    log.clear();
    other->makeKeyAndOrderFront();
    ASSERT_TRUE(serveUntil([&] { return other->isKeyWindow(); }));
    EXPECT_EQ(log, Log{"view exited 6 5 x0"});
}

TEST_F(Pointer, AreasOfTheActiveApplicationAreInEveryWindow)
{
    track(NSTrackingMouseEnteredAndExited); // never active
    track(NSTrackingMouseEnteredAndExited | NSTrackingActiveInActiveApp);
    const auto other = shownWindow(NSMakeRect(200, 200, 50, 50), make<NSView>().get());
    makeKey(other);
    moveTo({25, 85});
    EXPECT_EQ(log, Log{"view entered 5 5 x0"});
}

TEST_F(Pointer, TheWindowSystemShowsTheCursor)
{
    class Link : public NSView {
    public:
        using NSView::NSView;
        void resetCursorRects() override { addCursorRect(bounds(), NSCursor::pointingHandCursor()); }
    };
    root->addSubview(make<Link>(NSMakeRect(0, 0, 10, 10)));
    EXPECT_EQ(widget->cursor().shape(), Qt::ArrowCursor);
    moveTo({5, 95});
    EXPECT_EQ(widget->cursor().shape(), Qt::PointingHandCursor);
    moveTo({50, 95});
    EXPECT_EQ(widget->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(Pointer, EveryCursorHasItsShape)
{
    const std::pair<NSCursor*, Qt::CursorShape> cursors[] = {{NSCursor::arrowCursor(), Qt::ArrowCursor},
        {NSCursor::IBeamCursor(), Qt::IBeamCursor}, {NSCursor::crosshairCursor(), Qt::CrossCursor},
        {NSCursor::closedHandCursor(), Qt::ClosedHandCursor},
        {NSCursor::openHandCursor(), Qt::OpenHandCursor},
        {NSCursor::pointingHandCursor(), Qt::PointingHandCursor},
        {NSCursor::resizeLeftRightCursor(), Qt::SizeHorCursor},
        {NSCursor::resizeUpDownCursor(), Qt::SizeVerCursor},
        {NSCursor::operationNotAllowedCursor(), Qt::ForbiddenCursor}};
    for (const auto& [cursor, shape] : cursors) {
        cursor->set();
        EXPECT_EQ(widget->cursor().shape(), shape);
    }
}

// Presses in a window that is not the key window.

class FirstMouseView : public RecordingView {
public:
    using RecordingView::RecordingView;
    bool acceptsFirst = true;
    RetainPtr<NSEvent> askedWith;
    bool acceptsFirstMouse(NSEvent* event) override
    {
        askedWith = event;
        return acceptsFirst;
    }
};

class FirstMouse : public Pointer {
protected:
    RetainPtr<FirstMouseView> background = make<FirstMouseView>(NSMakeRect(0, 0, 50, 50), "background", log);
    RetainPtr<NSWindow> other;

    void SetUp() override
    {
        Pointer::SetUp();
        root->addSubview(background);
        other = shownWindow(NSMakeRect(200, 200, 50, 50), make<NSView>().get());
        makeKey(other);
    }
    void click() const
    {
        QTest::mousePress(widget, Qt::LeftButton, {}, {5, 95});
        QTest::mouseRelease(widget, Qt::LeftButton, {}, {5, 95});
    }
};

TEST_F(FirstMouse, MakesTheWindowKeyAndReachesAViewThatAcceptsIt)
{
    click();
    EXPECT_EQ(log, (Log{"background down 5 5 x1", "background up 5 5 x1"}));
    EXPECT_EQ(background->askedWith->type(), NSEventTypeLeftMouseDown);
    EXPECT_TRUE(serveUntil([&] { return window->isKeyWindow(); }));
}

TEST_F(FirstMouse, OnlyMakesTheWindowKeyIfTheViewRefusesIt)
{
    const ManualClock clock; // the second click follows at once, as that of a double click
    background->acceptsFirst = false;
    background->acceptsKeys = true;
    click();
    EXPECT_EQ(log, Log{});
    EXPECT_EQ(window->firstResponder(), window);
    ASSERT_TRUE(serveUntil([&] { return window->isKeyWindow(); }));
    background->askedWith = nullptr;
    click();
    EXPECT_EQ(log, (Log{"background becomes", "background down 5 5 x2", "background up 5 5 x2"}));
    EXPECT_FALSE(background->askedWith);
}

TEST_F(FirstMouse, IsNotAskedForInAWindowThatIsNotOnScreen)
{
    background->acceptsFirst = false;
    window->orderOut();
    log.clear();
    const auto event = NSEvent::mouseEventWithType(
        NSEventTypeLeftMouseDown, NSMakePoint(5, 5), 0, 0, window->windowNumber(), nullptr, 0, 1, 1);
    window->sendEvent(event);
    EXPECT_EQ(log, Log{"background down 5 5 x1"});
}

// The keyboard focus.

TEST_F(Pointer, TabAndShiftTabMoveTheFocus)
{
    class Quiet : public NSView {
        bool acceptsFirstResponder() const override { return true; }
    };
    const auto first = make<Quiet>();
    const auto second = make<Quiet>();
    root = nullptr;
    const auto content = make<NSView>();
    content->addSubview(first);
    content->addSubview(second);
    window->setContentView(content);
    QTest::keyClick(widget, Qt::Key_Tab);
    EXPECT_EQ(window->firstResponder(), first);
    QTest::keyClick(widget, Qt::Key_Tab);
    EXPECT_EQ(window->firstResponder(), second);
    QTest::keyClick(widget, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(window->firstResponder(), first);
}

TEST_F(Pointer, TheFirstResponderIsRedrawnWhenTheWindowBecomesOrResignsKey)
{
    class StatusWindow : public NSWindow {
    public:
        using NSWindow::NSWindow;
        Log changes;
        void becomeKeyWindow() override
        {
            changes.emplace_back(isKeyWindow() ? "becomes key" : "becomes key too late");
            NSWindow::becomeKeyWindow();
        }
        void resignKeyWindow() override
        {
            changes.emplace_back(isKeyWindow() ? "resigns key too early" : "resigns key");
            NSWindow::resignKeyWindow();
        }
    };
    const auto status =
        make<StatusWindow>(NSMakeRect(0, 0, 60, 60), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
    view->acceptsKeys = true;
    status->setContentView(view);
    status->makeFirstResponder(view);
    makeKey(status);
    EXPECT_EQ(status->changes, Log{"becomes key"});
    window->makeKeyWindow();
    ASSERT_TRUE(serveUntil([&] { return window->isKeyWindow() && view->needsDisplay() == false; }));
    EXPECT_EQ(status->changes, (Log{"becomes key", "resigns key"}));
    EXPECT_EQ(log, Log{"view draws 0 0 60 60"});
}

} // namespace
