#include "PlainHexParser.h"
#include "support/AllocationCounter.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <AppKit/NSColor.h>

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Quadruple = std::array<double, 4>;

constexpr Quadruple kUntouchedColor{-7, -7, -7, -7};

Quadruple parsed(const char* string)
{
    Quadruple rgba = kUntouchedColor;
    ZRGraphics::hexColor(string, rgba.data());
    return rgba;
}

ZRGraphics* graphics()
{
    return ZRGraphics::sharedGraphics();
}

/// The components of a colour, alpha last.
std::vector<double> components(CGColorRef color)
{
    const CGFloat* first = CGColorGetComponents(color);
    return {first, first + CGColorGetNumberOfComponents(color)};
}

bool isTransparentBlackInSRGB(CGColorRef color)
{
    return CGColorGetColorSpace(color) == graphics()->csSRGB()
        && components(color) == std::vector<double>{0, 0, 0, 0};
}

} // namespace

TEST(HexColor, SixDigitsAreAnOpaqueColour)
{
    EXPECT_EQ(parsed("ffffff"), (Quadruple{1, 1, 1, 1}));
    EXPECT_EQ(parsed("01DAFD"), (Quadruple{1 / 255.0, 218 / 255.0, 253 / 255.0, 1}));
}

TEST(HexColor, EightDigitsHaveAlphaLast)
{
    EXPECT_EQ(parsed("ffffff45"), (Quadruple{1, 1, 1, 69 / 255.0}));
    EXPECT_EQ(parsed("02031D88"), (Quadruple{2 / 255.0, 3 / 255.0, 29 / 255.0, 136 / 255.0}));
    EXPECT_EQ(parsed("00000000"), (Quadruple{0, 0, 0, 0}));
}

TEST(HexColor, UpperAndLowerCaseAreEqual)
{
    EXPECT_EQ(parsed("aAbBcCdD"), parsed("AabbCCDd"));
}

TEST(HexColor, AnyOtherLengthLeavesTheResultUnchanged)
{
    for (const char* string : {"", "f", "ff", "fff", "ffff", "fffff", "fffffff", "#ffffff", "fffffffff"})
        EXPECT_EQ(parsed(string), kUntouchedColor) << string;
}

TEST(HexColor, NullPointersDoNothing)
{
    EXPECT_EQ(parsed(nullptr), kUntouchedColor);
    ZRGraphics::hexColor("ffffff", nullptr);
}

TEST(HexColor, ASignWhiteSpaceAndTheLongestValidPrefixCount)
{
    // Red: a sign and a digit. Green: white space and a digit. Blue: a digit and something else.
    // Alpha: no digit.
    EXPECT_EQ(parsed("-1 ffzzf"), (Quadruple{0, 15 / 255.0, 15 / 255.0, 0}));
    EXPECT_EQ(parsed("+f0x\t9-f"), (Quadruple{15 / 255.0, 0, 9 / 255.0, 0}));
}

TEST(HexColor, EveryPairOfBytesIsReadAsStrtolReadsIt)
{
    for (const std::string form : {"123456", "12345678"}) {
        for (std::size_t place = 0; place < form.size(); place += 2) {
            for (int high = 0; high < 256; ++high) {
                for (int low = 0; low < 256; ++low) {
                    std::string string = form;
                    string[place] = static_cast<char>(high);
                    string[place + 1] = static_cast<char>(low);
                    Quadruple expected = kUntouchedColor;
                    plainHexColor(string.c_str(), expected.data());
                    ASSERT_EQ(parsed(string.c_str()), expected)
                        << high << ", " << low << " at " << place << " of " << form.size();
                }
            }
        }
    }
}

TEST(CGColorFromHex, IsTheSameObjectInUpperAndLowerCase)
{
    const CGColorRef color = graphics()->CGColorFromHex("ffffff");
    EXPECT_EQ(graphics()->CGColorFromHex("FFFFFF"), color);
    EXPECT_EQ(graphics()->CGColorFromHex("fFfFfF"), color);
    EXPECT_EQ(graphics()->CGColorFromHex("zel K"), graphics()->CGColorFromHex("ZEL k"));
}

