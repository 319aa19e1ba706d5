#include "support/AllocationCounter.h"
#include "support/Rendering.h"

#include <KorvidAppKit/ZR2DColorPicker.h>

#include <AppKit/NSColor.h>

#include <cmath>
#include <gtest/gtest.h>
#include <sstream>

namespace {

constexpr int kMargin = 6; ///< around the field with the default knob: 8 / 2 + 2

/// A picker with a field of a size, and its knob out of sight.
RetainPtr<ZR2DColorPicker> makePicker(int fieldWidth, int fieldHeight)
{
    auto picker =
        make<ZR2DColorPicker>(NSMakeRect(0, 0, fieldWidth + 2 * kMargin, fieldHeight + 2 * kMargin));
    picker->setComps({-100, -100});
    return picker;
}

/// The colour by the definition of the axes, with a colour object.
RetainPtr<NSColor> colorByRule(ZR2DColorPickerAxes axes, double x, double y, double third)
{
    switch (axes) {
    case 0x11:
        return NSColor::colorWithDeviceHue(x, y, third, 1);
    case 0x12:
        return NSColor::colorWithDeviceHue(x, third, y, 1);
    case 0x14:
        return NSColor::colorWithDeviceHue(third, x, y, 1);
    case 0x21:
        return NSColor::colorWithDeviceRed(x, y, third, 1);
    case 0x22:
        return NSColor::colorWithDeviceRed(x, third, y, 1);
    case 0x24:
        return NSColor::colorWithDeviceRed(third, x, y, 1);
    default:
        return (axes & 0x30) != 0 ? NSColor::blackColor() : NSColor::whiteColor();
    }
}

/// The pixel in sRGB, each component truncated to a byte.
CanvasPixel pixelByRule(const NSColor* color)
{
    double red = 0, green = 0, blue = 0, alpha = 0;
    color->colorUsingColorSpace(NSColorSpace::sRGBColorSpace())->getRed(&red, &green, &blue, &alpha);
    return rgba(int(red * 255), int(green * 255), int(blue * 255), int(alpha * 255));
}

/// The place of a column or row from the bottom in a side of the field.
double componentByRule(int index, int count)
{
    return count == 1 ? 0 : double(index) / (count - 1);
}

/// How many pixels of a drawn field differ from the rule, and the first of them.
std::string differences(int width, int height, ZR2DColorPickerAxes axes, double third)
{
    const auto picker = makePicker(width, height);
    picker->setAxes(axes);
    picker->setThirdComponent(third);
    Rendering rendering(width + 2 * kMargin, height + 2 * kMargin);
    rendering.draw(picker);
    int count = 0;
    std::ostringstream first;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const CanvasPixel actual = rendering.at(kMargin + x + 0.5, kMargin + y + 0.5);
            const auto color =
                colorByRule(axes, componentByRule(x, width), componentByRule(y, height), third);
            const CanvasPixel expected = pixelByRule(color);
            if (actual != expected && count++ == 0)
                first << ", first at " << x << " " << y << ": " << actual << " instead of " << expected;
        }
    }
    return count == 0 ? "none" : std::to_string(count) + first.str();
}

/// Tests draw at both scales.
class ColorPickerDrawing : public testing::TestWithParam<int> {
protected:
    Rendering rendering(int width, int height) const { return Rendering(width, height, GetParam()); }
};

} // namespace

TEST(ColorPickerField, EveryByteFollowsTheRule)
{
    for (const ZR2DColorPickerAxes axes : {0x11, 0x12, 0x14, 0x21, 0x22, 0x24, 0, 0x30, 0x20, 0x15}) {
        for (const double third : {0.0, 1.0 / 3, 0.5, 0.7, 1.0, -1.0, 1.7, double(NAN)}) {
            SCOPED_TRACE("axes " + std::to_string(axes) + ", third " + std::to_string(third));
            // Not a multiple of any number of pixels that are computed together.
            EXPECT_EQ(differences(61, 47, axes, third), "none");
        }
    }
}

