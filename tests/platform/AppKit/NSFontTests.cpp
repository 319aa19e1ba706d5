#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSStringAttributes.h>
#include <CoreText/CTLine.h>

#include "AppKit/testing/EffectiveAppearance.h"
#include "support/Canvas.h"

#include <limits>

namespace {

TEST(NSFont, IsNullForAnUnknownName)
{
    EXPECT_FALSE(NSFont::fontWithName("Helvetica Neue Regular", 9));
    EXPECT_FALSE(NSFont::fontWithName("Liberation Sans Heavy", 9)) << "not even in another weight";
    EXPECT_FALSE(NSFont::fontWithName("", 9));
    EXPECT_FALSE(NSFont::fontWithName(NSString(), 9));
}

TEST(NSFont, IsFoundByName)
{
    const auto font = NSFont::fontWithName("Liberation Sans Bold", 13);
    ASSERT_TRUE(font);
    EXPECT_EQ(font->fontName(), "LiberationSans-Bold");
    EXPECT_EQ(font->familyName(), "Liberation Sans");
    EXPECT_EQ(font->pointSize(), 13);
}

TEST(NSFont, MetricsAreInPointsAndTheDescenderIsNegative)
{
    // Liberation Sans has 1854, 434 and 67 units of 2048.
    const auto font = NSFont::fontWithName("Liberation Sans", 2048);
    EXPECT_EQ(font->ascender(), 1854);
    EXPECT_EQ(font->descender(), -434);
    EXPECT_EQ(font->leading(), 67);
}

TEST(NSFont, TheSystemFontReplacesHelvetica)
{
    EXPECT_EQ(NSFont::systemFontOfSize(9)->fontName(), "LiberationSans");
    EXPECT_EQ(NSFont::boldSystemFontOfSize(9)->fontName(), "LiberationSans-Bold");
    EXPECT_EQ(NSFont::systemFontOfSize(9)->pointSize(), 9);
}

TEST(NSFont, WithAnInvalidSizeHasTheDefaultSize)
{
    for (const double size : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(NSFont::systemFontOfSize(size)->pointSize(), 13);
        EXPECT_EQ(NSFont::boldSystemFontOfSize(size)->pointSize(), 13);
        EXPECT_EQ(NSFont::fontWithName("Liberation Sans", size)->pointSize(), 12);
    }
}

TEST(NSFont, IsUsedWithNSColorToDrawLines)
{
    EXPECT_EQ(NSFontAttributeName, kCTFontAttributeName);
    EXPECT_EQ(NSKernAttributeName, kCTKernAttributeName);
    EXPECT_EQ(NSForegroundColorAttributeName, kCTForegroundColorAttributeName);
}

/// The colour of a full block character that is drawn much larger than the canvas.
CanvasPixel pixelOfText(NSColor* color)
{
    const auto attributes = make<NSMutableDictionary>();
    attributes->setObject(NSFont::fontWithName("Liberation Sans", 40), NSFontAttributeName);
    attributes->setObject(color, NSForegroundColorAttributeName);
    const auto text = make<NSAttributedString>("█", attributes);
    const Canvas canvas(3, 3);
    CGContextSetTextPosition(canvas.context(), -5, 0);
    CTLineDraw(adopt(CTLineCreateWithAttributedString(text)).get(), canvas.context());
    return canvas.pixel(1, 1);
}

TEST(NSFont, LinesAreDrawnInTheVariantOfTheCurrentAppearance)
{
    EXPECT_EQ(pixelOfText(NSColor::redColor()), rgba(255, 0, 0, 255));
    EXPECT_EQ(pixelOfText(NSColor::clearColor()), rgba(0, 0, 0, 0));
    EffectiveAppearance appearance(NSAppearanceNameAqua);
    const auto light = pixelOfText(NSColor::labelColor());
    appearance.set(NSAppearanceNameDarkAqua);
    EXPECT_EQ(light, rgba(0, 0, 0, 216));
    EXPECT_EQ(pixelOfText(NSColor::labelColor()), rgba(216, 216, 216, 216));
}

} // namespace
