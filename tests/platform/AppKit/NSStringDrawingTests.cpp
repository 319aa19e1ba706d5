#include "../CoreText/DotFont.h"
#include "support/Canvas.h"
#include "support/Describe.h"

#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSParagraphStyle.h>
#include <AppKit/NSStringDrawing.h>

using namespace NSExtendedStringDrawing;

namespace {

constexpr NSStringDrawingOptions kBlock = NSStringDrawingUsesLineFragmentOrigin;
constexpr NSStringDrawingOptions kBlockWithLeading = kBlock | NSStringDrawingUsesFontLeading;
constexpr double kHuge = std::numeric_limits<double>::max();

/// To thousandths of a point: advances are rounded to about a millionth em.
std::string describeRounded(NSRect rect)
{
    const auto rounded = [](double length) { return std::round(length * 1000) / 1000; };
    return describe(NSMakeRect(
        rounded(rect.origin.x), rounded(rect.origin.y), rounded(rect.size.width), rounded(rect.size.height)));
}

using Style = std::function<void(NSMutableParagraphStyle&)>;

class NSStringDrawingTest : public DotFontTest {
protected:
    /// The text with a paragraph style.
    static RetainPtr<NSAttributedString> styled(const NSString& text, const Style& change, CGFloat size = 5)
    {
        const auto style = make<NSMutableParagraphStyle>();
        change(*style);
        const auto attributes = dots(size);
        attributes->setObject(style->copy(), NSParagraphStyleAttributeName);
        return make<NSAttributedString>(text, attributes);
    }
    static RetainPtr<NSAttributedString> plain(const NSString& text, CGFloat size = 5)
    {
        return styled(
            text, [](NSMutableParagraphStyle&) {}, size);
    }

    /// As "0 0 width height".
    static std::string sizeOf(const RetainPtr<NSAttributedString>& text, double width = kHuge)
    {
        return describeRounded(boundingRectWithSize(text, NSMakeSize(width, kHuge), kBlock));
    }
    static double heightOf(const RetainPtr<NSAttributedString>& text, double width = kHuge,
        NSStringDrawingOptions options = kBlock)
    {
        return boundingRectWithSize(text, NSMakeSize(width, kHuge), options).size.height;
    }

    /// Draws with the y axis upward, or downward from the top.
    static void draw(Canvas& canvas, const RetainPtr<NSAttributedString>& text, NSRect rect,
        NSStringDrawingOptions options = kBlock, bool isFlipped = false)
    {
        CGContextSaveGState(canvas.context());
        if (isFlipped)
            CGContextConcatCTM(canvas.context(), {1, 0, 0, -1, 0, double(canvas.height())});
        NSGraphicsContext::setCurrentContext(
            NSGraphicsContext::graphicsContextWithCGContext(canvas.context(), isFlipped));
        drawWithRect(text, rect, options);
        NSGraphicsContext::setCurrentContext(nullptr);
        CGContextRestoreGState(canvas.context());
    }
};

/// A row of a canvas: "#" for opaque pixels.
std::string dotsInRow(const Canvas& canvas, int row)
{
    std::string dots;
    for (int column = 0; column < canvas.width(); ++column)
        dots += canvas.alpha(column, row) == 255 ? '#' : '.';
    return dots;
}

/// A setter of the alignment or the line-break mode.
Style aligned(NSTextAlignment alignment)
{
    return [=](NSMutableParagraphStyle& style) { style.setAlignment(alignment); };
}
Style breaking(NSLineBreakMode mode)
{
    return [=](NSMutableParagraphStyle& style) { style.setLineBreakMode(mode); };
}

} // namespace

// Measuring.

TEST_F(NSStringDrawingTest, ALineIsAsWideAsItsAdvancesAndAsHighAsItsFont)
{
    EXPECT_EQ(sizeOf(plain("a a")), "0 0 5 5");
    EXPECT_EQ(heightOf(plain("a"), kHuge, kBlockWithLeading), 5.5);
    EXPECT_EQ(sizeOf(plain("a", 2.25)), "0 0 0.9 2.25") << "not rounded";
}

TEST_F(NSStringDrawingTest, ALineIsAsHighAsItsLargestFont)
{
    const auto text = make<NSMutableAttributedString>(plain("aaa").get());
    text->addAttribute(NSFontAttributeName, NSFont::fontWithName("Dots", 10), NSMakeRange(1, 1));
    EXPECT_EQ(sizeOf(text), "0 0 8 10");
}

