#include "Foundation/testing/UserDefaultsFile.h"
#include "MouseWindow.h"
#include "support/Rendering.h"
#include "support/TemporaryFolder.h"

#include <KorvidAppKit/ZR2DColorPicker.h>

#include <Foundation/NSUserDefaults.h>
#include <Foundation/WeakPtr.h>

#include <gtest/gtest.h>
#include <optional>
#include <vector>

namespace {

/// A picker of 112 x 62 points at (20, 10) of a window. Its field goes from (26, 16) to (126, 66).
struct Stage {
    RetainPtr<ZR2DColorPicker> picker = make<ZR2DColorPicker>(NSMakeRect(20, 10, 112, 62));
    MouseWindow mouse{picker};
};

class FlippedView : public NSView {
public:
    using NSView::NSView;
    bool isFlipped() const override { return true; }

protected:
    ~FlippedView() override = default;
};

std::vector<double> values(ZR2Components comps)
{
    return {comps.compX, comps.compY};
}

} // namespace

TEST(ColorPickerMouse, APressPutsTheKnobUnderThePointer)
{
    const Stage stage;
    stage.picker->setNeedsDisplay(false);
    stage.mouse.press(51, 56);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.25, 0.8}));
    EXPECT_TRUE(takeDisplayMark(stage.picker));
}

TEST(ColorPickerMouse, DragsMoveTheKnobAndTheReleaseDoesNot)
{
    const Stage stage;
    stage.mouse.press(51, 56);
    stage.mouse.drag(76, 26);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.5, 0.2}));
    stage.mouse.drag(101, 41);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.75, 0.5}));
    stage.picker->setNeedsDisplay(false);
    stage.mouse.release(26, 16);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.75, 0.5}));
    EXPECT_FALSE(takeDisplayMark(stage.picker));
}

TEST(ColorPickerMouse, APointerBesideTheFieldMeansTheNearestPointOfIt)
{
    const Stage stage;
    stage.mouse.press(21, 41); // on the margin
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.0, 0.5}));
    stage.mouse.drag(76, -50);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.5, 0.0}));
    stage.mouse.drag(500, 41);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{1.0, 0.5}));
    stage.mouse.drag(76, 900);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.5, 1.0}));
    stage.mouse.drag(-900, 900);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.0, 1.0}));
}

TEST(ColorPickerMouse, FollowsTheOriginOfTheBounds)
{
    const Stage stage;
    stage.picker->setBoundsOrigin(NSMakePoint(-30, 70));
    stage.mouse.press(51, 56);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.25, 0.8}));
}

TEST(ColorPickerMouse, MapsThroughFlippedAndScrolledSuperviews)
{
    const auto outer = make<FlippedView>(NSMakeRect(100, 100, 200, 150));
    const auto inner = make<NSView>(NSMakeRect(10, 20, 180, 120));
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, 112, 62));
    outer->addSubview(inner);
    inner->addSubview(picker);
    inner->setBoundsOrigin(NSMakePoint(-5, -3));
    const MouseWindow mouse(outer);
    // In the window, the inner view begins at (110, 250 - 20 - 120), and the picker at (115, 113).
    mouse.press(115 + 6 + 25, 113 + 6 + 40);
    EXPECT_EQ(values(picker->comps()), (std::vector{0.25, 0.8}));
}

TEST(ColorPickerMouse, TakesTheLocationInTheWindowAsOneInTheContentView)
{
    // In the middle of 300 points: under the same pointers in a flipped content view.
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(20, 119, 112, 62));
    const MouseWindow mouse(make<NSView>());
    const auto content = make<FlippedView>();
    mouse.window->setContentView(content);
    content->addSubview(picker);
    // The field goes from 125 to 175, downward in the content view: the pointer is at a fifth of the
    // window's.
    mouse.press(26 + 25, 135);
    EXPECT_EQ(values(picker->comps()), (std::vector{0.25, 0.8}));

    content->setBoundsOrigin(NSMakePoint(7, 20));
    mouse.drag(26 + 50, 165);
    EXPECT_EQ(values(picker->comps()), (std::vector{0.5, 0.2}));
}

