#include "../RecordingView.h"
#include "QtTestSupport.h"
#include "XServer.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSTrackingArea.h>
#include <Foundation/CFDate.h>
#include <QMouseEvent>
#include <QScreen>
#include <QWheelEvent>
#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>
#include <gtest/gtest.h>

// One gesture, made by a real mouse and keyboard on an X server, by synthetic events of Qt's and by events
// that the application sends itself: views see the same each time.

namespace {

/// A view that logs events with all that they say.
class Witness : public NSView {
public:
    Witness(NSRect frame, const char* name, Log& log)
        : NSView(frame)
        , _name(name)
        , _log(log)
    {
        addTrackingArea(make<NSTrackingArea>(NSZeroRect,
            NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways | NSTrackingInVisibleRect, this));
    }
    bool isFlipped() const override { return true; }
    bool acceptsFirstResponder() const override { return true; }

    void mouseDown(NSEvent* event) override { note("down", event); }
    void mouseDragged(NSEvent* event) override { note("dragged", event); }
    void mouseUp(NSEvent* event) override { note("up", event); }
    void mouseEntered(NSEvent* event) override { note("entered", event); }
    void mouseExited(NSEvent* event) override { note("exited", event); }
    void scrollWheel(NSEvent* event) override
    {
        note("scrolled by " + describe(event->scrollingDeltaY()), event);
    }
    void keyDown(NSEvent* event) override { noteKey("key", event); }
    void keyUp(NSEvent* event) override { noteKey("key up", event); }

private:
    void note(const std::string& what, NSEvent* event)
    {
        const std::string shift = (event->modifierFlags() & NSEventModifierFlagShift) ? " shift" : "";
        _log.push_back(_name + " " + what + " "
            + describe(convertPointFromView(event->locationInWindow(), nullptr)) + " x"
            + std::to_string(event->clickCount()) + " button " + std::to_string(event->buttonNumber())
            + shift);
        noteTime(event);
    }
    void noteKey(const char* what, NSEvent* event)
    {
        _log.push_back(_name + " " + what + " " + event->characters().UTF8String());
        noteTime(event);
    }
    void noteTime(NSEvent* event)
    {
        EXPECT_GE(event->timestamp(), _lastTimestamp);
        _lastTimestamp = event->timestamp();
    }

    std::string _name;
    Log& _log;
    NSTimeInterval _lastTimestamp = 0;
};

/// What makes the gesture. Places are in Qt's coordinates of the widget, y downward.
class Hand {
public:
    virtual ~Hand() = default;
    virtual void moveTo(int x, int y, bool isButtonHeld) = 0;
    virtual void press(int clickCount, bool withShift) = 0;
    virtual void release(int clickCount, bool withShift) = 0;
    virtual void turnWheelDown() = 0;
    virtual void typeA() = 0;
};

class RealHand : public Hand {
public:
    void moveTo(int x, int y, bool) override { xdotool({"mousemove", std::to_string(x), std::to_string(y)}); }
    void press(int, bool withShift) override
    {
        if (withShift)
            xdotool({"keydown", "shift"});
        xdotool({"mousedown", "1"});
    }
    void release(int, bool withShift) override
    {
        xdotool({"mouseup", "1"});
        if (withShift)
            xdotool({"keyup", "shift"});
    }
    void turnWheelDown() override { xdotool({"click", "5"}); }
    void typeA() override { xdotool({"key", "a"}); }
};

class QtHand : public Hand {
public:
    explicit QtHand(QWidget& widget)
        : _widget(widget)
    {
    }
    void moveTo(int x, int y, bool isButtonHeld) override
    {
        _place = {x, y};
        const Qt::MouseButtons buttons = isButtonHeld ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event(QEvent::MouseMove, QPointF(_place), QPointF(_place),
            _widget.mapToGlobal(QPointF(_place)), Qt::NoButton, buttons, {});
        QCoreApplication::sendEvent(&_widget, &event);
    }
    void press(int, bool withShift) override
    {
        QTest::mousePress(&_widget, Qt::LeftButton, withShift ? Qt::ShiftModifier : Qt::NoModifier, _place);
    }
    void release(int, bool withShift) override
    {
        QTest::mouseRelease(&_widget, Qt::LeftButton, withShift ? Qt::ShiftModifier : Qt::NoModifier, _place);
    }
    void turnWheelDown() override
    {
        QWheelEvent event(QPointF(_place), _widget.mapToGlobal(QPointF(_place)), {}, {0, -120}, Qt::NoButton,
            Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&_widget, &event);
    }
    void typeA() override { QTest::keyClick(&_widget, Qt::Key_A); }

private:
    QWidget& _widget;
    QPoint _place;
};

class ApplicationsHand : public Hand {
public:
    explicit ApplicationsHand(NSWindow& window)
        : _window(window)
    {
    }
    void moveTo(int x, int y, bool isButtonHeld) override
    {
        _place = NSMakePoint(x, _window.contentView()->frame().size.height - y);
        send(isButtonHeld ? NSEventTypeLeftMouseDragged : NSEventTypeMouseMoved, isButtonHeld ? 1 : 0, false);
    }
    void press(int clickCount, bool withShift) override
    {
        send(NSEventTypeLeftMouseDown, clickCount, withShift);
    }
    void release(int clickCount, bool withShift) override
    {
        send(NSEventTypeLeftMouseUp, clickCount, withShift);
    }
    void turnWheelDown() override
    {
        const auto event = NSEvent::scrollWheelEventWithLocation(_place, 0, CFAbsoluteTimeGetCurrent(),
            _window.windowNumber(), 0, -QApplication::wheelScrollLines(), false);
        _window.sendEvent(event);
    }
    void typeA() override
    {
        for (const NSEventType type : {NSEventTypeKeyDown, NSEventTypeKeyUp}) {
            const auto event = NSEvent::keyEventWithType(type, _place, 0, CFAbsoluteTimeGetCurrent(),
                _window.windowNumber(), nullptr, "a", "a", false);
            _window.sendEvent(event);
        }
    }

private:
    void send(NSEventType type, NSInteger clickCount, bool withShift)
    {
        const auto event = NSEvent::mouseEventWithType(type, _place, withShift ? NSEventModifierFlagShift : 0,
            CFAbsoluteTimeGetCurrent(), _window.windowNumber(), nullptr, 0, clickCount, 1);
        _window.sendEvent(event);
    }