TEST_F(NSStringDrawingTest, SeparatorsEndParagraphs)
{
    EXPECT_EQ(sizeOf(plain("a\naaa")), "0 0 6 10");
    for (const char* separator : {"\n", "\r", "\r\n", "\v", "\f", "\u0085", "\u2028", "\u2029"})
        EXPECT_EQ(
            heightOf(plain(NSString("a").stringByAppendingString(separator).stringByAppendingString("a"))),
            10)
            << int(NSString(separator).view().front());
    EXPECT_EQ(heightOf(plain("a\n\na")), 15);
    EXPECT_EQ(heightOf(plain("a\n")), 10) << "a separator at the end starts a line";
    EXPECT_EQ(heightOf(plain("\n")), 10);
    EXPECT_EQ(heightOf(plain("\n\r")), 15) << "only a line feed belongs to the carriage return before it";
}

TEST_F(NSStringDrawingTest, AnEmptyLineIsAsHighAsTheFontOfItsSeparator)
{
    const auto text = make<NSMutableAttributedString>(plain("a\n\na\n").get());
    text->addAttribute(NSFontAttributeName, NSFont::fontWithName("Dots", 20), NSMakeRange(2, 1));
    EXPECT_EQ(heightOf(text), 5 + 20 + 5 + 5);
    text->addAttribute(NSFontAttributeName, NSFont::fontWithName("Dots", 30), NSMakeRange(4, 1));
    EXPECT_EQ(heightOf(text), 5 + 20 + 5 + 30);
}

TEST_F(NSStringDrawingTest, WrapsAtTheLastWordThatFits)
{
    const auto text = plain("aa aa aa"); // words of 4, blanks of 1
    EXPECT_EQ(sizeOf(text, 14), "0 0 14 5");
    EXPECT_EQ(sizeOf(text, 13.99), "0 0 9 10");
    EXPECT_EQ(sizeOf(text, 9), "0 0 9 10");
    EXPECT_EQ(sizeOf(text, 8.99), "0 0 4 15");
}

TEST_F(NSStringDrawingTest, BlanksHangOverTheEndOfAWrappedLine)
{
    EXPECT_EQ(sizeOf(plain("aa    aa"), 4), "0 0 4 10");
    EXPECT_EQ(sizeOf(plain("aa    "), 5), "0 0 4 5");
    EXPECT_EQ(sizeOf(plain("aa    "), 8), "0 0 8 5") << "where they fit they count";
}

TEST_F(NSStringDrawingTest, BreaksWordsThatDoNotFitAlone)
{
    EXPECT_EQ(sizeOf(plain("aaaaa"), 5), "0 0 4 15");
    EXPECT_EQ(sizeOf(plain("a aaaaa"), 5), "0 0 4 20");
    EXPECT_EQ(sizeOf(plain("aaa"), 0.5), "0 0 2 15") << "a line has one character at least";
    EXPECT_EQ(heightOf(plain("a\u0301a\u0301"), 0.5), heightOf(plain("á\ná")))
        << "marks stay with their letters";
}

TEST_F(NSStringDrawingTest, WrapsAtAnyCharacterWhereTheStyleSaysSo)
{
    EXPECT_EQ(sizeOf(styled("aa aa aa", breaking(NSLineBreakByCharWrapping)), 8), "0 0 7 10");
    EXPECT_EQ(sizeOf(styled("aaaaaaaaaa", breaking(NSLineBreakByCharWrapping)), 4), "0 0 4 25");
}

TEST_F(NSStringDrawingTest, LongParagraphsHaveAsManyLinesAsTheyNeed)
{
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += "aa ";
    EXPECT_EQ(sizeOf(plain(NSString(text)), 5 * 50), "0 0 249 100");
}

TEST_F(NSStringDrawingTest, AWidthThatIsNotPositiveIsNoLimit)
{
    for (const double width : {0.0, -5.0, std::nan(""), std::numeric_limits<double>::infinity()})
        EXPECT_EQ(sizeOf(plain("aa aa"), width), "0 0 9 5") << width;
}

TEST_F(NSStringDrawingTest, LineHeightsHaveLimits)
{
    const auto height = [](const Style& change) { return heightOf(styled("a\na", change)); };
    EXPECT_EQ(height([](auto& style) { style.setMinimumLineHeight(7); }), 14);
    EXPECT_EQ(height([](auto& style) { style.setMinimumLineHeight(4); }), 10);
    EXPECT_EQ(height([](auto& style) { style.setMaximumLineHeight(3); }), 6);
    EXPECT_EQ(height([](auto& style) { style.setMaximumLineHeight(6); }), 10);
    EXPECT_EQ(height([](auto& style) { style.setLineHeightMultiple(1.5); }), 15);
    EXPECT_EQ(height([](auto& style) {
        style.setLineHeightMultiple(1.5);
        style.setMaximumLineHeight(6);
    }),
        12)
        << "the factor comes first";
    EXPECT_EQ(height([](auto& style) { style.setLineSpacing(3); }), 13) << "between the lines only";
}

