#include "Foundation/testing/ManualClock.h"
#include "RecordedWindow.h"

#include <AppKit/NSApplication.h>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QToolTip>
#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>
#include <gtest/gtest.h>

namespace {

class WindowEvents : public RecordedWindow {
protected:
    void press(int x, int y, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(widget, button, {}, {x, y});
    }
    void release(int x, int y, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(widget, button, {}, {x, y});
    }
    void click(int x, int y)
    {
        press(x, y);
        release(x, y);
    }
    /// A move with buttons held, at a place with fractions, as an X server's arrives: its widget position is
    /// rounded, its scene position is not.
    void drag(QPointF exact, Qt::MouseButtons buttons)
    {
        const QPointF rounded = exact.toPoint();
        QMouseEvent event(
            QEvent::MouseMove, rounded, exact, widget->mapToGlobal(exact), Qt::NoButton, buttons, {});
        QCoreApplication::sendEvent(widget, &event);
    }
};

TEST_F(WindowEvents, PressesArriveInTheViewsCoordinates)
{
    press(25, 85);
    drag({30, 80}, Qt::LeftButton);
    release(30, 80);
    EXPECT_EQ(log, (Log{"view down 5 5 x1", "view dragged 10 10 x1", "view up 10 10 x1"}));
}

TEST_F(WindowEvents, TheFractionOfARealMousesPlaceIsKept)
{
    press(25, 85);
    drag({30.25, 79.5}, Qt::LeftButton);
    release(30, 80);
    EXPECT_EQ(log[1], "view dragged 10.25 10.5 x1");
}

TEST_F(WindowEvents, APlaceMadeForAChildWidgetIsNotMisread)
{
    // The event's scene position is far off what it should be: then only the position counts.
    QMouseEvent event(QEvent::MouseButtonPress, QPointF(25, 85), QPointF(5, 5),
        widget->mapToGlobal(QPointF(25, 85)), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(widget, &event);
    EXPECT_EQ(log, Log{"view down 5 5 x1"});
    release(25, 85);
}

TEST_F(WindowEvents, AViewIsFollowedOutOfTheWindow)
{
    press(25, 85);
    drag({-300, 900}, Qt::LeftButton);
    release(-300, 900);
    EXPECT_EQ(log, (Log{"view down 5 5 x1", "view dragged -320 -810 x1", "view up -320 -810 x1"}));
}

TEST_F(WindowEvents, EachButtonHasItsEvents)
{
    RetainPtr<NSEvent> seen;
    press(25, 85, Qt::RightButton);
    drag({26, 85}, Qt::RightButton);
    release(26, 85, Qt::RightButton);
    press(25, 85, Qt::MiddleButton);
    EXPECT_EQ(NSApp->currentEvent()->buttonNumber(), 2);
    drag({26, 85}, Qt::MiddleButton);
    release(26, 85, Qt::MiddleButton);
    press(25, 85, Qt::BackButton);
    EXPECT_EQ(NSApp->currentEvent()->buttonNumber(), 3);
    release(25, 85, Qt::BackButton);
    EXPECT_EQ(log,
        (Log{"view right down 5 5 x1", "view right dragged 6 5 x1", "view right up 6 5 x1",
            "view other down 5 5 x1", "view other dragged 6 5 x1", "view other up 6 5 x1",
            "view other down 5 5 x1", "view other up 5 5 x1"}));
}

TEST_F(WindowEvents, MovesWithoutAButtonReachNoViewThatDoesNotTrackThem)
{
    drag({30, 80}, Qt::NoButton);
    EXPECT_EQ(log, Log{});
}

TEST_F(WindowEvents, ModifiersAndTimeAreThoseOfTheEvent)
{
    const ManualClock clock(1234.5);
    QTest::mousePress(widget, Qt::LeftButton, Qt::ShiftModifier | Qt::MetaModifier, {25, 85});
    const RetainPtr<NSEvent> event = NSApp->currentEvent();
    QTest::mouseRelease(widget, Qt::LeftButton, {}, {25, 85});
    EXPECT_EQ(event->modifierFlags(), NSEventModifierFlagShift | NSEventModifierFlagCommand);
    EXPECT_EQ(event->timestamp(), 1234.5);
    EXPECT_EQ(event->window(), window);
    EXPECT_EQ(event->pressure(), 1);
    EXPECT_EQ(NSApp->currentEvent()->pressure(), 0);
    EXPECT_EQ(NSApp->currentEvent()->modifierFlags(), 0U);
    EXPECT_EQ(NSApp->currentEvent()->eventNumber(), event->eventNumber());
}

// Clicks are counted by the window, by its own clock.

TEST_F(WindowEvents, ClicksInQuickSuccessionAreCounted)
{
    ManualClock clock(1000);
    for (int i = 0; i < 3; ++i) {
        click(25, 85);
        clock.advance(NSEvent::doubleClickInterval());
    }
    EXPECT_EQ(log,
        (Log{"view down 5 5 x1", "view up 5 5 x1", "view down 5 5 x2", "view up 5 5 x2", "view down 5 5 x3",
            "view up 5 5 x3"}));
}

TEST_F(WindowEvents, ASecondPressThatQtCallsADoubleClickIsAPress)
{
    const ManualClock clock(1000);
    click(25, 85);
    QMouseEvent event(QEvent::MouseButtonDblClick, QPointF(25, 85), QPointF(25, 85),
        widget->mapToGlobal(QPointF(25, 85)), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(widget, &event);
    release(25, 85);
    click(25, 85);
    EXPECT_EQ(log,
        (Log{"view down 5 5 x1", "view up 5 5 x1", "view down 5 5 x2", "view up 5 5 x2", "view down 5 5 x3",
            "view up 5 5 x3"}));
}

TEST_F(WindowEvents, ALateADistantOrAnotherButtonsPressIsAFirstOne)
{
    ManualClock clock(1000);
    click(25, 85);
    clock.advance(NSEvent::doubleClickInterval() + 0.001);
    click(25, 85);
    click(29, 81);
    click(34, 81);
    press(34, 81, Qt::RightButton);
    release(34, 81, Qt::RightButton);
    click(34, 81);
    EXPECT_EQ(log,
        (Log{"view down 5 5 x1", "view up 5 5 x1", "view down 5 5 x1", "view up 5 5 x1", "view down 9 9 x2",
            "view up 9 9 x2", "view down 14 9 x1", "view up 14 9 x1", "view right down 14 9 x1",
            "view right up 14 9 x1", "view down 14 9 x1", "view up 14 9 x1"}));
}

// The wheel.

TEST_F(WindowEvents, TheWheelScrollsByLinesAndATouchPadByPoints)
{
    const auto turn = [&](QPoint pixels, QPoint eighthsOfDegrees) {
        const QPointF at(25.5, 85);
        QWheelEvent event(at, widget->mapToGlobal(at), pixels, eighthsOfDegrees, Qt::NoButton,
            Qt::ShiftModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(widget, &event);
    };
    const int lines = QApplication::wheelScrollLines();
    QApplication::setWheelScrollLines(3);
    turn({}, {0, 120});
    turn({}, {40, -120});
    turn({6, -7}, {48, -56});
    turn({}, {});
    QApplication::setWheelScrollLines(lines);
    EXPECT_EQ(log,
        (Log{"view scrolls 0 3 lines 5.5 5", "view scrolls 1 -3 lines 5.5 5",
            "view scrolls 6 -7 points 5.5 5"}));
    EXPECT_EQ(NSApp->currentEvent()->modifierFlags(), NSEventModifierFlagShift);
}

// Following the mouse from within a handler.

TEST_F(WindowEvents, RealEventsReachATrackingLoop)
{
    const auto post = [&](QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons buttons) {
        QCoreApplication::postEvent(
            widget, new QMouseEvent(type, at, at, widget->mapToGlobal(at), button, buttons, {}));
    };
    view->onMouseDown = [&](NSEvent*) {
        const auto deadline = NSDate::dateWithTimeIntervalSinceReferenceDate(CFAbsoluteTimeGetCurrent() + 10);
        while (const auto event =
                   NSApp->nextEventMatchingMask(NSEventMaskLeftMouseDragged | NSEventMaskLeftMouseUp,
                       deadline.get(), NSEventTrackingRunLoopMode, true)) {
            log.push_back("tracks " + describe(event->locationInWindow()));
            if (event->type() == NSEventTypeLeftMouseUp)
                return;
            post(QEvent::MouseButtonRelease, {31, 80}, Qt::LeftButton, Qt::NoButton);
        }
        log.emplace_back("gave up");
    };
    // In Qt's queue before the press, as a fast hand's are.
    post(QEvent::MouseMove, {30, 80}, Qt::NoButton, Qt::LeftButton);
    press(25, 85);
    EXPECT_EQ(log, (Log{"view down 5 5 x1", "tracks 30 20", "tracks 31 20"}));
}

// The keyboard.

TEST_F(WindowEvents, KeysArriveWithTheirCharacters)
{
    view->acceptsKeys = true;
    window->makeFirstResponder(view);
    log.clear();
    const auto send = [&](QEvent::Type type, Qt::Key key, Qt::KeyboardModifiers modifiers, const char* text,
                          bool repeats = false) {
        QKeyEvent event(type, key, modifiers, QString::fromUtf8(text), repeats);
        QCoreApplication::sendEvent(widget, &event);
    };
    send(QEvent::KeyPress, Qt::Key_A, Qt::ShiftModifier, "A");
    const RetainPtr<NSEvent> down = NSApp->currentEvent();
    send(QEvent::KeyRelease, Qt::Key_A, Qt::ShiftModifier, "A");
    EXPECT_EQ(log, (Log{"view key A", "view key up A"}));
    EXPECT_EQ(down->charactersIgnoringModifiers(), "A");
    EXPECT_EQ(down->modifierFlags(), NSEventModifierFlagShift);
    EXPECT_EQ(down->window(), window);
    EXPECT_FALSE(down->isARepeat());

    send(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier, "\x03", true);
    EXPECT_EQ(NSApp->currentEvent()->characters(), "\x03");
    EXPECT_EQ(NSApp->currentEvent()->charactersIgnoringModifiers(), "c");
    EXPECT_TRUE(NSApp->currentEvent()->isARepeat());
}

TEST_F(WindowEvents, KeysWithoutACharacterHaveOneOfTheirOwn)
{
    const std::pair<Qt::Key, char16_t> keys[] = {{Qt::Key_Up, 0xF700}, {Qt::Key_Down, 0xF701},
        {Qt::Key_Left, 0xF702}, {Qt::Key_Right, 0xF703}, {Qt::Key_F1, 0xF704}, {Qt::Key_F12, 0xF70F},
        {Qt::Key_Insert, 0xF727}, {Qt::Key_Delete, 0xF728}, {Qt::Key_Home, 0xF729}, {Qt::Key_End, 0xF72B},
        {Qt::Key_PageUp, 0xF72C}, {Qt::Key_PageDown, 0xF72D}, {Qt::Key_Return, 0x0D}, {Qt::Key_Enter, 0x03},
        {Qt::Key_Tab, 0x09}, {Qt::Key_Backtab, 0x19}, {Qt::Key_Escape, 0x1B}, {Qt::Key_Backspace, 0x7F}};
    for (const auto& [key, character] : keys) {
        QTest::keyPress(widget, key);
        EXPECT_EQ(NSApp->currentEvent()->characters(), NSString(std::u16string_view(&character, 1))) << key;
    }
}

TEST_F(WindowEvents, AModifierAloneIsNotAKey)
{
    const RetainPtr<NSEvent> before = NSApp->currentEvent();
    QTest::keyPress(widget, Qt::Key_Shift);
    EXPECT_EQ(NSApp->currentEvent(), before);
}

// Tool tips.

class ToolTips : public WindowEvents {
protected:
    ~ToolTips() override { QToolTip::hideText(); }

    /// Rests the pointer at a place and returns the text that is shown.
    std::string tipAt(int x, int y)
    {
        const QPoint place(x, y);
        QHelpEvent event(QEvent::ToolTip, place, widget->mapToGlobal(place));
        QCoreApplication::sendEvent(widget, &event);
        return QToolTip::isVisible() ? QToolTip::text().toStdString() : "";
    }
};

TEST_F(ToolTips, TheViewUnderThePointerDecides)
{
    root->setToolTip("the root's");
    EXPECT_EQ(tipAt(25, 85), "the root's");
    view->setToolTip("the view's");
    EXPECT_EQ(tipAt(25, 85), "the view's");
    EXPECT_EQ(tipAt(5, 5), "the root's");
    view->setHidden(true);
    EXPECT_EQ(tipAt(25, 85), "the root's");
}

TEST_F(ToolTips, AnEmptyTextShowsNothing)
{
    EXPECT_EQ(tipAt(25, 85), "");
    view->setToolTip("text");
    EXPECT_EQ(tipAt(25, 85), "text");
    view->setToolTip("");
    EXPECT_TRUE(serveUntil([&] { return tipAt(25, 85).empty(); }));
}

TEST_F(ToolTips, TextThatLooksLikeHTMLIsShownLiterally)
{
    view->setToolTip("<b>bold</b> & more");
    EXPECT_EQ(tipAt(25, 85), "<p>&lt;b&gt;bold&lt;/b&gt; &amp; more</p>");
    view->setToolTip("a < b & c\nnext line");
    EXPECT_EQ(tipAt(25, 85), "a < b & c\nnext line");
}

// Closing, moving, focus.

TEST_F(WindowEvents, TheCloseButtonAsksTheDelegate)
{
    class Judge : public NSWindowDelegate {
    public:
        bool allows = false;
        bool windowShouldClose(NSWindow*) override { return allows; }
    } judge;
    window->setDelegate(&judge);
    EXPECT_FALSE(widget->close());
    EXPECT_TRUE(window->isVisible());
    judge.allows = true;
    widget->close();
    EXPECT_FALSE(window->isVisible());
    window->setDelegate(nullptr);
}

TEST_F(WindowEvents, AWindowMayBeDestroyedFromItsOwnHandlers)
{
    view->onMouseDown = [&](NSEvent*) { window = nullptr; };
    press(25, 85);
    EXPECT_FALSE(window);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(WindowEvents, AUsersResizeResizesTheViews)
{
    view->setAutoresizingMask(NSViewWidthSizable);
    widget->resize(120, 90);
    widget->move(60, 70);
    EXPECT_TRUE(serveUntil([&] { return NSEqualRects(root->frame(), NSMakeRect(0, 0, 120, 90)); }));
    EXPECT_EQ(describe(view->frame()), "20 10 70 30");
    const int screenHeight = widget->screen()->geometry().height();
    EXPECT_EQ(describe(window->convertPointToScreen(NSZeroPoint)),
        describe(NSMakePoint(widget->geometry().x(), screenHeight - widget->geometry().y() - 90)));
}

TEST_F(WindowEvents, AUserCannotMakeTheContentSmallerThanItsMinimumSize)
{
    window->setContentMinSize(NSMakeSize(80, 60));
    EXPECT_EQ(widget->minimumSize(), QSize(80, 60));
    const auto later = make<NSWindow>(NSMakeRect(0, 0, 100, 100),
        NSWindowStyleMaskTitled | NSWindowStyleMaskResizable, NSBackingStoreBuffered, false);
    later->setContentMinSize(NSMakeSize(70, 50));
    later->orderFront();
    EXPECT_EQ(widgetOf(*later)->minimumSize(), QSize(70, 50));
}

TEST_F(WindowEvents, AFixedStyleCannotBeResizedByTheUserButByTheProgram)
{
    const auto fixed = shownWindow(NSMakeRect(0, 0, 50, 50), make<NSView>().get(), NSWindowStyleMaskTitled);
    QWidget* fixedWidget = widgetOf(*fixed);
    EXPECT_EQ(fixedWidget->minimumSize(), fixedWidget->maximumSize());
    fixed->setContentSize(NSMakeSize(70, 60));
    EXPECT_EQ(fixedWidget->size(), QSize(70, 60));
    EXPECT_EQ(fixedWidget->minimumSize(), fixedWidget->maximumSize());
    EXPECT_EQ(describe(fixed->contentView()->frame()), "0 0 70 60");
}

TEST_F(WindowEvents, TheActiveWindowIsTheKeyWindow)
{
    const auto other = shownWindow(NSMakeRect(200, 200, 50, 50), make<NSView>().get());
    EXPECT_TRUE(serveUntil([&] { return other->isKeyWindow(); }));
    EXPECT_FALSE(window->isKeyWindow());
    EXPECT_EQ(NSApp->keyWindow(), other);
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(serveUntil([&] { return NSApp->keyWindow() == window.get(); }));
}

TEST_F(WindowEvents, TheStyleDecidesOnFrameAndButtons)
{
    EXPECT_TRUE(widget->windowFlags() & Qt::WindowCloseButtonHint);
    EXPECT_FALSE(widget->windowFlags() & Qt::WindowMinimizeButtonHint);
    const auto bare =
        shownWindow(NSMakeRect(0, 0, 50, 50), make<NSView>().get(), NSWindowStyleMaskBorderless);
    EXPECT_TRUE(widgetOf(*bare)->windowFlags() & Qt::FramelessWindowHint);
    const auto plain = shownWindow(NSMakeRect(0, 0, 50, 50), make<NSView>().get(),
        NSWindowStyleMaskTitled | NSWindowStyleMaskMiniaturizable);
    EXPECT_FALSE(widgetOf(*plain)->windowFlags() & Qt::WindowCloseButtonHint);
    EXPECT_TRUE(widgetOf(*plain)->windowFlags() & Qt::WindowMinimizeButtonHint);
}

} // namespace
