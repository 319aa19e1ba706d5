#include "Foundation/testing/NSLogCapture.h"
#include "support/Rendering.h"

#include <KorvidAppKit/ZR2DColorPicker.h>

#include <AppKit/NSColor.h>
#include <Foundation/NSData.h>
#include <Foundation/NSKeyedArchiver.h>

#include <cmath>
#include <gtest/gtest.h>

namespace {

const NSRect kFrame = NSMakeRect(0, 0, 30, 30);

/// A picker that is not marked for redisplay, and shows which image of the field it has cached.
class Picker : public ZR2DColorPicker {
public:
    using ZR2DColorPicker::ZR2DColorPicker;

    CGImageRef cachedImage() const { return _pickerImg.get(); }
    void draw()
    {
        Rendering rendering(int(bounds().size.width), int(bounds().size.height));
        rendering.draw(this);
        setNeedsDisplay(false);
    }

protected:
    ~Picker() override = default;
};

std::string describe(const NSColor* color)
{
    return color->description().UTF8String();
}

std::string colorFor(ZR2DColorPickerAxes axes, ZR2Components comps, double third)
{
    const auto picker = make<ZR2DColorPicker>(kFrame);
    picker->setAxes(axes);
    picker->setThirdComponent(third);
    return describe(picker->colorForComps(comps).get());
}

std::string deviceHSB(double hue, double saturation, double brightness)
{
    return describe(NSColor::colorWithDeviceHue(hue, saturation, brightness, 1).get());
}

std::string deviceRGB(double red, double green, double blue)
{
    return describe(NSColor::colorWithDeviceRed(red, green, blue, 1).get());
}

} // namespace

TEST(ColorPicker, StartsWithHueAndSaturationAtHalfBrightness)
{
    const auto picker = make<ZR2DColorPicker>(kFrame);
    EXPECT_EQ(picker->axes(), 17U);
    EXPECT_EQ(picker->axes(), kZR2DColorPickerAxesHueSaturation);
    EXPECT_EQ(picker->thirdComponent(), 0.5);
    EXPECT_EQ(picker->comps(), (ZR2Components{0.5, 0.5}));
    EXPECT_EQ(picker->pickerSize(), 8);
    EXPECT_FALSE(picker->legacy_setSUD());
    EXPECT_FALSE(picker->componentsChangedCB());
    EXPECT_EQ(describe(picker->color().get()), deviceHSB(0.5, 0.5, 0.5));
    EXPECT_EQ(make<ZR2DColorPicker>()->pickerSize(), 8);
}

TEST(ColorPicker, DecodesAsAViewWithItsDefaults)
{
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(1, 2, 30, 40));
    picker->setAxes(kZR2DColorPickerAxesRedBlue);
    const auto data = NSKeyedArchiver::archivedDataWithRootObject(picker, true, nullptr);
    const auto decoded = NSKeyedUnarchiver::unarchivedObjectOfClass<ZR2DColorPicker>(data, nullptr);
    ASSERT_TRUE(decoded);
    EXPECT_TRUE(NSEqualRects(decoded->frame(), NSMakeRect(1, 2, 30, 40)));
    EXPECT_EQ(decoded->axes(), 17U);
    EXPECT_EQ(decoded->pickerSize(), 8);
}

TEST(ColorPicker, AxesGiveTheComponentsTheirPlaces)
{
    constexpr ZR2Components comps{0.2, 0.7};
    EXPECT_EQ(colorFor(0x11, comps, 0.4), deviceHSB(0.2, 0.7, 0.4));
    EXPECT_EQ(colorFor(0x12, comps, 0.4), deviceHSB(0.2, 0.4, 0.7));
    EXPECT_EQ(colorFor(0x14, comps, 0.4), deviceHSB(0.4, 0.2, 0.7));
    EXPECT_EQ(colorFor(0x21, comps, 0.4), deviceRGB(0.2, 0.7, 0.4));
    EXPECT_EQ(colorFor(0x22, comps, 0.4), deviceRGB(0.2, 0.4, 0.7));
    EXPECT_EQ(colorFor(0x24, comps, 0.4), deviceRGB(0.4, 0.2, 0.7));
    EXPECT_EQ(kZR2DColorPickerAxesHueBrightness, 0x12U);
    EXPECT_EQ(kZR2DColorPickerAxesSaturationBrightness, 0x14U);
    EXPECT_EQ(kZR2DColorPickerAxesRedGreen, 0x21U);
    EXPECT_EQ(kZR2DColorPickerAxesRedBlue, 0x22U);
    EXPECT_EQ(kZR2DColorPickerAxesGreenBlue, 0x24U);
}