    NSWindow& _window;
    NSPoint _place{0, 0};
};

/// A window of 120 x 90 points at the top left of the screen. In it, an unflipped view of half its scale
/// holds two flipped ones beside each other.
struct Scene {
    Log log;
    RetainPtr<NSView> middle = make<NSView>(NSMakeRect(10, 20, 100, 60));
    RetainPtr<NSWindow> window;

    Scene()
    {
        middle->setBounds(NSMakeRect(1000, 2000, 200, 120));
        middle->addSubview(make<Witness>(NSMakeRect(1000, 2000, 100, 120), "left", log));
        middle->addSubview(make<Witness>(NSMakeRect(1100, 2000, 100, 120), "right", log));
        const auto root = make<NSView>();
        root->addSubview(middle);
        window = shownWindow(NSMakeRect(0, 0, 120, 90), root, NSWindowStyleMaskBorderless);
        const QWidget* const widget = widgetOf(*window);
        window->setFrameOrigin(NSMakePoint(0, widget->screen()->geometry().height() - 90));
        EXPECT_TRUE(serveUntil(
            [&] { return widget->geometry().topLeft() == QPoint(0, 0) && window->isKeyWindow(); }));
    }

    void expect(const Log& expected)
    {
        serveUntil([&] { return log.size() >= expected.size(); });
        QCoreApplication::processEvents();
        EXPECT_EQ(log, expected);
        log.clear();
    }
};

void makeGesture(Hand& hand, Scene& scene)
{
    hand.moveTo(115, 85, false);
    QCoreApplication::processEvents();
    scene.log.clear();

    // The left view spans 10 to 60 across and 10 to 70 down, in points of which two of its own make one.
    hand.moveTo(20, 30, false);
    scene.expect({"left entered 20 40 x0 button 0"});
    hand.press(1, false);
    scene.expect({"left down 20 40 x1 button 0"});
    hand.moveTo(80, 35, true);
    scene.expect({"left dragged 140 50 x1 button 0"});
    hand.moveTo(300, 400, true);
    scene.expect({"left dragged 580 780 x1 button 0"});
    hand.moveTo(80, 36, true);
    scene.expect({"left dragged 140 52 x1 button 0"});
    hand.release(1, false);
    scene.expect(
        {"left up 140 52 x1 button 0", "left exited 140 52 x0 button 0", "right entered 40 52 x0 button 0"});

    hand.press(1, true);
    hand.release(1, true);
    hand.press(2, false);
    hand.release(2, false);
    scene.expect({"right down 40 52 x1 button 0 shift", "right up 40 52 x1 button 0 shift",
        "right down 40 52 x2 button 0", "right up 40 52 x2 button 0"});

    hand.turnWheelDown();
    scene.expect({"right scrolled by -3 40 52 x0 button 0"});
    hand.typeA();
    scene.expect({"right key a", "right key up a"});
    hand.moveTo(115, 85, false);
    scene.expect({"right exited 110 150 x0 button 0"});
}

void makeGestureByEveryHand()
{
    const XServer server;
    Scene scene;
    RealHand real;
    QtHand synthetic(*widgetOf(*scene.window));
    ApplicationsHand application(*scene.window);
    const std::pair<Hand*, const char*> hands[] = {{&real, "real input"}, {&synthetic, "events of Qt's"},
        {&application, "the application's own events"}};
    for (const auto& [hand, name] : hands) {
        SCOPED_TRACE(name);
        makeGesture(*hand, scene);
    }
}

TEST(InputRouteDeathTest, RealSyntheticAndOwnEventsAreTheSameToViews)
{
    EXPECT_EXIT((makeGestureByEveryHand(), finish()), testing::ExitedWithCode(0), "");
}

} // namespace