TEST(CGColorFromHex, IsTheSameObjectEachTime)
{
    const CGColorRef color = graphics()->CGColorFromHex("fb7f15");
    for (int i = 0; i < 1000; ++i)
        graphics()->CGColorFromHex(NSString("0000" + std::to_string(1000 + i)));
    EXPECT_EQ(graphics()->CGColorFromHex("fb7f15"), color);
}

TEST(CGColorFromHex, LongFormsAreInSRGB)
{
    const CGColorRef color = graphics()->CGColorFromHex("02031D88");
    EXPECT_EQ(CGColorGetColorSpace(color), graphics()->csSRGB());
    EXPECT_EQ(components(color), (std::vector<double>{2 / 255.0, 3 / 255.0, 29 / 255.0, 136 / 255.0}));
    EXPECT_EQ(components(graphics()->CGColorFromHex("ffffff")), (std::vector<double>{1, 1, 1, 1}));
}

TEST(CGColorFromHex, TwoDigitsAreAnOpaqueDeviceGray)
{
    const CGColorRef color = graphics()->CGColorFromHex("80");
    EXPECT_EQ(CGColorGetColorSpace(color), graphics()->csDeviceGray());
    EXPECT_EQ(components(color), (std::vector<double>{128 / 255.0, 1}));
    EXPECT_EQ(graphics()->CGColorFromHex("AA"), graphics()->CGColorFromHex("aa"));
    EXPECT_EQ(components(graphics()->CGColorFromHex("AA")), (std::vector<double>{170 / 255.0, 1}));
}

TEST(CGColorFromHex, AGrayIsNotClamped)
{
    EXPECT_EQ(components(graphics()->CGColorFromHex("-1")), (std::vector<double>{-1 / 255.0, 1}));
    EXPECT_EQ(components(graphics()->CGColorFromHex(" f")), (std::vector<double>{15 / 255.0, 1}));
    EXPECT_EQ(components(graphics()->CGColorFromHex("zz")), (std::vector<double>{0, 1}));
}

TEST(CGColorFromHex, OtherLengthsAreTransparentBlack)
{
    for (const char* string : {"8080", "#ffffff", "", "f", "fff", "fffff", "fffffffff",
             "a text that is much longer than any colour"})
        EXPECT_TRUE(isTransparentBlackInSRGB(graphics()->CGColorFromHex(string))) << string;
    EXPECT_TRUE(isTransparentBlackInSRGB(graphics()->CGColorFromHex(nullptr)));
}

TEST(CGColorFromHex, AStringThatIsNotASCIIIsTransparentBlackAndCached)
{
    for (const char* string : {"é", "éé", "ÉÉ", "fffffé", "ffffff\u00A0f", "🙂🙂🙂🙂"}) {
        const CGColorRef color = graphics()->CGColorFromHex(string);
        EXPECT_TRUE(isTransparentBlackInSRGB(color)) << string;
        EXPECT_EQ(graphics()->CGColorFromHex(string), color) << string;
    }
    EXPECT_EQ(graphics()->CGColorFromHex("ÉÉÉÉÉÉ"), graphics()->CGColorFromHex("éééééé"));
    // The lower case of the Kelvin sign is an ASCII letter.
    EXPECT_EQ(graphics()->CGColorFromHex("\u212Affffff"), graphics()->CGColorFromHex("kffffff"));
}

TEST(CGColorFromHex, LookingUpACachedColourAllocatesNothing)
{
    for (const char* string : {"aa", "ffffff", "FB7F15", "02031D88"})
        graphics()->CGColorFromHex(string);

    const AllocationCounter counter;
    graphics()->CGColorFromHex("aa");
    graphics()->CGColorFromHex("ffffff");
    graphics()->CGColorFromHex("FB7F15");
    graphics()->CGColorFromHex("02031D88");
    EXPECT_EQ(counter.count(), 0u);
}

