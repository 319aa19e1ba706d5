#include <AppKit/NSColor.h>

#include <Foundation/NSException.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

namespace {

/// Each conversion is a few operations on numbers up to 1, each with a rounding error of 1.1e-16.
constexpr double kRounding = 1e-15;

class PlainStripes : public NSColor { };

struct HSB {
    double hue = -1;
    double saturation = -1;
    double brightness = -1;
    double alpha = -1;

    bool operator==(const HSB&) const = default;
};

HSB hsbOf(double red, double green, double blue, double alpha = 1)
{
    HSB hsb;
    NSColor::colorWithSRGBRed(red, green, blue, alpha)
        ->getHue(&hsb.hue, &hsb.saturation, &hsb.brightness, &hsb.alpha);
    return hsb;
}

struct RGB {
    double red = -1;
    double green = -1;
    double blue = -1;

    bool operator==(const RGB&) const = default;
};

RGB rgbOf(double hue, double saturation, double brightness)
{
    RGB rgb;
    NSColor::colorWithHue(hue, saturation, brightness, 1)->getRed(&rgb.red, &rgb.green, &rgb.blue, nullptr);
    return rgb;
}

void expectRaises(const std::function<void()>& call, const char* reason)
{
    try {
        call();
        ADD_FAILURE() << "nothing raised: " << reason;
    } catch (const NSException& exception) {
        EXPECT_EQ(exception.name(), NSInvalidArgumentException);
        EXPECT_EQ(exception.reason(), reason);
    }
}

} // namespace

TEST(NSColorComponents, AreReadableIndividually)
{
    const auto rgb = NSColor::colorWithDeviceRed(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ(rgb->redComponent(), 0.1);
    EXPECT_EQ(rgb->greenComponent(), 0.2);
    EXPECT_EQ(rgb->blueComponent(), 0.3);
    EXPECT_EQ(rgb->alphaComponent(), 0.4);
    EXPECT_EQ(rgb->numberOfComponents(), 4);

    const auto gray = NSColor::colorWithDeviceWhite(0.1, 0.4);
    EXPECT_EQ(gray->whiteComponent(), 0.1);
    EXPECT_EQ(gray->alphaComponent(), 0.4);
    EXPECT_EQ(gray->numberOfComponents(), 2);

    const auto hsb = NSColor::colorWithSRGBRed(0, 0.5, 0.25, 1);
    EXPECT_EQ(hsb->hueComponent(), 2.5 / 6);
    EXPECT_EQ(hsb->saturationComponent(), 1);
    EXPECT_EQ(hsb->brightnessComponent(), 0.5);
}

TEST(NSColorComponents, AreReadableTogetherThroughNonNullPointers)
{
    const auto rgb = NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4);
    double red = 0, green = 0, blue = 0, alpha = 0;
    rgb->getRed(&red, &green, &blue, &alpha);
    EXPECT_EQ(red, 0.1);
    EXPECT_EQ(green, 0.2);
    EXPECT_EQ(blue, 0.3);
    EXPECT_EQ(alpha, 0.4);
    EXPECT_NO_THROW(rgb->getRed(nullptr, nullptr, nullptr, nullptr));
    EXPECT_NO_THROW(rgb->getHue(nullptr, nullptr, nullptr, nullptr));
    EXPECT_NO_THROW(rgb->getComponents(nullptr));

    double white = 0;
    const auto gray = NSColor::colorWithCalibratedWhite(0.7, 0.6);
    gray->getWhite(&white, &alpha);
    EXPECT_EQ(white, 0.7);
    EXPECT_EQ(alpha, 0.6);
    EXPECT_NO_THROW(gray->getWhite(nullptr, nullptr));
}

TEST(NSColorComponents, GetComponentsWritesOnlyAsManyAsThereAre)
{
    double values[] = {7, 7, 7, 7};
    NSColor::colorWithDeviceWhite(0.1, 0.4)->getComponents(values);
    EXPECT_EQ(values[0], 0.1);
    EXPECT_EQ(values[1], 0.4);
    EXPECT_EQ(values[2], 7);
}

