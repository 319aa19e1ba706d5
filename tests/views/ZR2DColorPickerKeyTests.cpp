#include "Foundation/testing/MainBundleFolder.h"
#include "Foundation/testing/UserDefaultsFile.h"
#include "KeyWindow.h"
#include "MouseWindow.h"
#include "support/Rendering.h"
#include "support/TemporaryFolder.h"

#include <KorvidAppKit/ZR2DColorPicker.h>

#include <Foundation/NSUserDefaults.h>

#include <gtest/gtest.h>
#include <vector>

namespace {

/// A picker of 62 x 42 points, its field 50 x 30, that has the keyboard focus.
struct PickerKeyStage {
    RetainPtr<ZR2DColorPicker> picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, 62, 42));
    KeyWindow keys{picker};
};

std::vector<double> values(ZR2Components comps)
{
    return {comps.compX, comps.compY};
}

/// Logs the keys that nothing inside has handled.
class OuterView : public NSView {
public:
    using NSView::NSView;
    int keys = 0;
    void keyDown(NSEvent*) override { ++keys; }
};

/// Whether a picker draws the ring: a white line at the edge of the bounds, and a black one inside of it.
bool hasRing(ZR2DColorPicker* picker)
{
    Rendering rendering(62, 42);
    rendering.draw(picker);
    const bool isWhite = rendering.at(0.5, 21) == kWhite;
    EXPECT_EQ(rendering.at(1.5, 21), isWhite ? kBlack : kGreen);
    EXPECT_EQ(rendering.at(61.5, 21), rendering.at(0.5, 21));
    EXPECT_EQ(rendering.at(31, 41.5), rendering.at(0.5, 21));
    EXPECT_EQ(rendering.at(31, 0.5), rendering.at(0.5, 21));
    EXPECT_EQ(rendering.at(2.5, 21), kGreen);
    return isWhite;
}

} // namespace

TEST(ColorPickerKeys, ArrowsMoveTheKnobByAHundredth)
{
    const PickerKeyStage stage;
    stage.picker->setNeedsDisplay(false);
    stage.keys.type(NSRightArrowFunctionKey);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.51, 0.5}));
    EXPECT_TRUE(takeDisplayMark(stage.picker));
    stage.keys.type(NSUpArrowFunctionKey);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.51, 0.51}));
    stage.keys.type(NSLeftArrowFunctionKey);
    stage.keys.type(NSLeftArrowFunctionKey);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.49, 0.51}));
    stage.keys.type(NSDownArrowFunctionKey);
    stage.keys.type(NSDownArrowFunctionKey);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.49, 0.49}));
}

TEST(ColorPickerKeys, WithShiftByATenth)
{
    const PickerKeyStage stage;
    stage.keys.type(NSRightArrowFunctionKey, NSEventModifierFlagShift);
    stage.keys.type(NSDownArrowFunctionKey, NSEventModifierFlagShift);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.6, 0.4}));
}

TEST(ColorPickerKeys, StepsBeginAtTheNearestHundredthAndLeaveTheOtherComponentAlone)
{
    const PickerKeyStage stage;
    stage.picker->setComps({0.2561, 0.123});
    stage.keys.type(NSRightArrowFunctionKey);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.27, 0.123}));
    stage.keys.type(NSDownArrowFunctionKey);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.27, 0.11}));
}

TEST(ColorPickerKeys, TheKnobStaysInTheField)
{
    const PickerKeyStage stage;
    stage.picker->setComps({0.95, 0.005});
    stage.keys.type(NSRightArrowFunctionKey, NSEventModifierFlagShift);
    stage.keys.type(NSDownArrowFunctionKey);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{1.0, 0.0}));
    stage.picker->setComps({-3, NAN});
    stage.keys.type(NSLeftArrowFunctionKey);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.0, 0.0}));
    stage.picker->setComps({NAN, 7});
    stage.keys.type(NSUpArrowFunctionKey);
    EXPECT_EQ(values(stage.picker->comps()), (std::vector{0.0, 1.0}));
}

TEST(ColorPickerKeys, CallBackAndWriteSettingsAsTheMouseDoes)
{
    const TemporaryFolder folder;
    const UserDefaultsFile file{NSString(folder.file("settings.plist"))};
    const PickerKeyStage stage;
    std::vector<std::vector<double>> calls;
    stage.picker->setComponentsChangedCB([&](ZR2Components comps) {
        calls.push_back(values(comps));
        calls.push_back({NSUserDefaults::standardUserDefaults()->doubleForKey("viewHue"),
            NSUserDefaults::standardUserDefaults()->doubleForKey("viewSat")});
    });
    stage.keys.type(NSRightArrowFunctionKey);
    stage.picker->setLegacy_setSUD(true);
    stage.keys.type(NSUpArrowFunctionKey);
    EXPECT_EQ(calls, (std::vector<std::vector<double>>{{0.51, 0.5}, {0, 0}, {0.51, 0.51}, {0.51, 0.51}}));
}

