#include "../RecordingView.h"
#include "QtTestSupport.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSControl.h>
#include <QtTest/qtestmouse.h>
#include <gtest/gtest.h>

// Actions without a target, which look for one along the responder chain of the key window.

namespace {

/// Takes the action `save`.
class Saver {
public:
    virtual void save(NSObject* sender) = 0;

protected:
    ~Saver() = default;
};

class SavingView : public RecordingView, public Saver {
public:
    using RecordingView::RecordingView;
    int saves = 0;
    void save(NSObject*) override { ++saves; }
};

class SavingWindow : public NSWindow, public Saver {
public:
    using NSWindow::NSWindow;
    int saves = 0;
    void save(NSObject*) override { ++saves; }
};

class SavingDelegate : public NSObject, public NSWindowDelegate, public Saver {
public:
    int saves = 0;
    void save(NSObject*) override { ++saves; }
};

class Actions : public testing::Test {
protected:
    Log log;
    RetainPtr<SavingView> outer = make<SavingView>(NSMakeRect(0, 0, 100, 100), "outer", log);
    RetainPtr<RecordingView> inner = make<RecordingView>(NSMakeRect(0, 0, 50, 50), "inner", log);
    RetainPtr<NSControl> sender = make<NSControl>();

    void showKey(NSWindow* window) const
    {
        window->makeKeyAndOrderFront();
        ASSERT_TRUE(serveUntil([&] { return window->isKeyWindow(); }));
    }
    bool save() const { return sender->sendAction(selector<&Saver::save>, nullptr); }
};

TEST_F(Actions, GoUpTheResponderChainFromTheKeyWindowsFirstResponder)
{
    const auto root = make<NSView>();
    root->addSubview(outer);
    outer->addSubview(inner);
    inner->acceptsKeys = true;
    const auto window = shownWindow(NSMakeRect(0, 0, 100, 100), root);
    showKey(window);
    EXPECT_FALSE(save());
    ASSERT_TRUE(window->makeFirstResponder(inner));
    EXPECT_TRUE(save());
    EXPECT_EQ(outer->saves, 1);
}

TEST_F(Actions, ReachTheWindowAndThenItsDelegate)
{
    const auto saving = make<SavingWindow>(
        NSMakeRect(0, 0, 100, 100), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
    const auto delegate = make<SavingDelegate>();
    saving->setDelegate(delegate);
    showKey(saving);
    EXPECT_TRUE(save());
    EXPECT_EQ(saving->saves, 1);
    EXPECT_EQ(delegate->saves, 0);

    const auto plain =
        make<NSWindow>(NSMakeRect(0, 0, 100, 100), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
    plain->setDelegate(delegate);
    showKey(plain);
    EXPECT_TRUE(save());
    EXPECT_EQ(delegate->saves, 1);
    EXPECT_EQ(saving->saves, 1);
}

TEST_F(Actions, ReachTheApplicationLast)
{
    EXPECT_FALSE(save());
    EXPECT_TRUE(sender->sendAction(selector<&NSApplication::stop>, nullptr)); // of no effect: nothing runs
    EXPECT_FALSE(NSApp->sendAction(nullptr, nullptr, sender));
}

TEST_F(Actions, OfAWindowAreTakenByTheKeyWindow)
{
    const auto other = shownWindow(NSMakeRect(0, 0, 100, 100), make<NSView>().get());
    const auto window = shownWindow(NSMakeRect(0, 0, 100, 100), make<NSView>().get());
    showKey(window);
    EXPECT_TRUE(sender->sendAction(selector<&NSWindow::performClose>, nullptr));
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(other->isVisible());
}

} // namespace