TEST(ColorPickerField, ALargeFieldFollowsTheRule)
{
    EXPECT_EQ(differences(512, 512, 0x11, 0.9), "none");
}

TEST(ColorPickerField, OfOneColumnOrRowStandsForComponent0)
{
    for (const ZR2DColorPickerAxes axes : {0x11, 0x12, 0x14, 0x21, 0x22, 0x24}) {
        SCOPED_TRACE(axes);
        EXPECT_EQ(differences(1, 5, axes, 0.6), "none");
        EXPECT_EQ(differences(5, 1, axes, 0.6), "none");
        EXPECT_EQ(differences(1, 1, axes, 0.6), "none");
        EXPECT_EQ(differences(2, 2, axes, 0.6), "none");
    }
}

TEST(ColorPickerField, GoesFromGrayAtTheBottomLeftToRedAtTheTopRight)
{
    Rendering rendering(30, 30);
    rendering.draw(makePicker(18, 18).get());
    EXPECT_EQ(rendering.at(6.5, 6.5), rgba(127, 127, 127, 255));
    EXPECT_EQ(rendering.at(23.5, 23.5), rgba(127, 0, 0, 255));
    EXPECT_EQ(rendering.at(6.5, 23.5), rgba(127, 0, 0, 255));
    // Column 6 of 0 to 17: hue 6 / 17, of which 2 / 17 beyond green.
    EXPECT_EQ(rendering.at(12.5, 23.5), rgba(0, 127, 15, 255));
}

TEST_P(ColorPickerDrawing, ABlackFrameOfOnePointSurroundsTheField)
{
    Rendering rendering = this->rendering(30, 40);
    const auto picker = makePicker(18, 28);
    picker->setAxes(0); // white
    rendering.draw(picker);
    for (const double inside : {0.25, 0.75}) {
        EXPECT_EQ(rendering.at(6 - inside, 20), kBlack);
        EXPECT_EQ(rendering.at(24 + inside, 20), kBlack);
        EXPECT_EQ(rendering.at(15, 6 - inside), kBlack);
        EXPECT_EQ(rendering.at(15, 34 + inside), kBlack);
        EXPECT_EQ(rendering.at(6 - inside, 6 - inside), kBlack);
        EXPECT_EQ(rendering.at(24 + inside, 34 + inside), kBlack);
    }
    EXPECT_EQ(rendering.at(6.25, 20), kWhite);
    EXPECT_EQ(rendering.at(23.75, 20), kWhite);
    EXPECT_EQ(rendering.at(15, 6.25), kWhite);
    EXPECT_EQ(rendering.at(15, 33.75), kWhite);
    EXPECT_EQ(rendering.at(4.75, 20), kGreen);
    EXPECT_EQ(rendering.at(25.25, 20), kGreen);
    EXPECT_EQ(rendering.at(15, 4.75), kGreen);
    EXPECT_EQ(rendering.at(15, 35.25), kGreen);
}

TEST_P(ColorPickerDrawing, TheKnobIsADiscOfTheColourInAWhiteRingOverAShadow)
{
    Rendering rendering = this->rendering(124, 124);
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, 124, 124));
    picker->setPickerSize(20);
    picker->setAxes(0x21);
    picker->setThirdComponent(0);
    picker->setComps({0.25, 0.75});
    // The field goes from 12 to 112, so that the knob is centred at (37, 87).
    rendering.draw(picker);
    const CanvasPixel color = rgba(64, 191, 0, 255); // drawn colours are rounded: 63.75 and 191.25
    EXPECT_EQ(rendering.at(37.25, 87.25), color);
    // Further out lies the ring's soft shadow, which goes 3 points inward from 9.
    EXPECT_EQ(rendering.at(37.25, 82.25), color);
    // The ring is 2 points wide on a radius of 10, above the shadow.
    for (const double distance : {9.25, 9.75}) {
        EXPECT_EQ(rendering.at(37.25, 87 - distance), kWhite) << distance;
        EXPECT_EQ(rendering.at(37.25, 87 + distance), kWhite) << distance;
        EXPECT_EQ(rendering.at(37 - distance, 87.25), kWhite) << distance;
        EXPECT_EQ(rendering.at(37 + distance, 87.25), kWhite) << distance;
    }
}