TEST(ColorPickerKeys, OtherKeysGoToTheNextResponder)
{
    const auto outer = make<OuterView>(NSMakeRect(0, 0, 100, 100));
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, 62, 42));
    outer->addSubview(picker);
    const KeyWindow keys(outer);
    ASSERT_TRUE(keys.window->makeFirstResponder(picker));
    keys.type(u'a');
    keys.type(u"\t");
    keys.type(u"");
    keys.type(NSLeftArrowFunctionKey, NSEventModifierFlagControl);
    keys.type(NSLeftArrowFunctionKey, NSEventModifierFlagOption);
    keys.type(NSLeftArrowFunctionKey, NSEventModifierFlagCommand);
    EXPECT_EQ(outer->keys, 6);
    EXPECT_EQ(values(picker->comps()), (std::vector{0.5, 0.5}));
    keys.type(NSLeftArrowFunctionKey);
    EXPECT_EQ(outer->keys, 6);
}

TEST(ColorPickerKeys, AFocusRingShowsThatKeysArrive)
{
    const PickerKeyStage stage;
    EXPECT_TRUE(hasRing(stage.picker));
    stage.picker->setNeedsDisplay(false);
    stage.keys.window->makeFirstResponder(nullptr);
    EXPECT_TRUE(takeDisplayMark(stage.picker));
    EXPECT_FALSE(hasRing(stage.picker));
}

TEST(ColorPickerKeys, APressTakesTheFocusWithoutARing)
{
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, 62, 42));
    const KeyWindow keys(picker);
    keys.window->makeFirstResponder(nullptr);
    const auto press = NSEvent::mouseEventWithType(
        NSEventTypeLeftMouseDown, NSMakePoint(31, 21), 0, 0, keys.window->windowNumber(), nullptr, 0, 1, 1);
    keys.window->sendEvent(press);
    EXPECT_EQ(keys.window->firstResponder(), picker.get());
    EXPECT_FALSE(hasRing(picker));
    keys.type(NSLeftArrowFunctionKey);
    EXPECT_TRUE(hasRing(picker));
}

TEST(ColorPickerKeys, AWindowWithoutTheKeyboardFocusShowsNoRing)
{
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, 62, 42));
    const MouseWindow mouse(picker);
    ASSERT_TRUE(mouse.window->makeFirstResponder(picker));
    EXPECT_FALSE(hasRing(picker));
}

TEST(ColorPickerKeys, TheKnobLiesOnTheRing)
{
    const PickerKeyStage stage;
    stage.picker->setPickerSize(20); // the field from 12 to 50, the knob's ring to 11 from its centre
    stage.picker->setComps({0, 0.5});
    Rendering rendering(62, 42);
    rendering.draw(stage.picker);
    EXPECT_NE(rendering.at(1.5, 21), kBlack);
    EXPECT_EQ(rendering.at(60.5, 21), kBlack);
}

TEST(ColorPickerAccessibility, IsAColourWellWithTheComponentsInWords)
{
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, 62, 42));
    EXPECT_TRUE(picker->isAccessibilityElement());
    EXPECT_EQ(picker->accessibilityRole(), NSAccessibilityColorWellRole);
    const auto words = [&](ZR2DColorPickerAxes axes) {
        picker->setAxes(axes);
        return picker->accessibilityValueDescription();
    };
    picker->setComps({0.254, 0.996});
    EXPECT_EQ(words(0x11), "hue 25 %, saturation 100 %");
    EXPECT_EQ(words(0x12), "hue 25 %, brightness 100 %");
    EXPECT_EQ(words(0x14), "saturation 25 %, brightness 100 %");
    EXPECT_EQ(words(0x21), "red 25 %, green 100 %");
    EXPECT_EQ(words(0x22), "red 25 %, blue 100 %");
    EXPECT_EQ(words(0x24), "green 25 %, blue 100 %");
    EXPECT_TRUE(words(0).isNull());
    EXPECT_TRUE(words(0x31).isNull());
    picker->setComps({NAN, -4});
    EXPECT_EQ(words(0x11), "hue 0 %, saturation 0 %");
}

TEST(ColorPickerAccessibility, ItsNameIsTheLabelOrTheToolTipOrColor)
{
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, 62, 42));
    EXPECT_EQ(picker->accessibilityLabel(), "Color");
    picker->setToolTip("Tint of the shadows");
    EXPECT_EQ(picker->accessibilityLabel(), "Tint of the shadows");
    picker->setAccessibilityLabel("Shadows");
    EXPECT_EQ(picker->accessibilityLabel(), "Shadows");
}

TEST(ColorPickerAccessibility, TheMainBundleTranslatesItsWords)
{
    const TemporaryFolder folder;
    folder.write("en.lproj/Localizable.strings",
        "\"Color\" = \"Couleur\"; \"hue\" = \"teinte\"; \"saturation\" = \"pureté\";");
    const MainBundleFolder bundle(NSString(folder.path().string()));
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, 62, 42));
    EXPECT_EQ(picker->accessibilityLabel(), "Couleur");
    EXPECT_EQ(picker->accessibilityValueDescription(), "teinte 50 %, pureté 50 %");
}
