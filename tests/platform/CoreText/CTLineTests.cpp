#include "TextFixture.h"

#include "support/Describe.h"
#include "support/Numbers.h"
#include "support/Threads.h"

namespace {

double widthOf(CTLineRef line)
{
    return CTLineGetTypographicBounds(line, nullptr, nullptr, nullptr);
}

using CTLineTest = SquareFontTest;

TEST_F(CTLineTest, IsAsWideAsItsAdvances)
{
    EXPECT_EQ(widthOf(squareLine("A bA", 10).get()), 35);
    EXPECT_EQ(widthOf(squareLine(" A ", 10).get()), 20) << "blanks at the ends count";
    EXPECT_EQ(widthOf(squareLine("A", 0.125).get()), 0.125) << "sizes are not rounded";
}

TEST_F(CTLineTest, AddsTheKernAfterEveryCharacterTheLastIncluded)
{
    EXPECT_EQ(widthOf(squareLine("AAA", 10, 2).get()), 36);
    EXPECT_EQ(widthOf(squareLine("AA", 10, -1.5).get()), 17);
    EXPECT_EQ(widthOf(squareLine("A", 10, kNaN).get()), 10);
    EXPECT_EQ(widthOf(squareLine("A", 10, kInfinity).get()), 10);
}

TEST_F(CTLineTest, KernsALetterWithItsMarkOnce)
{
    // The font has neither the letter nor the mark, nor what they compose to: one sign for what is missing.
    EXPECT_EQ(widthOf(squareLine("e\xCC\x81", 10, 4).get()), 6.5);
}

TEST_F(CTLineTest, HasTheFacesHeightsAtItsSize)
{
    CGFloat ascent = 0, descent = 0, leading = 0;
    CTLineGetTypographicBounds(squareLine("A", 20).get(), &ascent, &descent, &leading);
    EXPECT_EQ(ascent, 16);
    EXPECT_EQ(descent, 4);
    EXPECT_EQ(leading, 2);
}

TEST_F(CTLineTest, TakesTheLargestHeightsOfItsRuns)
{
    const auto text = make<NSMutableAttributedString>(squares("A", 20).get());
    text->appendAttributedString(squares("A", 10).get());
    const auto line = adopt(CTLineCreateWithAttributedString(text));
    CGFloat ascent = 0;
    EXPECT_EQ(CTLineGetTypographicBounds(line, &ascent, nullptr, nullptr), 30);
    EXPECT_EQ(ascent, 16);
}

TEST_F(CTLineTest, OfAnEmptyTextHasNeitherWidthNorHeight)
{
    const auto line = squareLine("", 10);
    ASSERT_TRUE(line);
    CGFloat ascent = 1, descent = 1, leading = 1;
    EXPECT_EQ(CTLineGetTypographicBounds(line, &ascent, &descent, &leading), 0);
    EXPECT_EQ(ascent, 0);
    EXPECT_EQ(descent, 0);
    EXPECT_EQ(leading, 0);
    EXPECT_EQ(
        describe(CTLineGetBoundsWithOptions(line, kCTLineBoundsUseGlyphPathBounds)), describe(CGRectZero));
}

TEST_F(CTLineTest, OfNullIsNullAndHasNoBounds)
{
    EXPECT_EQ(CTLineCreateWithAttributedString(nullptr), nullptr);
    CGFloat ascent = 1;
    EXPECT_EQ(CTLineGetTypographicBounds(nullptr, &ascent, nullptr, nullptr), 0);
    EXPECT_EQ(ascent, 0);
    EXPECT_TRUE(CGRectIsNull(CTLineGetBoundsWithOptions(nullptr, {})));
    EXPECT_TRUE(CGRectIsNull(CTLineGetImageBounds(nullptr, nullptr)));
    CTLineDraw(nullptr, nullptr);
    CTLineDraw(squareLine("A", 10).get(), nullptr);
}

TEST_F(CTLineTest, BoundsReachFromDescentAndLeadingToAscent)
{
    const auto line = squareLine("AA", 10);
    EXPECT_EQ(describe(CTLineGetBoundsWithOptions(line, {})), describe(CGRectMake(0, -3, 20, 11)));
    EXPECT_EQ(describe(CTLineGetBoundsWithOptions(line, kCTLineBoundsExcludeTypographicLeading)),
        describe(CGRectMake(0, -2, 20, 10)));
    EXPECT_EQ(describe(CTLineGetBoundsWithOptions(line, kCTLineBoundsUseOpticalBounds)),
        describe(CGRectMake(0, -2, 20, 10)));
}

TEST_F(CTLineTest, GlyphPathBoundsAreTheInksAlone)
{
    // b: ink from 0 to 5 in both directions, x: from -5 to 5 beside its pen, -5 to 2.5 above the line.
    EXPECT_EQ(
        describe(CTLineGetBoundsWithOptions(squareLine(" bx", 10, 1).get(), kCTLineBoundsUseGlyphPathBounds)),
        describe(CGRectMake(6, -5, 16, 10)));
    EXPECT_EQ(
        describe(CTLineGetBoundsWithOptions(squareLine("  ", 10).get(), kCTLineBoundsUseGlyphPathBounds)),
        describe(CGRectZero))
        << "blanks have no ink";
}

TEST_F(CTLineTest, ImageBoundsLieWhereTheInkIsDrawn)
{
    Canvas canvas(20, 20);
    const auto line = squareLine("b", 8);
    CGContextTranslateCTM(canvas.context(), 100, 100); // they are in user space
    EXPECT_EQ(describe(CTLineGetImageBounds(line, canvas.context())), describe(CGRectMake(0, 0, 4, 4)));
    CGContextSetTextPosition(canvas.context(), 3, 5.5);
    EXPECT_EQ(describe(CTLineGetImageBounds(line, canvas.context())), describe(CGRectMake(3, 5.5, 4, 4)));
    CGContextSetTextMatrix(canvas.context(), {2, 0, 0, -1, 1, 0});
    EXPECT_EQ(describe(CTLineGetImageBounds(line, canvas.context())), describe(CGRectMake(1, -4, 8, 4)));
    EXPECT_EQ(describe(CTLineGetImageBounds(squareLine(" ", 8).get(), canvas.context())),
        describe(CGRectMake(1, 0, 0, 0)));
    EXPECT_EQ(describe(CTLineGetImageBounds(line, nullptr)), describe(CGRectMake(0, 0, 4, 4)));
}

TEST_F(CTLineTest, DrawsTheMissingGlyphForALetterThatNoFontHas)
{
    // A bar of a quarter em for each.
    const auto line = squareLine("zz", 8);
    EXPECT_EQ(widthOf(line), 4);
    EXPECT_EQ(describe(CTLineGetBoundsWithOptions(line, kCTLineBoundsUseGlyphPathBounds)),
        describe(CGRectMake(0, 0, 4, 8)));
}

TEST_F(CTLineTest, WithoutAFontIsSetAtTwelvePoints)
{
    const auto text = make<NSAttributedString>("AA");
    EXPECT_EQ(widthOf(adopt(CTLineCreateWithAttributedString(text)).get()), 24);
}

TEST_F(CTLineTest, LeavesControlCharactersWithoutInk)
{
    for (const NSString& text :
        {NSString(std::string_view("\0", 1)), NSString("\n"), NSString("\t"), NSString("\r\n")})
        EXPECT_TRUE(CGRectIsEmpty(
            CTLineGetBoundsWithOptions(squareLine(text, 10).get(), kCTLineBoundsUseGlyphPathBounds)))
            << int(text.characterAtIndex(0));
}

TEST_F(CTLineTest, TakesBrokenTextAsItIs)
{
    const char16_t halfPair[] = {u'A', 0xD83D, u'A'};
    const auto line = squareLine(NSString(std::u16string_view(halfPair, 3)), 10);
    EXPECT_EQ(widthOf(line), 22.5) << "half a surrogate pair is a missing glyph";
}

TEST_F(CTLineTest, IsLaidOutOncePerText)
{
    const auto first = squareLine("A bA", 10);
    const auto before = fontWork();
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(widthOf(squareLine("A bA", 10 + i).get()), 3.5 * (10 + i));
        (void)adopt(CTFontCreateWithName("Squares", i));
        (void)adopt(CTFontCreateWithName("No such font", i));
    }
    const auto after = fontWork();
    EXPECT_EQ(after.layouts, before.layouts) << "all sizes share one layout";
    EXPECT_EQ(after.fontQueries, before.fontQueries + 8)
        << "the missing name by each of 3 properties, its family, 3 families in its place, sans-serif";
    squareLine("A b", 10);
    EXPECT_EQ(fontWork().layouts, before.layouts + 1);
}