TEST(HexColor, ParsingAllocatesNothing)
{
    double rgba[4];
    const AllocationCounter counter;
    ZRGraphics::hexColor("02031D88", rgba);
    ZRGraphics::hexColor("-1 ffzzf", rgba);
    EXPECT_EQ(counter.count(), 0u);
}

TEST(AllocationCounter, CountsAllocationsOfTheLibraries)
{
    const AllocationCounter counter;
    const NSString text("longer than any string that is stored without an allocation");
    EXPECT_EQ(counter.count(), 1u) << text.length();
}

TEST(GenColorForHex, ReturnsTrueAndLeavesACachedColourAsItIs)
{
    const auto own = make<ZRGraphics>();
    EXPECT_TRUE(own->_genColorForHex("0A0B0C"));
    const CGColorRef color = own->CGColorFromHex("0a0b0c");
    EXPECT_EQ(components(color), (std::vector<double>{10 / 255.0, 11 / 255.0, 12 / 255.0, 1}));
    EXPECT_TRUE(own->_genColorForHex("0a0b0c"));
    EXPECT_EQ(own->CGColorFromHex("0a0b0c"), color);

    EXPECT_TRUE(own->_genColorForHex("malformed"));
    EXPECT_TRUE(own->_genColorForHex(nullptr));
    EXPECT_TRUE(own->_genColorForHex("7F"));
    EXPECT_EQ(components(own->CGColorFromHex("7f")), (std::vector<double>{127 / 255.0, 1}));
}

TEST(GenColorForHex, CachesUnderTheLowerCasedString)
{
    const auto own = make<ZRGraphics>();
    own->_genColorForHex("0A0B0C");
    const AllocationCounter counter;
    own->CGColorFromHex("0a0b0c");
    EXPECT_EQ(counter.count(), 0u) << "nothing was generated";
}

TEST(GenGrayscaleColorForHex, LeavesACachedGrayAsItIs)
{
    const auto own = make<ZRGraphics>();
    const RetainPtr<CGColor> first(own->CGColorFromHex("40"));
    EXPECT_TRUE(own->_genGrayscaleColorForHex("40"));
    EXPECT_EQ(own->CGColorFromHex("40"), first.get());
}

TEST(GenGrayscaleColorForHex, ReadsTheWholeStringAsOneNumber)
{
    const auto own = make<ZRGraphics>();
    EXPECT_TRUE(own->_genGrayscaleColorForHex("40"));
    EXPECT_EQ(components(own->CGColorFromHex("40")), (std::vector<double>{64 / 255.0, 1}));
    EXPECT_TRUE(own->_genGrayscaleColorForHex("1fe"));
    EXPECT_EQ(components(own->CGColorFromHex("1fe")), (std::vector<double>{2, 1}));
    EXPECT_TRUE(own->_genGrayscaleColorForHex("éé"));
    EXPECT_EQ(components(own->CGColorFromHex("éé")), (std::vector<double>{0, 0, 0, 0}));
}

TEST(PlatformColorFromHex, IsANewObjectWithTheCachedColour)
{
    const auto color = graphics()->platformColorFromHex("FBAC2B");
    const auto again = graphics()->platformColorFromHex("fbac2b");
    ASSERT_TRUE(color);
    EXPECT_NE(color, again);
    EXPECT_EQ(color->CGColor(), graphics()->CGColorFromHex("fbac2b"));

    CGFloat red = 0, green = 0, blue = 0, alpha = 0;
    color->getRed(&red, &green, &blue, &alpha);
    EXPECT_EQ((Quadruple{red, green, blue, alpha}), (Quadruple{251 / 255.0, 172 / 255.0, 43 / 255.0, 1}));

    CGFloat white = 0;
    graphics()->platformColorFromHex("33")->getWhite(&white, &alpha);
    EXPECT_EQ(white, 51 / 255.0);
    EXPECT_EQ(alpha, 1);
}