TEST_P(ColorPickerDrawing, TheShadowRingLiesAPointBelowTheKnob)
{
    Rendering rendering = this->rendering(124, 124);
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, 124, 124));
    picker->setPickerSize(20);
    picker->setAxes(0);
    rendering.draw(picker); // centred at (62, 62), on white
    const auto level = [&](double x, double y) { return rendering.at(x, y).bytes[0]; };
    // 153 / 255 of black lets 102 through, which the soft shadow of the body darkens.
    EXPECT_LE(level(62.25, 62 - 11.5), 102);
    EXPECT_GT(level(62.25, 62 - 11.5), 30);
    // Above the knob the soft shadow is alone. Its blur of 3 ends 3 points from the ring.
    EXPECT_GT(level(62.25, 62 + 11.25), 102);
    EXPECT_LT(level(62.25, 62 + 11.25), 255);
    EXPECT_EQ(level(62.25, 62 + 14.75), 255);
    EXPECT_EQ(level(62.25, 62 - 14.75), 255);
    // Curves are flattened from their start on: mirrored pixels may differ by rounding.
    EXPECT_NEAR(level(62 - 11.25, 62.25), level(62 + 11.25, 62.25), 1);
}

TEST_P(ColorPickerDrawing, RestoresTheStateButForTheColourSpaces)
{
    Rendering rendering = this->rendering(30, 30);
    CGContextSetRGBFillColor(rendering.context(), 1, 0, 0, 1);
    CGContextSetRGBStrokeColor(rendering.context(), 1, 0, 0, 1);
    CGContextSetLineWidth(rendering.context(), 4);
    rendering.draw(makePicker(18, 18).get());
    CGContextFillRect(rendering.context(), CGRectMake(0, 0, 2, 2));
    CGContextStrokeRect(rendering.context(), CGRectMake(15, 15, 4, 4));
    EXPECT_EQ(rendering.at(1, 1), kBlack);
    EXPECT_EQ(rendering.at(2.5, 2.5), kGreen);
    EXPECT_EQ(rendering.at(15, 13.25), kBlack);
    EXPECT_NE(rendering.at(15, 12.75), kBlack);
}

TEST_P(ColorPickerDrawing, DrawsTheWholeViewWhateverIsDirty)
{
    Rendering whole = this->rendering(30, 30), part = this->rendering(30, 30);
    const auto picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, 30, 30));
    whole.draw(picker);
    part.draw(picker, NSMakeRect(3, 3, 1, 1));
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 30; ++x)
            EXPECT_EQ(part.at(x + 0.5, y + 0.5), whole.at(x + 0.5, y + 0.5)) << x << " " << y;
}

TEST_P(ColorPickerDrawing, AKnobOutOfSightLeavesTheFieldAlone)
{
    for (const ZR2Components comps :
        {ZR2Components{NAN, 0.5}, ZR2Components{0.5, HUGE_VAL}, ZR2Components{-1e300, 1e300}}) {
        Rendering rendering = this->rendering(30, 30);
        const auto picker = makePicker(18, 18);
        picker->setAxes(0);
        picker->setComps(comps);
        rendering.draw(picker);
        for (const double x : {6.25, 15.0, 23.75})
            for (const double y : {6.25, 15.0, 23.75})
                EXPECT_EQ(rendering.at(x, y), kWhite);
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, ColorPickerDrawing, testing::Values(1, 2));

TEST(ColorPickerField, IsNotBuiltAgainWhenTheKnobMoves)
{
    const auto picker = makePicker(300, 300);
    Rendering rendering(312, 312);
    rendering.draw(picker);
    picker->setComps({0.3, 0.3});
    rendering.draw(picker); // whatever drawing caches at its first knob
    picker->setComps({0.6, 0.6});
    const AllocationCounter allocations;
    rendering.draw(picker);
    EXPECT_LT(allocations.largest(), 300U * 300 * 4 / 4);
}