TEST(NSColorComponents, OfRGBRaiseForGray)
{
    const RetainPtr<NSColor> gray = NSColor::whiteColor();
    const char* const rest =
        " not valid for the NSColor genericGamma22Gray colorspace 1 1; need to first convert colorspace.";
    const auto expect = [&](const char* method, const std::function<void()>& call) {
        expectRaises(call, (std::string(method) + rest).c_str());
    };
    double value = 7;
    expect("-redComponent", [&] { value = gray->redComponent(); });
    expect("-greenComponent", [&] { value = gray->greenComponent(); });
    expect("-blueComponent", [&] { value = gray->blueComponent(); });
    expect("-hueComponent", [&] { value = gray->hueComponent(); });
    expect("-saturationComponent", [&] { value = gray->saturationComponent(); });
    expect("-brightnessComponent", [&] { value = gray->brightnessComponent(); });
    expect("-getRed:green:blue:alpha:", [&] { gray->getRed(&value, nullptr, nullptr, nullptr); });
    expect("-getHue:saturation:brightness:alpha:", [&] { gray->getHue(&value, nullptr, nullptr, nullptr); });
    EXPECT_EQ(value, 7);
}

TEST(NSColorComponents, OfGrayRaiseForRGB)
{
    const RetainPtr<NSColor> red = NSColor::redColor();
    expectRaises([&] { EXPECT_EQ(red->whiteComponent(), 0); },
        "-whiteComponent not valid for the NSColor sRGB colorspace 1 0 0 1; need to first convert "
        "colorspace.");
    expectRaises([&] { red->getWhite(nullptr, nullptr); },
        "-getWhite:alpha: not valid for the NSColor sRGB colorspace 1 0 0 1; need to first convert "
        "colorspace.");
}

TEST(NSColorComponents, RaiseForVariants)
{
    const RetainPtr<NSColor> label = NSColor::labelColor();
    const auto expect = [&](const char* method, const std::function<void()>& call) {
        expectRaises(call,
            (std::string(method)
                + " not valid for the NSColor Catalog color: labelColor; need to first convert colorspace.")
                .c_str());
    };
    double values[4];
    expect("-colorSpace", [&] { EXPECT_EQ(label->colorSpace(), nullptr); });
    expect("-numberOfComponents", [&] { EXPECT_EQ(label->numberOfComponents(), 0); });
    expect("-getComponents:", [&] { label->getComponents(values); });
    expect("-whiteComponent", [&] { EXPECT_EQ(label->whiteComponent(), 0); });
    expect("-redComponent", [&] { EXPECT_EQ(label->redComponent(), 0); });
}

TEST(NSColorComponents, RaiseForColorsWithoutComponents)
{
    const auto stripes = make<PlainStripes>();
    EXPECT_THROW(stripes->colorSpace(), NSException);
    EXPECT_THROW(stripes->whiteComponent(), NSException);
    EXPECT_THROW(stripes->getRed(nullptr, nullptr, nullptr, nullptr), NSException);
}

TEST(NSColorHSB, OfPrimariesAndMixturesIsExact)
{
    EXPECT_EQ(hsbOf(1, 0, 0, 0.25), (HSB{0, 1, 1, 0.25}));
    EXPECT_EQ(hsbOf(1, 1, 0), (HSB{1.0 / 6, 1, 1, 1}));
    EXPECT_EQ(hsbOf(0, 1, 0), (HSB{2.0 / 6, 1, 1, 1}));
    EXPECT_EQ(hsbOf(0, 1, 1), (HSB{3.0 / 6, 1, 1, 1}));
    EXPECT_EQ(hsbOf(0, 0, 1), (HSB{4.0 / 6, 1, 1, 1}));
    EXPECT_EQ(hsbOf(1, 0, 1), (HSB{5.0 / 6, 1, 1, 1}));
    EXPECT_EQ(hsbOf(0.5, 0.25, 0.25), (HSB{0, 0.5, 0.5, 1}));
}

TEST(NSColorHSB, OfGraysHasNeitherHueNorSaturation)
{
    for (const double gray : {0.0, 0.3, 1.0})
        EXPECT_EQ(hsbOf(gray, gray, gray), (HSB{0, 0, gray, 1}));
}

