#include "RecordingView.h"

#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

// Keys that no responder handles are offered to all views of the window.

namespace {

/// A view that handles one key.
class KeyView : public RecordingView {
public:
    KeyView(const char* name, NSRect frame, Log& log)
        : RecordingView(frame, name, log)
        , _name(name)
        , _log(log)
    {
    }
    NSString key = nullptr;

    bool performKeyEquivalent(NSEvent* event) override
    {
        if (RecordingView::performKeyEquivalent(event))
            return true;
        _log.push_back(_name + " is asked");
        return key && event->charactersIgnoringModifiers() == key;
    }

private:
    std::string _name;
    Log& _log;
};

/// The tree is: low, group (inner), high.
class KeyEquivalent : public testing::Test {
protected:
    Log log;
    RetainPtr<NSWindow> window = make<NSWindow>(
        NSMakeRect(0, 0, 100, 100), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    RetainPtr<KeyView> low = make<KeyView>("low", NSMakeRect(0, 0, 10, 10), log);
    RetainPtr<KeyView> group = make<KeyView>("group", NSMakeRect(0, 0, 10, 10), log);
    RetainPtr<KeyView> inner = make<KeyView>("inner", NSMakeRect(0, 0, 10, 10), log);
    RetainPtr<KeyView> high = make<KeyView>("high", NSMakeRect(0, 0, 10, 10), log);

    KeyEquivalent()
    {
        group->addSubview(inner);
        for (const auto& view : {low, group, high})
            window->contentView()->addSubview(view);
        log.clear();
    }
    void press(const char* key) const
    {
        const auto event = NSEvent::keyEventWithType(
            NSEventTypeKeyDown, NSZeroPoint, 0, 0, window->windowNumber(), nullptr, key, key, false);
        const RetainPtr<NSWindow> sender = window;
        sender->sendEvent(event);
    }
};

} // namespace

TEST_F(KeyEquivalent, IsLookedForFromTopToBottom)
{
    press("x");
    EXPECT_EQ(log, (Log{"high is asked", "inner is asked", "group is asked", "low is asked"}));
}

TEST_F(KeyEquivalent, EndsTheSearch)
{
    inner->key = "x";
    press("x");
    EXPECT_EQ(log, (Log{"high is asked", "inner is asked"}));
}

TEST_F(KeyEquivalent, HiddenViewsHaveNone)
{
    high->setHidden(true);
    group->setHidden(true);
    press("x");
    EXPECT_EQ(log, Log{"low is asked"});
    log.clear();
    window->contentView()->setHidden(true);
    press("x");
    EXPECT_EQ(log, Log{});
}

TEST_F(KeyEquivalent, TheFirstResponderHandlesItsKeysFirst)
{
    low->acceptsKeys = true;
    ASSERT_TRUE(window->makeFirstResponder(low));
    log.clear();
    press("x");
    EXPECT_EQ(log, Log{"low key x"});
}

TEST_F(KeyEquivalent, TabIsNone)
{
    press("\t");
    EXPECT_EQ(log, Log{});
}

TEST_F(KeyEquivalent, NoEventIsHandledByNone)
{
    EXPECT_FALSE(make<NSView>()->performKeyEquivalent(nullptr));
    window->setContentView(nullptr);
    press("x");
    EXPECT_EQ(log, (Log{"low leaves", "group leaves", "inner leaves", "high leaves"}));
}