TEST_F(NSStringDrawingTest, StringsWithOneSetOfAttributesAreMeasuredDirectly)
{
    EXPECT_EQ(describeRounded(boundingRectWithSize("aa aa", NSMakeSize(5, 0), kBlockWithLeading, dots())),
        "0 0 4 11");
}

TEST_F(NSStringDrawingTest, NothingHasNoSize)
{
    EXPECT_EQ(describeRounded(boundingRectWithSize(nullptr, NSMakeSize(100, 100), kBlock)), "0 0 0 0");
    EXPECT_EQ(describeRounded(boundingRectWithSize("", NSMakeSize(100, 100), kBlock, dots())), "0 0 0 0");
    EXPECT_EQ(describeRounded(boundingRectWithSize(NSString(), NSMakeSize(100, 100), 0, nullptr)), "0 0 0 0");
}

TEST_F(NSStringDrawingTest, WithoutTheBlockItIsTheFirstParagraphOnABaseline)
{
    const NSSize size = NSMakeSize(4, kHuge);
    EXPECT_EQ(describeRounded(boundingRectWithSize(plain("aa aa\na").get(), size, 0)), "0 -1 9 5");
    EXPECT_EQ(
        describeRounded(boundingRectWithSize(plain("aa aa\na").get(), size, NSStringDrawingUsesFontLeading)),
        "0 -1.5 9 5.5");
}

// Drawing.

TEST_F(NSStringDrawingTest, DrawsFromTheTopDownward)
{
    Canvas canvas(6, 13);
    draw(canvas, plain("aa\n a"), NSMakeRect(1, 0, 5, 12));
    EXPECT_COVERAGE(canvas,
        "......"
        "......"
        "......"
        "......"
        ".#.#.." // 4 below the rectangle's top, 1 above the bottom of the line
        "......"
        "......"
        "......"
        "......"
        "..#..."
        "......"
        "......"
        "......");
}

TEST_F(NSStringDrawingTest, DrawsTheSameInAFlippedContext)
{
    Canvas canvas(6, 13);
    draw(canvas, plain("aa\n a…"), NSMakeRect(1, 1, 5, 12), kBlock, true);
    EXPECT_COVERAGE(canvas,
        "......"
        "......"
        "......"
        "......"
        ".#.#.."
        "......"
        "......"
        "......"
        "....#." // upright
        "..#.#."
        "......"
        "......"
        "......");
}

TEST_F(NSStringDrawingTest, LinesBelowTheRectangleAreDrawn)
{
    Canvas canvas(2, 10);
    draw(canvas, plain("a\na"), NSMakeRect(0, 9, 2, 1));
    EXPECT_EQ(canvas.alpha(0, 8), 255);
}

TEST_F(NSStringDrawingTest, AlignsEachLine)
{
    const std::pair<NSTextAlignment, const char*> cases[]{
        {NSTextAlignmentLeft, "#.#..... #......."}, {NSTextAlignmentCenter, "..#.#... ...#...."},
        {NSTextAlignmentRight, "....#.#. ......#."}, {NSTextAlignmentNatural, "#.#..... #......."},
        {NSTextAlignmentJustified, "#.#..... #......."}, // each is the last line of its paragraph
    };
    for (const auto& [alignment, rows] : cases) {
        SCOPED_TRACE(alignment);
        Canvas canvas(8, 10);
        draw(canvas, styled("aa\na", aligned(alignment)), NSMakeRect(0, 0, 8, 10));
        EXPECT_EQ(dotsInRow(canvas, 3) + " " + dotsInRow(canvas, 8), rows);
    }
}

TEST_F(NSStringDrawingTest, NaturalAlignmentFollowsTheScript)
{
    Canvas canvas(5, 10);
    draw(canvas, plain("א\na"), NSMakeRect(0, 0, 5, 10));
    EXPECT_EQ(canvas.alpha(3, 3), 255);
    EXPECT_EQ(canvas.alpha(0, 3), 0);
    EXPECT_EQ(canvas.alpha(0, 8), 255) << "each paragraph has its own direction";
}

TEST_F(NSStringDrawingTest, JustifiedLinesReachFromEdgeToEdgeButForTheLast)
{
    Canvas canvas(10, 10);
    draw(canvas, styled("a a a a", aligned(NSTextAlignmentJustified)), NSMakeRect(0, 0, 10, 10));
    EXPECT_COVERAGE(canvas,
        ".........."
        ".........."
        ".........."
        "#...#...#." // blanks of 2 in place of 1
        ".........."
        ".........."
        ".........."
        ".........."
        "#........."
        "..........");
}