TEST(NSColorHSB, HueStaysBelowOne)
{
    // The hue is so close to 1 that it would be rounded to it.
    EXPECT_EQ(hsbOf(1, 0, 1e-300).hue, 0);
    EXPECT_LT(hsbOf(1, 0, 1e-10).hue, 1);
    EXPECT_GT(hsbOf(1, 0, 1e-10).hue, 0.999);
}

TEST(NSColorHSB, OfComponentsOutOfRangeIsThatOfTheClampedOnes)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(hsbOf(7, -3, nan), (HSB{0, 1, 1, 1}));
    EXPECT_EQ(hsbOf(-1, 7, 0, -5), (HSB{2.0 / 6, 1, 1, -5}));
}

TEST(NSColorHSB, ConvertsToRGBExactly)
{
    EXPECT_EQ(rgbOf(0, 1, 1), (RGB{1, 0, 0}));
    EXPECT_EQ(rgbOf(1.0 / 6, 1, 1), (RGB{1, 1, 0}));
    EXPECT_EQ(rgbOf(2.0 / 6, 1, 1), (RGB{0, 1, 0}));
    EXPECT_EQ(rgbOf(3.0 / 6, 1, 1), (RGB{0, 1, 1}));
    EXPECT_EQ(rgbOf(4.0 / 6, 1, 1), (RGB{0, 0, 1}));
    EXPECT_EQ(rgbOf(5.0 / 6, 1, 1), (RGB{1, 0, 1}));
    EXPECT_EQ(rgbOf(1, 1, 1), (RGB{1, 0, 0}));
    EXPECT_EQ(rgbOf(0.125, 0.5, 1), (RGB{1, 0.875, 0.5}));
    EXPECT_EQ(rgbOf(0.7, 0, 0.25), (RGB{0.25, 0.25, 0.25}));
    EXPECT_EQ(rgbOf(0.7, 1, 0), (RGB{0, 0, 0}));
}

TEST(NSColorHSB, IsClamped)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(rgbOf(7, 1, 1), (RGB{1, 0, 0}));
    EXPECT_EQ(rgbOf(-0.3, 2, 3), (RGB{1, 0, 0}));
    EXPECT_EQ(rgbOf(0.7, -1, 0.5), (RGB{0.5, 0.5, 0.5}));
    EXPECT_EQ(rgbOf(nan, 1, 1), (RGB{1, 0, 0}));
    EXPECT_EQ(rgbOf(0.7, nan, nan), (RGB{0, 0, 0}));
    EXPECT_EQ(NSColor::colorWithHue(0, 0, 0, 7)->alphaComponent(), 7);
}

TEST(NSColorHSB, RoundTripsEveryEightBitColor)
{
    for (int red = 0; red <= 255; red += 15)
        for (int green = 0; green <= 255; green += 15)
            for (int blue = 0; blue <= 255; blue += 15) {
                const HSB hsb = hsbOf(red / 255.0, green / 255.0, blue / 255.0);
                const RGB rgb = rgbOf(hsb.hue, hsb.saturation, hsb.brightness);
                ASSERT_NEAR(rgb.red, red / 255.0, kRounding);
                ASSERT_NEAR(rgb.green, green / 255.0, kRounding);
                ASSERT_NEAR(rgb.blue, blue / 255.0, kRounding);
                ASSERT_EQ(std::max({rgb.red, rgb.green, rgb.blue}), hsb.brightness);
            }
}

TEST(NSColorHSB, RoundTripsRandomHues)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> unit(0, 1);
    for (int i = 0; i < 10000; ++i) {
        const double hue = unit(random);
        const double saturation = 0.1 + 0.9 * unit(random);
        const double brightness = 0.1 + 0.9 * unit(random);
        const RGB rgb = rgbOf(hue, saturation, brightness);
        const HSB hsb = hsbOf(rgb.red, rgb.green, rgb.blue);
        // A small range of the components magnifies their rounding errors.
        const double rounding = kRounding / (saturation * brightness);
        const double distance = std::abs(hsb.hue - hue);
        ASSERT_LE(std::min(distance, 1 - distance), rounding);
        ASSERT_NEAR(hsb.saturation, saturation, rounding);
        ASSERT_EQ(hsb.brightness, brightness);
    }
}
