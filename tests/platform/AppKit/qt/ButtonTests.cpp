#include "../DrawnPixels.h"
#include "AppKit/testing/AccessibilityListener.h"
#include "QtTestSupport.h"
#include "XServer.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSButton.h>
#include <QAccessible>
#include <QScreen>
#include <gtest/gtest.h>

// Buttons in windows of the window system.

namespace {

class Controller : public NSObject {
public:
    int clicks = 0;
    void clicked() { ++clicks; }
};

/// A window of 100 x 50 points with an on-off button of 60 x 20 points at (20, 10).
struct ButtonScene {
    RetainPtr<Controller> controller = make<Controller>();
    RetainPtr<NSButton> button = make<NSButton>(NSMakeRect(20, 10, 60, 20));
    RetainPtr<NSWindow> window;

    ButtonScene()
    {
        button->setTitle("Lamp");
        button->setButtonType(NSButtonTypePushOnPushOff);
        button->setTarget(controller);
        button->setAction(selector<&Controller::clicked>);
        const auto root = make<NSView>();
        root->addSubview(button);
        window = shownWindow(NSMakeRect(0, 0, 100, 50), root, NSWindowStyleMaskBorderless);
        EXPECT_TRUE(serveUntil([&] { return window->isKeyWindow(); }));
    }
    /// Whether the outermost line of the button is the white one of a focus ring.
    bool hasRing() const
    {
        DrawnPixels pixels(60, 20);
        button->displayRectIgnoringOpacity(button->bounds(), pixels.graphicsContext());
        const unsigned char* const bytes = &pixels.bytes()[4 * 30];
        return bytes[0] == 255 && bytes[1] == 255 && bytes[2] == 255 && bytes[3] == 255;
    }
};

void key(NSWindow& window, const char* characters)
{
    const auto event = NSEvent::keyEventWithType(
        NSEventTypeKeyDown, NSZeroPoint, 0, 0, window.windowNumber(), nullptr, characters, characters, false);
    window.sendEvent(event);
}

void mouse(NSWindow& window, NSEventType type)
{
    const auto event =
        NSEvent::mouseEventWithType(type, NSMakePoint(30, 20), 0, 0, window.windowNumber(), nullptr, 0, 1, 1);
    window.sendEvent(event);
}

TEST(NSButtonFocusRing, ShowsThatKeysGoToTheButton)
{
    const ButtonScene scene;
    EXPECT_FALSE(scene.hasRing());
    key(*scene.window, "\t");
    EXPECT_TRUE(scene.hasRing());
    mouse(*scene.window, NSEventTypeLeftMouseDown);
    EXPECT_FALSE(scene.hasRing());
    mouse(*scene.window, NSEventTypeLeftMouseUp);
    EXPECT_FALSE(scene.hasRing());
    key(*scene.window, " ");
    EXPECT_TRUE(scene.hasRing());
    scene.window->makeFirstResponder(nullptr);
    EXPECT_FALSE(scene.hasRing());
    scene.window->makeFirstResponder(scene.button);
    EXPECT_TRUE(scene.hasRing());
    scene.window->orderOut();
    EXPECT_FALSE(scene.hasRing()); // no longer the key window
}

TEST(NSButtonAccessibilityBridge, ShowsAndTogglesACheckBox)
{
    const AccessibilityListener listener([](QAccessibleEvent*) {});
    const ButtonScene scene;
    QAccessibleInterface* const window = QAccessible::queryAccessibleInterface(widgetOf(*scene.window));
    ASSERT_TRUE(window);
    ASSERT_EQ(window->childCount(), 1);
    QAccessibleInterface* const button = window->child(0);
    EXPECT_EQ(button->role(), QAccessible::CheckBox);
    EXPECT_EQ(button->text(QAccessible::Name), "Lamp");
    EXPECT_FALSE(button->state().checked);
    EXPECT_TRUE(button->state().focusable);
    button->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(button->state().checked);
    EXPECT_EQ(scene.controller->clicks, 1);

    scene.button->setButtonType(NSButtonTypeMomentaryPushIn);
    EXPECT_EQ(button->role(), QAccessible::Button);
    EXPECT_FALSE(button->state().checkable);
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(scene.controller->clicks, 2);
    scene.button->setEnabled(false);
    EXPECT_TRUE(button->state().disabled);
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(scene.controller->clicks, 2);
}

/// Presses the button with a real mouse and real keys.
void pressReally()
{
    const XServer server;
    const ButtonScene scene;
    const QWidget* const widget = widgetOf(*scene.window);
    scene.window->setFrameOrigin(NSMakePoint(0, widget->screen()->geometry().height() - 50));
    ASSERT_TRUE(serveUntil([&] { return widget->geometry().topLeft() == QPoint(0, 0); }));
    NSButton& button = *scene.button;
    const auto becomes = [&](bool isHighlighted, int clicks) {
        return serveUntil(
            [&] { return button.isHighlighted() == isHighlighted && scene.controller->clicks == clicks; });
    };

    xdotool({"mousemove", "30", "30"});
    xdotool({"mousedown", "1"});
    EXPECT_TRUE(becomes(true, 0));
    xdotool({"mousemove", "400", "300"}); // out of the window
    EXPECT_TRUE(becomes(false, 0));
    xdotool({"mousemove", "60", "30"});
    EXPECT_TRUE(becomes(true, 0));
    xdotool({"mouseup", "1"});
    EXPECT_TRUE(becomes(false, 1));
    EXPECT_EQ(button.state(), NSControlStateValueOn);

    xdotool({"mousedown", "1"});
    EXPECT_TRUE(becomes(true, 1));
    xdotool({"mousemove", "10", "5"});
    EXPECT_TRUE(becomes(false, 1));
    xdotool({"mouseup", "1"});
    xdotool({"key", "space"}); // arrives after the release
    EXPECT_TRUE(becomes(false, 2));
    EXPECT_EQ(button.state(), NSControlStateValueOff);

    button.setKeyEquivalent("\r");
    scene.window->makeFirstResponder(nullptr);
    xdotool({"key", "space"});
    xdotool({"key", "Return"});
    EXPECT_TRUE(becomes(false, 3));
    xdotool({"key", "KP_Enter"});
    EXPECT_TRUE(becomes(false, 4));

    button.setEnabled(false);
    xdotool({"mousemove", "30", "30"});
    xdotool({"click", "1"});
    xdotool({"key", "Return"});
    xdotool({"key", "x"}); // arrives last
    EXPECT_TRUE(serveUntil([&] {
        const NSEvent* const event = NSApp->currentEvent();
        return event && event->characters() == "x";
    }));
    EXPECT_EQ(scene.controller->clicks, 4);
}

TEST(NSButtonRealInputDeathTest, ARealMouseAndKeyboardPressIt)
{
    EXPECT_EXIT((pressReally(), finish()), testing::ExitedWithCode(0), "");
}

} // namespace