TEST_F(NSStringDrawingTest, LinesWiderThanTheRectangleStartAtItsLeftEdge)
{
    Canvas canvas(8, 5);
    draw(canvas,
        styled("aaa",
            [](NSMutableParagraphStyle& style) {
                style.setAlignment(NSTextAlignmentRight);
                style.setLineBreakMode(NSLineBreakByClipping);
            }),
        NSMakeRect(1, 0, 4, 5));
    EXPECT_COVERAGE(canvas,
        "........"
        "........"
        "........"
        ".#.#...." // the third is clipped
        "........");
}

TEST_F(NSStringDrawingTest, ShortensLinesToAnEllipsis)
{
    const auto row = [](NSLineBreakMode mode, double width) {
        Canvas canvas(12, 5);
        draw(canvas, styled("aaa aaa", breaking(mode)), NSMakeRect(0, 0, width, 5)); // 13 wide
        std::string dots;
        for (int column = 0; column < 12; ++column)
            dots += canvas.alpha(column, 2) ? '|' : canvas.alpha(column, 3) ? 'a' : '.';
        return dots;
    };
    EXPECT_EQ(row(NSLineBreakByTruncatingTail, 10), "a.a.a..|....");
    EXPECT_EQ(row(NSLineBreakByTruncatingHead, 10), "|..a.a.a....");
    EXPECT_EQ(row(NSLineBreakByTruncatingMiddle, 10), "a.a.|.a.a...");
    EXPECT_EQ(row(NSLineBreakByTruncatingMiddle, 9), "a.a.|.a....."); // one more is left at the beginning
    EXPECT_EQ(row(NSLineBreakByTruncatingTail, 1), "|...........") << "the ellipsis always";
}

TEST_F(NSStringDrawingTest, TheEllipsisHasTheAttributesOfItsNeighbour)
{
    const auto text =
        make<NSMutableAttributedString>(styled("aaaa", breaking(NSLineBreakByTruncatingTail)).get());
    text->addAttribute(NSFontAttributeName, NSFont::fontWithName("Dots", 10), NSMakeRange(1, 1));
    // a of 2, a of 4 and an ellipsis of 4: 10. The whole is also 10 wide, so a little less shortens it.
    EXPECT_EQ(sizeOf(text, 9.99), "0 0 4 5") << "one letter and an ellipsis, both small";
    EXPECT_EQ(heightOf(text, 10), 10);
}

TEST_F(NSStringDrawingTest, OnABaselineTheOriginIsTheStartOfTheLetters)
{
    Canvas canvas(7, 4);
    draw(canvas, plain("a a a\na"), NSMakeRect(1, 2, 3, 100), 0);
    EXPECT_COVERAGE(canvas,
        "......."
        ".#..#.." // not wrapped
        "......."
        ".......");
    Canvas flipped(7, 4);
    draw(flipped, plain("a a"), NSMakeRect(1, 2, 3, 100), 0, true);
    EXPECT_COVERAGE(flipped,
        "......."
        ".#..#.."
        "......."
        ".......");
}

TEST_F(NSStringDrawingTest, MaximumLineHeightsMoveTheLettersUp)
{
    Canvas canvas(2, 6);
    draw(canvas, styled("a\na", [](auto& style) { style.setMaximumLineHeight(3); }), NSMakeRect(0, 0, 2, 6));
    EXPECT_COVERAGE(canvas,
        ".."
        "#."
        ".."
        ".."
        "#."
        "..");
}

TEST_F(NSStringDrawingTest, LeavesTheContextAsItWas)
{
    Canvas canvas(4, 5);
    CGContextSetTextMatrix(canvas.context(), {2, 0, 0, 2, 7, 8});
    draw(canvas, plain("a"), NSMakeRect(0, 0, 4, 5));
    EXPECT_TRUE(
        CGAffineTransformEqualToTransform(CGContextGetTextMatrix(canvas.context()), {2, 0, 0, 2, 7, 8}));
    EXPECT_EQ(canvas.alpha(0, 3), 255) << "the text matrix has no effect";
}

TEST_F(NSStringDrawingTest, NothingIsDrawnWithoutTextOrContext)
{
    drawWithRect(plain("a").get(), NSMakeRect(0, 0, 5, 5), kBlock);
    drawWithRect("a", NSMakeRect(0, 0, 5, 5), kBlock, dots());
    Canvas canvas(2, 2);
    draw(canvas, nullptr, NSMakeRect(0, 0, 2, 2));
    draw(canvas, plain(""), NSMakeRect(0, 0, 2, 2));
    EXPECT_COVERAGE(canvas, "....");
}
