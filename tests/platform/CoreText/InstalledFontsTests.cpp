#include "TextFixture.h"

#include "CoreText/CTLineInternal.h"

#include <cmath>
#include <random>

namespace {

double widthOf(const RetainPtr<const CTLine>& line)
{
    return CTLineGetTypographicBounds(line, nullptr, nullptr, nullptr);
}

std::size_t glyphCount(const RetainPtr<const CTLine>& line)
{
    return line->shaped().glyphs.size();
}

/// The number of pixels with a clear hue.
int colorfulPixels(const Canvas& canvas)
{
    int count = 0;
    for (int row = 0; row < canvas.height(); ++row)
        for (int column = 0; column < canvas.width(); ++column) {
            const auto bytes = canvas.pixel(column, row).bytes;
            count += std::abs(bytes[0] - bytes[2]) > 40 ? 1 : 0;
        }
    return count;
}

TEST(InstalledFonts, AreThoseOfTheTestsAlone)
{
    const auto found = [](const NSString& name) {
        return CTFontCopyPostScriptName(adopt(CTFontCreateWithName(name, 12)).get());
    };
    for (const char* name :
        {"LiberationSans", "LiberationSans-Bold", "DejaVuSans", "DroidSansFallback", "NotoColorEmoji"})
        EXPECT_EQ(found(name), name) << "./korvid test installs it";
    // These come in the same packages.
    for (const char* name : {"LiberationSerif", "DejaVuSans-Bold", "DejaVuSansMono"})
        EXPECT_NE(found(name), name);
}

TEST(InstalledFonts, LettersStandAtTheirDesignedPlaces)
{
    // O and F of Liberation Sans Bold are 1593 and 1251 units of 2048 wide.
    EXPECT_NEAR(widthOf(lineIn("Liberation Sans Bold", "OFF", 11)), 11 * (1593 + 2 * 1251) / 2048.0, 1e-5);
    EXPECT_NEAR(
        widthOf(lineIn("Liberation Sans Bold", "OFF", 11, 2)), 11 * (1593 + 2 * 1251) / 2048.0 + 6, 1e-5);
}

TEST(InstalledFonts, LettersThatAreSpacedDoNotJoin)
{
    const auto joined = lineIn("DejaVu Sans", "fi");
    const auto spaced = lineIn("DejaVu Sans", "fi", 16, 0.001);
    EXPECT_EQ(glyphCount(joined), 1u);
    EXPECT_EQ(glyphCount(spaced), 2u);
}

TEST(InstalledFonts, ALetterAndItsAccentAreComposed)
{
    const auto composed = lineIn("Liberation Sans", "\xC3\xA9");
    const auto apart = lineIn("Liberation Sans", "e\xCC\x81");
    EXPECT_EQ(glyphCount(apart), 1u);
    EXPECT_EQ(widthOf(apart), widthOf(composed));
}

TEST(InstalledFonts, ALetterTakesSixtyFourMarksAndNoMore)
{
    const auto glyphCountWith = [](int marks, const std::string& mark) {
        std::string text = "e";
        for (int i = 0; i < marks; ++i)
            text += mark;
        return glyphCount(lineIn("Liberation Sans", NSString(text + "e")));
    };
    // HarfBuzz looks back through all marks, joiners and selectors of variants for the letter of each.
    for (const char* mark : {"\xCC\xA6", "\xE2\x80\x8D", "\xEF\xB8\x8E"}) {
        SCOPED_TRACE(glyphCountWith(1, mark));
        EXPECT_EQ(glyphCountWith(64, mark), glyphCountWith(63, mark) + 1);
        EXPECT_EQ(glyphCountWith(200000, mark), glyphCountWith(64, mark));
    }
    EXPECT_EQ(glyphCountWith(100, "\xCC\xA6x"), 202u) << "of each letter";
}

TEST(InstalledFonts, HebrewReadsFromRightToLeft)
{
    // Alef, then a blank and digits: the digits stand to the left of the letter.
    const auto line = lineIn("DejaVu Sans", "\xD7\x90 12");
    ASSERT_GE(line->shaped().runs.size(), 2u);
    EXPECT_EQ(line->shaped().runs.front().clusterCount, 2u) << "the digits";
    const auto alone = lineIn("DejaVu Sans", "\xD7\x90");
    EXPECT_EQ(line->shaped().glyphs.back().id, alone->shaped().glyphs.front().id);
}

TEST(InstalledFonts, ArabicLettersJoin)
{
    const auto isolated = lineIn("DejaVu Sans", "\xD8\xA8");
    const auto joined = lineIn("DejaVu Sans", "\xD8\xA8\xD8\xA8");
    ASSERT_EQ(glyphCount(joined), 2u);
    EXPECT_NE(joined->shaped().glyphs[0].id, isolated->shaped().glyphs[0].id);
    EXPECT_NE(joined->shaped().glyphs[0].id, joined->shaped().glyphs[1].id);
}

TEST(InstalledFonts, MissingCharactersComeFromFallbackFonts)
{
    const auto line = lineIn("Liberation Sans", "a\xE4\xBD\xA0");
    ASSERT_EQ(line->shaped().runs.size(), 2u);
    EXPECT_NE(line->shaped().runs[0].face, line->shaped().runs[1].face);
    for (const ShapedGlyph& glyph : line->shaped().glyphs)
        EXPECT_NE(glyph.id, 0u);
    CGFloat ascent = 0, alone = 0;
    CTLineGetTypographicBounds(line, &ascent, nullptr, nullptr);
    CTLineGetTypographicBounds(lineIn("Liberation Sans", "a").get(), &alone, nullptr, nullptr);
    EXPECT_GE(ascent, alone) << "heights are those of all fonts that were used";
}

TEST(InstalledFonts, EmojiShowTheirOwnColors)
{
    Canvas canvas(40, 24);
    CGContextSetTextPosition(canvas.context(), 2, 4);
    const auto line = lineIn("Liberation Sans", "\xF0\x9F\x8E\x89", 16);
    CTLineDraw(line, canvas.context());
    EXPECT_GT(colorfulPixels(canvas), 60);

    // All of it lies within what the line says that it inks.
    const CGRect ink = CGRectInset(CTLineGetImageBounds(line, canvas.context()), -1, -1);
    for (int row = 0; row < canvas.height(); ++row)
        for (int column = 0; column < canvas.width(); ++column)
            EXPECT_TRUE(canvas.alpha(column, row) == 0
                || CGRectContainsPoint(ink, {column + 0.5, canvas.height() - row - 0.5}));
}

/// The glyphs of a line but the last one, each as its number and advance.
std::vector<std::pair<std::uint32_t, double>> glyphsBeforeLast(const CTLine& line)
{
    std::vector<std::pair<std::uint32_t, double>> glyphs;
    for (const ShapedGlyph& glyph : line.shaped().glyphs)
        glyphs.emplace_back(glyph.id, glyph.advance);
    glyphs.pop_back();
    return glyphs;
}

TEST(InstalledFonts, PlainTextHasTheSameGlyphsAsTextThatPangoItemizes)
{
    // The last character, which is not ASCII, makes Pango itemize the text: as Latin, or as of no script.
    struct Case {
        const char* name;
        std::uint32_t characters; ///< from '!' on
        const char* end;
        const char* plainLast;
        const char* itemizedLast;
    };
    constexpr Case kCases[]{
        {"letters", 94, "ffi fl ", "e", "\u00E9"}, {"no letters", 32, "1/2 ", "+", "\u00D7"}};
    std::mt19937 random(1);
    for (const char* font : {"Liberation Sans", "DejaVu Sans"}) {
        for (const Case& test : kCases) {
            for (int i = 0; i < 300; ++i) {
                std::string text;
                for (std::uint32_t length = random() % (i % 5 == 0 ? 200 : 12); length > 0; --length)
                    text += random() % 6 == 0 ? ' ' : char('!' + random() % test.characters);
                text += test.end;
                SCOPED_TRACE(testing::Message() << font << ", " << test.name << ": " << text);
                const double kern = i % 2; // 1 turns ligatures off
                const auto plain = lineIn(font, NSString(text + test.plainLast), 16, kern);
                const auto itemized = lineIn(font, NSString(text + test.itemizedLast), 16, kern);
                ASSERT_EQ(glyphsBeforeLast(*plain), glyphsBeforeLast(*itemized));
            }
        }
    }
}

TEST(InstalledFonts, TextLooksTheSameAtEachScale)
{
    // At scale 4, the mean of 4 x 4 pixels is a pixel at scale 1, but for the steps of coverage.
    constexpr int kScale = 4;
    const Canvas small(40, 14);
    Canvas large(40 * kScale, 14 * kScale);
    CGContextScaleCTM(large.context(), kScale, kScale);
    const auto line = lineIn("Liberation Sans", "Rag 8", 11);
    for (const Canvas* canvas : {&small, static_cast<const Canvas*>(&large)}) {
        CGContextSetShouldSubpixelQuantizeFonts(canvas->context(), false);
        CGContextSetTextPosition(canvas->context(), 1.3, 3.6);
        CTLineDraw(line, canvas->context());
    }
    int worst = 0;
    for (int row = 0; row < small.height(); ++row)
        for (int column = 0; column < small.width(); ++column) {
            int sum = 0;
            for (int y = 0; y < kScale; ++y)
                for (int x = 0; x < kScale; ++x)
                    sum += large.alpha(column * kScale + x, row * kScale + y);
            worst = std::max(worst, std::abs(sum / (kScale * kScale) - small.alpha(column, row)));
        }
    // cairo samples rows at 15 levels: horizontal edges are off by up to 9 at either scale.
    EXPECT_LE(worst, 18);
}

} // namespace
