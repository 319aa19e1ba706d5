#include "Text.h"

#include "Contrast.h"
#include "Page.h"

#include <AppKit/NSAppearance.h>
#include <CoreGraphics/CGColor.h>
#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr TextStyle kStyle = kCaptionText;

std::vector<std::string> wrapped(const char* text, CGFloat width)
{
    std::vector<std::string> lines;
    for (const NSString& line : wrappedText(text, kStyle, width))
        lines.push_back(line.UTF8String());
    return lines;
}

/// A colour over an opaque ground.
RGBColor over(CGColorRef color, CGColorRef ground)
{
    const CGFloat* const top = CGColorGetComponents(color);
    const CGFloat* const below = CGColorGetComponents(ground);
    RGBColor result{};
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = std::lerp(below[i], top[i], CGColorGetAlpha(color));
    return result;
}

} // namespace

TEST(TextStyle, IsReadableOnItsGroundInBothAppearances)
{
    for (const auto* appearance : {NSAppearanceNameDarkAqua, NSAppearanceNameAqua}) {
        NSAppearance::appearanceNamed(appearance)->performAsCurrentDrawingAppearance([&] {
            for (const TextStyle* style : kTextStyles) {
                const CGColorRef ground = galleryCGColor(style->ground);
                EXPECT_EQ(CGColorGetAlpha(ground), 1) << style->ground;
                EXPECT_GE(contrastRatio(over(galleryCGColor(style->color), ground), over(ground, ground)),
                    kReadableContrast)
                    << appearance << ": " << style->color << " on " << style->ground;
            }
        });
    }
}

TEST(WrappedText, BreaksAtSpacesWhichItLeavesOut)
{
    const CGFloat width = textWidth("one two", kStyle);
    EXPECT_EQ(wrapped("one two", width), (std::vector<std::string>{"one two"}));
    EXPECT_EQ(wrapped("one two", width - 1), (std::vector<std::string>{"one", "two"}));
    EXPECT_EQ(wrapped("  one   two ", width - 1), (std::vector<std::string>{"one", "two"}));
    EXPECT_EQ(wrapped("", 100), std::vector<std::string>{});
    EXPECT_EQ(wrapped("   ", 100), std::vector<std::string>{});
}

TEST(WrappedText, BreaksAfterAHyphenWithinAWordButNotAfterThoseOfAnOption)
{
    const CGFloat width = textWidth("zel-white-", kStyle);
    EXPECT_EQ(wrapped("zel-white-evenstronger", textWidth("zel-white-even", kStyle)),
        (std::vector<std::string>{"zel-white-", "evenstronger"}));
    EXPECT_EQ(wrapped("a --option", width), (std::vector<std::string>{"a --option"}));
    EXPECT_EQ(wrapped("abcde --option", textWidth("abcde --opt", kStyle)),
        (std::vector<std::string>{"abcde", "--option"}));
}

TEST(WrappedText, BreaksWordsThatAreWiderThanALine)
{
    EXPECT_EQ(wrapped("mmmmm", textWidth("mm", kStyle) + 1), (std::vector<std::string>{"mm", "mm", "m"}));
    EXPECT_EQ(wrapped("mm", 0), (std::vector<std::string>{"m", "m"}));
    // Characters of two units stay whole.
    EXPECT_EQ(wrapped("🎉🎉", 0), (std::vector<std::string>{"🎉", "🎉"}));
}

TEST(ShortenedText, EndsWithAnEllipsisIfTheTextIsTooWide)
{
    const CGFloat width = textWidth("a caption", kStyle);
    EXPECT_EQ(shortenedText("a caption", kStyle, width), "a caption");
    const NSString shortened = shortenedText("a caption", kStyle, width - 1);
    EXPECT_TRUE(shortened.UTF8String().ends_with("…"));
    EXPECT_LE(textWidth(shortened, kStyle), width - 1);
    EXPECT_EQ(shortenedText("", kStyle, 0), "");
}
