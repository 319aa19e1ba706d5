#include "AppKit/testing/StatusTray.h"
#include "support/Canvas.h"
#include "support/Describe.h"

#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSImage.h>
#include <AppKit/NSStatusBar.h>
#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

namespace {

RetainPtr<NSStatusItem> makeItem()
{
    return NSStatusBar::systemStatusBar()->statusItemWithLength(NSSquareStatusItemLength);
}

class StatusListener : public NSObject {
public:
    int clicks = 0;
    void clicked() { ++clicks; }

protected:
    ~StatusListener() override = default;
};

TEST(NSStatusItem, IsVisibleWithAButtonAndTheLengthAskedFor)
{
    const auto item = makeItem();
    EXPECT_TRUE(item->isVisible());
    EXPECT_EQ(item->length(), NSSquareStatusItemLength);
    EXPECT_EQ(describe(item->button()->frame()), "0 0 22 22");
    EXPECT_EQ(NSStatusBar::systemStatusBar()->thickness(), 22);
}

TEST(NSStatusItem, WithoutATrayItsButtonHasNoWindow)
{
    EXPECT_EQ(makeItem()->button()->window(), nullptr);
}

TEST(NSStatusItem, ItsButtonIsInAWindowInThePlaceOfTheIcon)
{
    const auto before = makeItem();
    {
        const StatusTray tray(NSMakeRect(700, 570, 24, 20));
        const auto after = makeItem();
        for (const auto& item : {before, after}) {
            ASSERT_NE(item->button()->window(), nullptr);
            EXPECT_EQ(describe(item->button()->window()->frame()), "700 570 24 20");
            EXPECT_EQ(describe(item->button()->frame()), "0 0 24 20");
        }
    }
    EXPECT_EQ(before->button()->window(), nullptr);
}

TEST(NSStatusItem, AHiddenOneIsInNoTray)
{
    const StatusTray tray(NSMakeRect(700, 570, 24, 20));
    const auto item = makeItem();
    item->setVisible(false);
    EXPECT_EQ(item->button()->window(), nullptr);
    item->setVisible(true);
    EXPECT_NE(item->button()->window(), nullptr);
    NSStatusBar::systemStatusBar()->removeStatusItem(item);
    NSStatusBar::systemStatusBar()->removeStatusItem(nullptr);
    EXPECT_FALSE(item->isVisible());
    EXPECT_EQ(item->button()->window(), nullptr);
}

TEST(NSStatusItem, ItsButtonSendsItsAction)
{
    const auto item = makeItem();
    const auto listener = make<StatusListener>();
    item->button()->setTarget(listener);
    item->button()->setAction(selector<&StatusListener::clicked>);
    item->button()->performClick();
    EXPECT_EQ(listener->clicks, 1);
}

TEST(NSStatusItem, ItsButtonMayOutliveIt)
{
    const StatusTray tray(NSMakeRect(700, 570, 24, 20));
    auto item = makeItem();
    const RetainPtr<NSStatusBarButton> button = item->button();
    item = nullptr;
    EXPECT_EQ(button->window(), nullptr);
    button->setImage(make<NSImage>(NSMakeSize(4, 4)));
}

TEST(NSStatusItem, ItsButtonDrawsTheImageInTheMiddle)
{
    Canvas picture(2, 1);
    CGContextFillRect(picture.context(), CGRectMake(0, 0, 2, 1));
    const auto item = makeItem();
    item->button()->setFrameSize(NSMakeSize(6, 4));
    item->button()->setImage(
        make<NSImage>(adopt(CGBitmapContextCreateImage(picture.context())), NSMakeSize(2, 1)));
    Canvas canvas(6, 4);
    item->button()->displayRectIgnoringOpacity(item->button()->bounds(),
        NSGraphicsContext::graphicsContextWithCGContext(canvas.context(), false).get());
    // As large as fits the shorter side, in its proportions.
    EXPECT_COVERAGE(canvas,
        "......"
        ".####."
        ".####."
        "......");
    item->button()->setImage(nullptr);
    EXPECT_EQ(item->button()->image(), nullptr);
}

} // namespace