TEST(ColorPicker, AxesWithoutAMeaningAreBlackOrWhite)
{
    constexpr ZR2Components comps{0.2, 0.7};
    for (const ZR2DColorPickerAxes axes : {0x10, 0x13, 0x15, 0x30, 0x31, 0x51, 0x10011, 0x111})
        EXPECT_EQ(colorFor(axes, comps, 0.4), deviceHSB(0, 0, 0)) << axes;
    for (const ZR2DColorPickerAxes axes : {0x20, 0x23, 0x25, 0x61, 0x10021})
        EXPECT_EQ(colorFor(axes, comps, 0.4), deviceRGB(0, 0, 0)) << axes;
    for (const ZR2DColorPickerAxes axes : {0, 1, 7, 0x40, 0x10000})
        EXPECT_EQ(colorFor(axes, comps, 0.4), describe(NSColor::whiteColor())) << axes;
}

TEST(ColorPicker, StoresTheLow17BitsOfTheAxes)
{
    const auto picker = make<ZR2DColorPicker>(kFrame);
    picker->setAxes(0xFFFFFFFF);
    EXPECT_EQ(picker->axes(), 0x1FFFFU);
    picker->setAxes(0x20012);
    EXPECT_EQ(picker->axes(), kZR2DColorPickerAxesHueBrightness);
    picker->setAxes(0x10012);
    EXPECT_EQ(picker->axes(), 0x10012U);
}

TEST(ColorPicker, EverySetterRedrawsEvenForTheSameValue)
{
    const auto picker = make<Picker>(kFrame);
    picker->setNeedsDisplay(false);
    picker->setAxes(picker->axes());
    EXPECT_TRUE(takeDisplayMark(picker));
    picker->setComps(picker->comps());
    EXPECT_TRUE(takeDisplayMark(picker));
    picker->setThirdComponent(picker->thirdComponent());
    EXPECT_TRUE(takeDisplayMark(picker));
    picker->setPickerSize(picker->pickerSize());
    EXPECT_TRUE(takeDisplayMark(picker));

    picker->setLegacy_setSUD(true);
    EXPECT_TRUE(picker->legacy_setSUD());
    picker->setComponentsChangedCB([](ZR2Components) {});
    EXPECT_TRUE(picker->componentsChangedCB());
    EXPECT_FALSE(takeDisplayMark(picker));
}

TEST(ColorPicker, MovingTheKnobKeepsTheField)
{
    const auto picker = make<Picker>(kFrame);
    EXPECT_EQ(picker->cachedImage(), nullptr);
    picker->draw();
    const RetainPtr<CGImage> image = picker->cachedImage();
    ASSERT_TRUE(image);
    EXPECT_EQ(CGImageGetWidth(image), 18U); // 30 - 2 * (8 / 2 + 2)
    EXPECT_EQ(CGImageGetHeight(image), 18U);
    picker->setComps({0.1, 0.2});
    EXPECT_EQ(picker->cachedImage(), image);
    picker->draw();
    EXPECT_EQ(picker->cachedImage(), image);
    picker->setLegacy_setSUD(true);
    picker->setComponentsChangedCB(nullptr);
    EXPECT_EQ(picker->cachedImage(), image);
}

