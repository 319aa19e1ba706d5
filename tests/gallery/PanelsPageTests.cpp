#include "GalleryPictures.h"
#include "Page.h"
#include "PageNamed.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <KorvidAppKit/ZRGradientView.h>

#include <gtest/gtest.h>

namespace {

/// Gradients are exact to one step, and a sample may be a point away from the intended position.
constexpr int kTolerance = 6;

void expectAbout(const Components& actual, const Components& expected)
{
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(actual[i], expected[i], kTolerance);
}

/// The page in a window, and its panels from the first, each above its caption.
class PanelsDrag : public testing::Test {
protected:
    PanelsDrag() { window->setContentView(page); }
    ZRGradientView* panel(std::size_t index) const
    {
        return dynamic_cast<ZRGradientView*>(page->subviews()[index]->subviews().front().get());
    }
    /// A mouse event at a point of a panel, in units of the panel's size.
    void send(NSEventType type, const NSView* view, NSPoint unit)
    {
        const NSSize size = view->bounds().size;
        const NSPoint point = view->convertPointToView({unit.x * size.width, unit.y * size.height}, nullptr);
        window->sendEvent(
            NSEvent::mouseEventWithType(type, point, 0, 0, window->windowNumber(), nullptr, 0, 1, 1).get());
    }

    RetainPtr<NSView> page = makePageNamed("panels");
    RetainPtr<NSWindow> window =
        make<NSWindow>(NSMakeRect(0, 0, page->frame().size.width, page->frame().size.height),
            NSWindowStyleMaskTitled, NSBackingStoreBuffered, true);
};

} // namespace

TEST(PanelsPage, ShowsEachKindOfPanel)
{
    for (const int scale : {1, 2}) {
        const Picture picture = GalleryPictures::shared().page("panels", scale);
        const Components ground{0x02, 0x02, 0x1d, 255};
        ASSERT_EQ(picture.size().width, 824);
        ASSERT_EQ(picture.size().height, 424);
        // Captions take 18 points below each panel, 16 are between the cells, which are 180 x 114.67.
        constexpr CGFloat kLeft = 424, kMiddle = kLeft + 90, kRight = kLeft + 196;
        // Glow, 376 x 358: bright around its focus, the last colour in the corners, which are round.
        expectAbout(picture.at(24 + 188, 42 + 0.62 * 358), {0xff, 0xf3, 0xd6, 255});
        expectAbout(picture.at(24 + 4, 42 + 4), {0x10, 0x12, 0x2a, 255});
        EXPECT_EQ(picture.at(24.25, 42.25), ground);
        // Bar, from 303 to 400: from the top down, between its bezel's lines: black at 0.267, white at 0.133.
        expectAbout(picture.at(kMiddle, 398.75), {0x45, 0x4a, 0x78, 255});
        expectAbout(picture.at(kMiddle, 399.5), {0x33, 0x36, 0x58, 255});
        expectAbout(picture.at(kMiddle, 304.5), {0x26, 0x2a, 0x4c, 255});
        expectAbout(picture.at(kMiddle, 303.5), {0x43, 0x46, 0x64, 255});
        // Sunset: from corner to corner.
        expectAbout(picture.at(kRight + 4, 400 - 4), {0x30, 0x1a, 0x6c, 255});
        expectAbout(picture.at(800 - 4, 303 + 4), {0xfb, 0xbe, 0x2a, 255});
        // Leaf, from 172 to 269: only the top left and bottom right corners are round.
        EXPECT_EQ(picture.at(kLeft + 5, 269 - 5), ground);
        EXPECT_EQ(picture.at(kLeft + 180 - 5, 172 + 5), ground);
        expectAbout(picture.at(kLeft + 2, 172 + 2), {0x01, 0xe8, 0x72, 255});
        // Outlined: two points wide.
        EXPECT_EQ(picture.at(kRight + 90, 268.25), (Components{0x01, 0xda, 0xfd, 255}));
        EXPECT_EQ(picture.at(kRight + 90, 267.25), (Components{0x01, 0xda, 0xfd, 255}));
        expectAbout(picture.at(kRight + 90, 266.25), {0x06, 0x43, 0x5b, 255});
        // Light, and the plain one, from 42 to 138.
        expectAbout(picture.at(kLeft + 0.18 * 180, 42 + 0.9 * 96), {0x8f, 0x7b, 0xff, 255});
        EXPECT_EQ(picture.at(kRight + 90, 80), (Components{0x18, 0x1b, 0x36, 255}));
        EXPECT_EQ(picture.at(kRight + 90, 42.25), (Components{0x37, 0x38, 0x4c, 255}));
    }
}

TEST_F(PanelsDrag, MovesTheNearerEndPointOfALinearGradient)
{
    ZRGradientView* sunset = panel(2);
    sunset->setNeedsDisplay(false);
    send(NSEventTypeLeftMouseDown, sunset, {0.8, 0.3});
    EXPECT_NEAR(sunset->endPoint().x, 0.8, 1e-9);
    EXPECT_NEAR(sunset->endPoint().y, 0.3, 1e-9);
    EXPECT_TRUE(sunset->needsDisplay());
    // The drag moves the end, however near the mouse comes to the start.
    send(NSEventTypeLeftMouseDragged, sunset, {0.1, 0.9});
    EXPECT_NEAR(sunset->endPoint().x, 0.1, 1e-9);
    EXPECT_EQ(sunset->startPoint().x, 0);
    send(NSEventTypeLeftMouseUp, sunset, {0.1, 0.9});

    send(NSEventTypeLeftMouseDown, sunset, {0, 0.99});
    EXPECT_NEAR(sunset->startPoint().y, 0.99, 1e-9);
    EXPECT_NEAR(sunset->endPoint().x, 0.1, 1e-9);
    send(NSEventTypeLeftMouseUp, sunset, {0, 0.99});
}

TEST_F(PanelsDrag, MovesTheCirclesOfARadialGradientTogether)
{
    ZRGradientView* glow = panel(0);
    glow->setNeedsDisplay(false);
    send(NSEventTypeLeftMouseDown, glow, {0.3, 0.5});
    send(NSEventTypeLeftMouseDragged, glow, {0.25, 0.5});
    EXPECT_NEAR(glow->startCenter().x, 0.25, 1e-9);
    EXPECT_NEAR(glow->startCenter().y, 0.5, 1e-9);
    EXPECT_NEAR(glow->endCenter().x, 0.25, 1e-9);
    EXPECT_NEAR(glow->endCenter().y, 0.34, 1e-9); // still 0.16 below
    EXPECT_TRUE(glow->needsDisplay());
    send(NSEventTypeLeftMouseUp, glow, {0.25, 0.5});
}
