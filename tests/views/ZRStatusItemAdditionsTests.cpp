#include "AppKit/testing/StatusTray.h"
#include "support/Describe.h"

#include <KorvidAppKit/ZRAppKitAdditions.h>

#include <AppKit/NSStatusBar.h>
#include <AppKit/NSWindow.h>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

RetainPtr<NSStatusItem> makeItem()
{
    return NSStatusBar::systemStatusBar()->statusItemWithLength(NSSquareStatusItemLength);
}

TEST(RectOnScreen, IsZeroWhileTheButtonIsInNoWindow)
{
    const auto item = makeItem();
    EXPECT_EQ(item->button()->window(), nullptr);
    EXPECT_EQ(describe(ZRAppKitAdditions::rectOnScreen(item)), "0 0 0 0");
    EXPECT_EQ(describe(ZRAppKitAdditions::rectOnScreen(nullptr)), "0 0 0 0");
}

TEST(RectOnScreen, IsTheButtonsPlaceAtScale1)
{
    const auto item = makeItem();
    const StatusTray tray(NSMakeRect(700, 570, 24, 20));
    EXPECT_EQ(describe(ZRAppKitAdditions::rectOnScreen(item)), "700 570 24 20");
}

TEST(RectOnScreenDeathTest, IsInPixelsFromTheWindowsCornerAtScale2)
{
    EXPECT_EXIT(
        {
            setenv("QT_SCALE_FACTOR", "2", 1);
            const auto item = makeItem();
            const StatusTray tray(NSMakeRect(300, 270, 24, 20));
            std::fprintf(stderr, "<%s>", describe(ZRAppKitAdditions::rectOnScreen(item)).c_str());
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "<300 270 48 40>");
}

} // namespace
