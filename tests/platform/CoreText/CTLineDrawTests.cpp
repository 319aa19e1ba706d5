#include "TextFixture.h"

#include "support/AllocationCounter.h"
#include "support/Threads.h"

namespace {

using CTLineDrawTest = SquareFontTest;

TEST_F(CTLineDrawTest, StartsAtTheTextPosition)
{
    Canvas canvas(8, 5);
    CGContextSetTextPosition(canvas.context(), 1, 1);
    CTLineDraw(squareLine("Ab", 3.0).get(), canvas.context());
    CTLineDraw(squareLine("b", 4.0).get(), canvas.context()); // over the first one, as the position stays
    EXPECT_COVERAGE(canvas,
        "........"
        ".###...."
        ".###+-.."
        ".####+.."
        "........");
    const CGPoint position = CGContextGetTextPosition(canvas.context());
    EXPECT_EQ(position.x, 1);
    EXPECT_EQ(position.y, 1);
}

TEST_F(CTLineDrawTest, PutsGlyphsBetweenPixels)
{
    Canvas canvas(8, 4);
    CGContextSetTextPosition(canvas.context(), 0.5, 1);
    CTLineDraw(squareLine("AA", 2, 1).get(), canvas.context());
    EXPECT_COVERAGE(canvas,
        "........"
        "+#++#+.."
        "+#++#+.."
        "........");
}

TEST_F(CTLineDrawTest, GoesThroughTheTextMatrixThenTheCTM)
{
    Canvas canvas(8, 6);
    CGContextScaleCTM(canvas.context(), 2, 2);
    CGContextSetTextMatrix(canvas.context(), {1, 0, 0, -1, 1, 2}); // upside down
    CTLineDraw(squareLine("b ", 2).get(), canvas.context());
    EXPECT_COVERAGE(canvas,
        "........"
        "........"
        "..##...."
        "..##...."
        "........"
        "........");
}

TEST_F(CTLineDrawTest, IsBlackWithoutAColorAndTakesAnyColorOtherwise)
{
    Canvas canvas(4, 2);
    CGContextSetRGBFillColor(canvas.context(), 1, 0, 0, 1);
    CTLineDraw(squareLine("A", 2).get(), canvas.context());
    EXPECT_EQ(canvas.pixel(0, 0), rgba(0, 0, 0, 255)) << "the fill colour has no effect";

    const auto text = make<NSMutableAttributedString>(squares("AA", 2).get());
    const auto green = adopt(CGColorCreateSRGB(0, 1, 0, 1));
    text->addAttribute(kCTForegroundColorAttributeName, box(green), NSMakeRange(1, 1));
    CTLineDraw(adopt(CTLineCreateWithAttributedString(text)).get(), canvas.context());
    EXPECT_EQ(canvas.pixel(1, 0), rgba(0, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(2, 0), rgba(0, 255, 0, 255));
}

TEST_F(CTLineDrawTest, LeavesPathAndColorsAsTheyAre)
{
    Canvas canvas(4, 2);
    CGContextSetRGBFillColor(canvas.context(), 1, 0, 0, 1);
    CGContextAddRect(canvas.context(), CGRectMake(3, 0, 1, 1));
    CTLineDraw(squareLine("A", 2).get(), canvas.context());
    CGContextFillPath(canvas.context());
    EXPECT_EQ(canvas.pixel(3, 1), rgba(255, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(3, 0), rgba(0, 0, 0, 0));
}

TEST_F(CTLineDrawTest, ObeysClipAlphaAndBlendMode)
{
    Canvas canvas(4, 2);
    CGContextClipToRect(canvas.context(), CGRectMake(0, 0, 2, 2));
    CGContextSetAlpha(canvas.context(), 0.5);
    CTLineDraw(squareLine("AA", 2).get(), canvas.context());
    EXPECT_COVERAGE(canvas,
        "++.."
        "++..");
    CGContextSetAlpha(canvas.context(), 1);
    CGContextSetBlendMode(canvas.context(), kCGBlendModeClear);
    CTLineDraw(squareLine("b", 2).get(), canvas.context());
    EXPECT_COVERAGE(canvas,
        "++.."
        ".+..");
}

TEST_F(CTLineDrawTest, OverlappingGlyphsAreOneShape)
{
    Canvas canvas(4, 2);
    CGContextSetAlpha(canvas.context(), 0.5);
    CTLineDraw(squareLine("AA", 2, -1).get(), canvas.context());
    EXPECT_COVERAGE(canvas,
        "+++."
        "+++.");
}

TEST_F(CTLineDrawTest, DrawsTheSameAgainAndWhereItIsMovedTo)
{
    Canvas canvas(12, 3);
    for (const double x : {0.0, 4.0, 8.5, 8.5}) {
        CGContextSetTextPosition(canvas.context(), x, 0);
        CTLineDraw(squareLine("bA", 2).get(), canvas.context());
    }
    // The last one is drawn twice: half and half of the rest.
    EXPECT_COVERAGE(canvas,
        "............"
        "..##..##..*#"
        "#.###.##***#");
}

TEST_F(CTLineDrawTest, CastsAShadowBelowItself)
{
    const auto green = adopt(CGColorCreateSRGB(0, 1, 0, 1));
    // A label, and a line that is too long for the cache.
    for (const std::size_t letters : {1, 5000}) {
        Canvas canvas(6, 4);
        CGContextSetShadowWithColor(canvas.context(), CGSizeMake(1, -1), 0, green);
        CGContextSetTextPosition(canvas.context(), 1, 1);
        CTLineDraw(squareLine(NSString("b" + std::string(letters, ' ')), 4).get(), canvas.context());
        EXPECT_COVERAGE(canvas,
            "......"
            ".##..."
            ".###.."
            "..##..");
        EXPECT_EQ(canvas.pixel(2, 2), rgba(0, 0, 0, 255)) << letters;
        EXPECT_EQ(canvas.pixel(3, 2), rgba(0, 255, 0, 255)) << letters;
    }
}

TEST_F(CTLineDrawTest, OfALongLineTakesOnlyVisibleLetters)
{
    // Letters of 2 points, a blank of 1 behind each.
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += "A ";
    const auto line = squareLine(NSString(text), 2);
    const Canvas canvas(6, 2);
    CGContextTranslateCTM(canvas.context(), -30001, 0);
    CTLineDraw(line, canvas.context()); // allocates reusable memory
    CGContextClearRect(canvas.context(), CGRectMake(30001, 0, 6, 2));
    const AllocationCounter allocations;
    CTLineDraw(line, canvas.context());
    EXPECT_LT(allocations.largest(), 10000u) << "all outlines would take much more";
    EXPECT_COVERAGE(canvas,
        "#.##.#"
        "#.##.#");
}

TEST_F(CTLineDrawTest, LettersThatAreTooFarAwayForAnyPixelAreLeftOut)
{
    for (const CGFloat kern : {1e10, -1e10, -1e30}) {
        const auto text = make<NSMutableAttributedString>(squares("AAA", 2).get());
        text->addAttribute(kCTKernAttributeName, NSNumber::numberWithDouble(kern), NSMakeRange(0, 1));
        const auto line = adopt(CTLineCreateWithAttributedString(text));
        const Canvas canvas(3, 2);
        CTLineDraw(line, canvas.context());
        EXPECT_COVERAGE(canvas,
            "##."
            "##.");
    }
}

TEST_F(CTLineDrawTest, OfInfiniteLengthInPixelsIsDrawnWhereItIsVisible)
{
    const auto line = squareLine("AA", 12, -1e305);
    const Canvas canvas(3, 1);
    CGContextSetShouldSubpixelQuantizeFonts(canvas.context(), false);
    CGContextSetTextMatrix(canvas.context(), CGAffineTransformMakeScale(-500000, 500000));
    CGContextSetTextPosition(canvas.context(), 2, 0);
    CTLineDraw(line, canvas.context());
    EXPECT_COVERAGE(canvas, "##.");
}

TEST_F(CTLineDrawTest, LettersOutsideOfTheClipCastTheirShadowsIntoIt)
{
    const auto green = adopt(CGColorCreateSRGB(0, 1, 0, 1));
    const auto line = squareLine(NSString("A" + std::string(5000, ' ') + "A"), 2);
    const Canvas canvas(6, 2);
    CGContextSetShadowWithColor(canvas.context(), CGSizeMake(-5000, 0), 0, green);
    CTLineDraw(line, canvas.context()); // the last letter at 5002 to 5004
    EXPECT_COVERAGE(canvas,
        "####.."
        "####..");
    EXPECT_EQ(canvas.pixel(1, 0), rgba(0, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(2, 0), rgba(0, 255, 0, 255));
}

TEST_F(CTLineDrawTest, SavingTheGraphicsStateDoesNotSaveTheTextMatrix)
{
    Canvas canvas(2, 2);
    CGContextSetTextPosition(canvas.context(), 1, 2);
    CGContextSaveGState(canvas.context());
    CGContextSetTextMatrix(canvas.context(), {2, 0, 0, 2, 5, 6});
    EXPECT_EQ(CGContextGetTextPosition(canvas.context()).x, 5);
    CGContextRestoreGState(canvas.context());
    EXPECT_EQ(CGContextGetTextPosition(canvas.context()).x, 5);
    EXPECT_EQ(CGContextGetTextMatrix(canvas.context()).a, 2);
}

TEST_F(CTLineDrawTest, DrawsNothingThroughATransformWithNaN)
{
    Canvas canvas(4, 2);
    CGContextSetTextPosition(canvas.context(), std::numeric_limits<double>::quiet_NaN(), 0);
    CTLineDraw(squareLine("A", 2).get(), canvas.context());
    EXPECT_COVERAGE(canvas,
        "...."
        "....");
}

TEST_F(CTLineDrawTest, DrawsOnOtherThreadsThanItWasMadeOn)
{
    const auto line = squareLine("bA", 2);
    onThreads(4, [&](int) {
        for (int i = 0; i < 50; ++i) {
            Canvas canvas(4, 2);
            CTLineDraw(line, canvas.context());
            EXPECT_COVERAGE(canvas,
                "..##"
                "#.##");
        }
    });
}

TEST_F(CTLineDrawTest, OfBlanksDrawsNothingHoweverOften)
{
    Canvas canvas(4, 2);
    CGContextSetShadow(canvas.context(), CGSizeMake(1, 0), 2);
    for (int i = 0; i < 3; ++i)
        CTLineDraw(squareLine("  ", 2).get(), canvas.context());
    EXPECT_COVERAGE(canvas,
        "...."
        "....");
}

TEST(CTLineDrawLayers, GlyphsOfLayersShowTheirColorsAndThatOfTheText)
{
    TestFont font("Layers");
    font.add(u'A', 1000, {{0, 0, 1000, 1000}});
    font.addColored(u'c', 1000,
        {{{0, 0, 1000, 1000}, 0xFF0000}, {{0, 0, 500, 500}, std::nullopt},
            {{500, 500, 1000, 1000}, 0x0000FF}});
    TemporaryFolder folder;
    folder.write("layers.ttf", font.bytes());
    const PrivateFonts fonts(NSString(folder.path().string()));

    const auto attributes = make<NSMutableDictionary>();
    const auto made = adopt(CTFontCreateWithName("Layers", 2));
    const auto green = adopt(CGColorCreateSRGB(0, 1, 0, 1));
    attributes->setObject(const_cast<CTFont*>(made.get()), kCTFontAttributeName);
    attributes->setObject(box(green), kCTForegroundColorAttributeName);
    const auto text = make<NSAttributedString>("Ac", attributes);
    const auto line = adopt(CTLineCreateWithAttributedString(text));
    Canvas canvas(4, 2);
    CTLineDraw(line, canvas.context());
    EXPECT_EQ(canvas.pixel(0, 0), rgba(0, 255, 0, 255));
    EXPECT_EQ(canvas.pixel(2, 0), rgba(255, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(2, 1), rgba(0, 255, 0, 255));
    EXPECT_EQ(canvas.pixel(3, 0), rgba(0, 0, 255, 255));
    EXPECT_EQ(canvas.pixel(3, 1), rgba(255, 0, 0, 255));
    EXPECT_TRUE(CGRectEqualToRect(CTLineGetImageBounds(line, nullptr), CGRectMake(0, 0, 4, 2)));
}

} // namespace