TEST(ColorPickerMouse, OnlyTheMouseCallsBack)
{
    const Stage stage;
    std::vector<std::vector<double>> calls;
    stage.picker->setComponentsChangedCB([&](ZR2Components comps) { calls.push_back(values(comps)); });
    stage.picker->setComps({0.1, 0.2});
    EXPECT_TRUE(calls.empty());
    stage.mouse.press(51, 56);
    stage.mouse.drag(76, 26);
    stage.mouse.release(76, 26);
    EXPECT_EQ(calls, (std::vector<std::vector<double>>{{0.25, 0.8}, {0.5, 0.2}}));
}

TEST(ColorPickerMouse, WritesSettingsOnRequestThatOutliveTheProcess)
{
    const TemporaryFolder folder;
    const NSString path(folder.file("settings.plist"));
    std::optional<UserDefaultsFile> file(std::in_place, path);
    const NSUserDefaults* const defaults = NSUserDefaults::standardUserDefaults();
    const Stage stage;
    stage.mouse.click(51, 56);
    EXPECT_EQ(defaults->objectForKey("viewHue"), nullptr);
    EXPECT_EQ(defaults->objectForKey("viewSat"), nullptr);

    stage.picker->setLegacy_setSUD(true);
    stage.picker->setAxes(kZR2DColorPickerAxesRedGreen); // the keys are the same
    stage.picker->setComps({0.9, 0.9});
    EXPECT_EQ(defaults->objectForKey("viewHue"), nullptr);
    stage.mouse.click(51, 56);
    file.emplace(path); // reads as a new process does
    EXPECT_EQ(defaults->doubleForKey("viewHue"), 0.25);
    EXPECT_EQ(defaults->doubleForKey("viewSat"), 0.8);
}

TEST(ColorPickerMouse, TheCallbackSeesTheSettingsWritten)
{
    const TemporaryFolder folder;
    const UserDefaultsFile file{NSString(folder.file("settings.plist"))};
    const Stage stage;
    stage.picker->setLegacy_setSUD(true);
    double hue = -1;
    stage.picker->setComponentsChangedCB(
        [&](ZR2Components) { hue = NSUserDefaults::standardUserDefaults()->doubleForKey("viewHue"); });
    stage.mouse.press(51, 56);
    EXPECT_EQ(hue, 0.25);
}

TEST(ColorPickerMouse, TheCallbackMayReplaceItselfAndReleaseThePicker)
{
    std::optional<Stage> stage(std::in_place);
    const WeakPtr<ZR2DColorPicker> picker(stage->picker);
    int calls = 0;
    stage->picker->setComponentsChangedCB([&calls, &stage, marker = std::vector<int>(100, 7)](ZR2Components) {
        stage->picker->setComponentsChangedCB(nullptr);
        stage->picker->removeFromSuperview();
        stage->picker = nullptr;
        calls += marker[99];
    });
    stage->mouse.click(51, 56);
    EXPECT_EQ(calls, 7);
    EXPECT_FALSE(picker.lock());
}

TEST(ColorPickerMouse, AFieldWithoutASizeGivesComponentsBetween0And1)
{
    for (const NSSize size : {NSMakeSize(12, 12), NSMakeSize(3, 3), NSMakeSize(12, 62)}) {
        const auto picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, size.width, size.height));
        const MouseWindow mouse(picker);
        mouse.press(2, 2);
        EXPECT_EQ(values(picker->comps()), (std::vector{0.0, 0.0}));
        mouse.drag(6, 6); // 0 / 0 in the first one
        EXPECT_EQ(values(picker->comps()), (std::vector{0.0, 0.0}));
    }
}