TEST_F(CTLineTest, EvictsLinesThatWereNotUsedForLong)
{
    // Far more text than the cache holds.
    for (int i = 0; i < 200; ++i)
        squareLine(NSString(std::string(900, 'A') + std::to_string(i)), 10);
    const auto before = fontWork();
    squareLine(NSString(std::string(900, 'A') + "199"), 10);
    EXPECT_EQ(fontWork().layouts, before.layouts);
    squareLine(NSString(std::string(900, 'A') + "0"), 10);
    EXPECT_EQ(fontWork().layouts, before.layouts + 1);
}

/// Lays out some lines that were not laid out before, of so many letters and a number.
void layOutNewLines(int count, std::size_t letters = 1)
{
    static int last = 0;
    const auto attributes = make<NSMutableDictionary>();
    for (int i = 0; i < count; ++i) {
        const auto text = make<NSAttributedString>(
            NSString(std::string(letters, 'b') + std::to_string(++last)), attributes);
        EXPECT_TRUE(adopt(CTLineCreateWithAttributedString(text.get())));
    }
}

TEST_F(CTLineTest, TextThatChangesEvictsNoLabels)
{
    squareLine("A label", 10);
    squareLine("A label", 10);
    layOutNewLines(100, 900); // more than the larger cache holds
    const auto before = fontWork();
    squareLine("A label", 10);
    EXPECT_EQ(fontWork().layouts, before.layouts);
}