TEST(ColorPicker, WhatChangesTheFieldDiscardsIt)
{
    const std::pair<const char*, void (*)(Picker&)> cases[] = {
        {"axes", [](Picker& picker) { picker.setAxes(picker.axes()); }},
        {"third component", [](Picker& picker) { picker.setThirdComponent(picker.thirdComponent()); }},
        {"size of the knob", [](Picker& picker) { picker.setPickerSize(picker.pickerSize()); }},
        {"frame", [](Picker& picker) { picker.setFrame(picker.frame()); }},
        {"frame's size", [](Picker& picker) { picker.setFrameSize(picker.frame().size); }},
    };
    for (const auto& [name, set] : cases) {
        SCOPED_TRACE(name);
        const auto picker = make<Picker>(kFrame);
        picker->draw();
        ASSERT_TRUE(picker->cachedImage());
        set(*picker);
        EXPECT_EQ(picker->cachedImage(), nullptr);
        picker->draw();
        EXPECT_TRUE(picker->cachedImage());
    }
}

TEST(ColorPicker, AFieldHasTheSizeOfTheFrameAndTheKnob)
{
    const auto sizeOf = [](NSRect frame, double pickerSize) {
        const auto picker = make<Picker>(frame);
        picker->setPickerSize(pickerSize);
        picker->draw();
        return std::pair(CGImageGetWidth(picker->cachedImage()), CGImageGetHeight(picker->cachedImage()));
    };
    EXPECT_EQ(sizeOf(NSMakeRect(0, 0, 50, 30), 8), std::pair(38UL, 18UL));
    EXPECT_EQ(sizeOf(NSMakeRect(0, 0, 50, 30), 12), std::pair(34UL, 14UL));
    // From 6.5 to 43.5 and to 23.5: widened to whole points.
    EXPECT_EQ(sizeOf(NSMakeRect(0, 0, 50, 30), 9), std::pair(38UL, 18UL));
    EXPECT_EQ(sizeOf(NSMakeRect(0, 0, 50, 30), -4), std::pair(50UL, 30UL));
    EXPECT_EQ(sizeOf(NSMakeRect(0, 0, 13, 30), 8), std::pair(1UL, 18UL));
}

TEST(ColorPicker, LogsAFailureWithoutAContext)
{
    const NSLogCapture log;
    const auto picker = make<Picker>(kFrame);
    picker->drawRect(picker->bounds());
    EXPECT_EQ(log.messages(), std::vector<std::string>{"Failure in ZR2DColorPicker"});
    EXPECT_EQ(picker->cachedImage(), nullptr);
}

TEST(ColorPicker, DrawsNothingWithoutAFieldAndStaysUsable)
{
    constexpr double kInfinity = HUGE_VAL;
    const auto drawsWith = [](NSRect frame, double pickerSize) {
        const NSLogCapture log;
        Rendering rendering(30, 30);
        const auto picker = make<Picker>(frame);
        picker->setPickerSize(pickerSize);
        rendering.draw(picker);
        const auto messages = log.messages();
        ASSERT_FALSE(messages.empty());
        EXPECT_EQ(messages.back(), "Failure in ZR2DColorPicker");
        EXPECT_EQ(picker->cachedImage(), nullptr);
        EXPECT_EQ(rendering.at(15, 15), kGreen);
        EXPECT_EQ(rendering.at(5, 5), kGreen);
        picker->setPickerSize(8);
        picker->setFrame(kFrame);
        rendering.draw(picker);
        EXPECT_TRUE(picker->cachedImage());
    };
    drawsWith(NSMakeRect(0, 0, 12, 30), 8); // a width of exactly 0
    drawsWith(NSMakeRect(0, 0, 30, 12), 8);
    drawsWith(NSMakeRect(0, 0, 5, 5), 8);
    drawsWith(NSZeroRect, 8);
    drawsWith(NSMakeRect(NAN, NAN, NAN, NAN), 8);
    drawsWith(NSMakeRect(0, 0, 30, kInfinity), 8);
    drawsWith(NSMakeRect(0, 0, 40000, 30), 8);
    drawsWith(kFrame, NAN);
    drawsWith(kFrame, kInfinity);
    drawsWith(kFrame, -kInfinity);
}
