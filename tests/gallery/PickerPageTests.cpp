#include "Page.h"
#include "support/Describe.h"
#include "support/Rendering.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <KorvidAppKit/ZR2DColorPicker.h>
#include <KorvidAppKit/ZRCapsuleView.h>

#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace {

/// The page in a window, with its views by class.
struct Stage {
    RetainPtr<NSView> page;
    RetainPtr<NSWindow> window;
    NSView* card = nullptr;
    ZR2DColorPicker* picker = nullptr;
    NSView* bar = nullptr;
    std::vector<ZRCapsuleView*> chips;

    Stage()
    {
        for (const GalleryPage* each : GalleryPage::all()) {
            if (std::strcmp(each->name, "picker") == 0)
                page = each->makeView({});
        }
        window = make<NSWindow>(page->frame(), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
        window->contentView()->addSubview(page);
        card = page->subviews().front();
        for (const auto& view : card->subviews()) {
            if (auto* chip = dynamic_cast<ZRCapsuleView*>(view.get()))
                chips.push_back(chip);
            else if (auto* field = dynamic_cast<ZR2DColorPicker*>(view.get()))
                picker = field;
            else
                bar = view;
        }
    }

    void click(NSView* view, NSPoint point) const
    {
        for (const NSEventType type : {NSEventTypeLeftMouseDown, NSEventTypeLeftMouseUp}) {
            const auto event = NSEvent::mouseEventWithType(type, view->convertPointToView(point, nullptr), 0,
                0, window->windowNumber(), nullptr, 0, 1, 1);
            window->sendEvent(event);
        }
    }

    /// Presses keys with the focus on the picker.
    void type(const std::string& keys) const
    {
        window->makeFirstResponder(picker);
        for (const char each : keys) {
            const NSString key(std::string(1, each));
            const auto event = NSEvent::keyEventWithType(
                NSEventTypeKeyDown, NSZeroPoint, 0, 0, window->windowNumber(), nullptr, key, key, false);
            window->sendEvent(event);
        }
    }
};

} // namespace

TEST(PickerPage, AChipChoosesTheAxes)
{
    const Stage stage;
    std::vector<ZR2DColorPickerAxes> axes;
    for (ZRCapsuleView* chip : stage.chips) {
        stage.card->setNeedsDisplay(false);
        stage.click(chip, {5, 5});
        axes.push_back(stage.picker->axes());
        EXPECT_TRUE(takeDisplayMark(stage.card)) << "swatch and hex string";
        for (const ZRCapsuleView* other : stage.chips)
            EXPECT_EQ(
                other->drawType(), other == chip ? kZRCapsuleDrawTypeFilled : kZRCapsuleDrawTypeOutline);
    }
    EXPECT_EQ(axes, (std::vector<ZR2DColorPickerAxes>{0x11, 0x12, 0x14, 0x21, 0x22, 0x24}));
}

TEST(PickerPage, TheBarSetsTheThirdComponent)
{
    const Stage stage;
    const double height = stage.bar->bounds().size.height;
    for (const double part : {0.25, 0.75}) {
        stage.card->setNeedsDisplay(false);
        stage.click(stage.bar, {5, height * part});
        EXPECT_NEAR(stage.picker->thirdComponent(), part, 1e-9);
        EXPECT_TRUE(takeDisplayMark(stage.card));
    }
}

TEST(PickerPage, KeysChooseTheAxes)
{
    const Stage stage;
    std::vector<ZR2DColorPickerAxes> axes;
    for (const char* key : {"1", "2", "3", "4", "5", "6"}) {
        stage.type(key);
        axes.push_back(stage.picker->axes());
    }
    EXPECT_EQ(axes, (std::vector<ZR2DColorPickerAxes>{0x11, 0x12, 0x14, 0x21, 0x22, 0x24}));
    stage.type("07x");
    EXPECT_EQ(stage.picker->axes(), 0x24u);
}

TEST(PickerPage, PlusAndMinusStepTheThirdComponent)
{
    const Stage stage;
    stage.picker->setThirdComponent(0.5);
    stage.card->setNeedsDisplay(false);
    stage.bar->setNeedsDisplay(false);
    stage.type("++-");
    EXPECT_NEAR(stage.picker->thirdComponent(), 0.55, 1e-9);
    EXPECT_TRUE(takeDisplayMark(stage.card));
    EXPECT_TRUE(takeDisplayMark(stage.bar));
    stage.type(std::string(20, '+'));
    EXPECT_EQ(stage.picker->thirdComponent(), 1);
    stage.type(std::string(30, '-'));
    EXPECT_EQ(stage.picker->thirdComponent(), 0);
}

TEST(PickerPage, TheKnobRedrawsSwatchAndBar)
{
    const Stage stage;
    stage.card->setNeedsDisplay(false);
    stage.bar->setNeedsDisplay(false);
    stage.click(stage.picker, {1, 1}); // on the margin
    EXPECT_EQ(stage.picker->comps(), (ZR2Components{0, 0}));
    EXPECT_TRUE(takeDisplayMark(stage.card));
    EXPECT_TRUE(takeDisplayMark(stage.bar));
}

TEST(PickerPage, ItsViewsLieOnWholePointsAtAnySize)
{
    const Stage stage;
    for (const NSSize size : {stage.page->frame().size, NSMakeSize(901, 703)}) {
        stage.page->setFrameSize(size);
        for (const auto& view : stage.card->subviews()) {
            EXPECT_EQ(describe(NSIntegralRect(view->frame())), describe(view->frame()));
            EXPECT_TRUE(NSContainsRect(stage.card->bounds(), view->frame()));
        }
    }
}