TEST_F(CTLineTest, LongTextThatIsLaidOutOnceEvictsNoLabels)
{
    squareLine("A label", 10);
    squareLine("A label", 10);
    for (int i = 0; i < 100; ++i)
        squareLine(NSString(std::string(2000, 'A') + std::to_string(i)), 10);
    const auto before = fontWork();
    squareLine("A label", 10);
    EXPECT_EQ(fontWork().layouts, before.layouts);
}

TEST_F(CTLineTest, LongTextIsCachedWhenItReturns)
{
    for (const std::uint64_t layouts : {1u, 1u, 0u}) {
        const auto before = fontWork();
        squareLine(NSString(std::string(2000, 'A')), 10);
        EXPECT_EQ(fontWork().layouts, before.layouts + layouts);
    }
}

TEST_F(CTLineTest, IsCachedWhenItReturnsAfterMuchOtherText)
{
    for (const std::uint64_t layouts : {1u, 1u, 0u}) {
        const auto before = fontWork();
        squareLine("A label", 10);
        EXPECT_EQ(fontWork().layouts, before.layouts + layouts);
        layOutNewLines(150);
    }
}

TEST_F(CTLineTest, LaysOutTextOfAnyLength)
{
    EXPECT_EQ(widthOf(squareLine(NSString(std::string(100000, 'A')), 10).get()), 1000000);
}

TEST_F(CTLineTest, MayBeMadeOnManyThreads)
{
    onThreads(4, [](int thread) {
        for (int i = 0; i < 200; ++i)
            EXPECT_EQ(widthOf(squareLine(NSString(std::string(1 + (i + thread) % 50, 'A')), 10).get()),
                10 * (1 + (i + thread) % 50));
    });
}

} // namespace
