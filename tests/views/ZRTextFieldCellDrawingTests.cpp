#include "Foundation/testing/NSLogCapture.h"
#include "TextFields.h"

#include <CoreText/CTLine.h>
#include <Foundation/NSException.h>
#include <Foundation/NSNumber.h>
#include <KorvidAppKit/ZRErrors.h>

namespace {

using ZRTextFieldCellDrawing = TextFieldTest;

/// Makes a context current.
class CurrentCanvas {
public:
    explicit CurrentCanvas(const Canvas& canvas)
    {
        NSGraphicsContext::setCurrentContext(
            NSGraphicsContext::graphicsContextWithCGContext(canvas.context(), false));
    }
    ~CurrentCanvas() { NSGraphicsContext::setCurrentContext(nullptr); }
};

} // namespace

TEST_F(ZRTextFieldCellDrawing, TheFirstLinesInkTouchesTheTop)
{
    EXPECT_COVERAGE(drawn(field<PlainField>("aa…", 8, 4).get()),
        "....#..." // the ellipsis is 2 high: the baseline lies 2 below the top
        "#.#.#..."
        "........"
        "........");
}

TEST_F(ZRTextFieldCellDrawing, WithoutAMultiplierAllLinesAreOnOneBaseline)
{
    for (const auto& plain : {RetainPtr<NSTextField>(field<PlainField>("aa\n a", 8, 3)),
             RetainPtr<NSTextField>(field<StyledField>("aa\n a", 8, 3))})
        EXPECT_COVERAGE(drawn(plain),
            "###....." // without kerning
            "........"
            "........");
}

TEST_F(ZRTextFieldCellDrawing, BaselinesAreApartByAMultipleOfTheFirstLinesHeight)
{
    const auto text = field<StyledField>("a\na\n\na", 4, 30);
    text->setLineHeightMultiplier(1);
    EXPECT_EQ(dotRows(text), "0 5 15");
    text->setLineHeightMultiplier(1.1);
    EXPECT_EQ(dotRows(text), "0 6 18") << "5.5, rounded up";
    text->setLineHeightMultiplier(0.5);
    EXPECT_EQ(dotRows(text), "0 3 9");
    text->setLineHeightMultiplier(-1);
    EXPECT_EQ(dotRows(text), "0") << "the others lie above the field";
}

TEST_F(ZRTextFieldCellDrawing, TheFirstLineAloneDecidesOnTheHeights)
{
    const auto text = field<StyledField>(" \na", 4, 12);
    text->setLineHeightMultiplier(1);
    EXPECT_EQ(dotRows(text), "4") << "without ink the first baseline is the top edge";
    text->setStringValue("\na");
    EXPECT_EQ(dotRows(text), "") << "a line without characters has no height either";
}

TEST_F(ZRTextFieldCellDrawing, CharactersAreApartByAMultipleOfTheFontSize)
{
    const auto text = field<StyledField>("aa", 10, 1);
    text->setKernMultiplier(0.2);
    EXPECT_EQ(dotColumns(text), "0 3");
    text->setAlignment(NSTextAlignmentRight);
    EXPECT_EQ(dotColumns(text), "4 7") << "the last character's space counts";
    text->setKernMultiplier(-0.2);
    EXPECT_EQ(dotColumns(text), "8 9");
}

TEST_F(ZRTextFieldCellDrawing, LinesAreAlignedOneByOne)
{
    const std::pair<NSTextAlignment, const char*> cases[]{
        {NSTextAlignmentLeft, "#.#..... #......."},
        {NSTextAlignmentCenter, "..#.#... ...#...."},
        {NSTextAlignmentRight, "....#.#. ......#."},
        {NSTextAlignmentJustified, "#.#..... #......."},
        {NSTextAlignmentNatural, "#.#..... #......."},
    };
    for (const auto& [alignment, rows] : cases) {
        SCOPED_TRACE(alignment);
        const auto text = field<StyledField>("aa\na", 8, 6);
        text->setLineHeightMultiplier(1);
        text->setAlignment(alignment);
        const std::string picture = drawn(text).picture();
        EXPECT_EQ(picture.substr(0, 8) + " " + picture.substr(picture.rfind('\n', picture.size() - 2) + 1, 8),
            rows);
    }
}

TEST_F(ZRTextFieldCellDrawing, NaturalAlignmentIsLeftForAllScripts)
{
    EXPECT_EQ(dotColumns(field<PlainField>("א", 8, 1).get()), "0");
}

TEST_F(ZRTextFieldCellDrawing, LinesStartAtWholePointsAndHalvesAreRoundedAwayFromZero)
{
    const auto text = field<PlainField>("a", 7, 1);
    text->setAlignment(NSTextAlignmentCenter);
    EXPECT_EQ(dotColumns(text), "3") << "2.5";
    text->setFrameSize(NSMakeSize(10.5, 1));
    text->setAlignment(NSTextAlignmentRight);
    EXPECT_EQ(dotColumns(text), "9") << "8.5";
    text->setFrameSize(NSMakeSize(10.4, 1));
    EXPECT_EQ(dotColumns(text), "8");
}

TEST_F(ZRTextFieldCellDrawing, LinesWiderThanTheFrameStartAtTheLeftEdge)
{
    for (const NSTextAlignment alignment : {NSTextAlignmentRight, NSTextAlignmentCenter}) {
        const auto text = field<PlainField>(" aaaa", 5, 1);
        text->setAlignment(alignment);
        EXPECT_EQ(dotColumns(text), "1 3") << alignment;
    }
}

TEST_F(ZRTextFieldCellDrawing, OnlyCentreAlignsVertically)
{
    const auto text = field<StyledField>("a\na", 4, 12);
    text->setLineHeightMultiplier(1);
    text->setVerticalAlignment(NSTextAlignmentCenter);
    EXPECT_EQ(dotRows(text), "3 8") << "6 of 12 are free";
    for (const NSInteger other :
        {NSInteger(NSTextAlignmentLeft), NSInteger(NSTextAlignmentRight), NSInteger(NSTextAlignmentJustified),
            NSInteger(NSTextAlignmentNatural), NSInteger(-1), NSInteger(99)}) {
        text->setVerticalAlignment(other);
        EXPECT_EQ(dotRows(text), "0 5") << other;
    }
    text->setVerticalAlignment(NSTextAlignmentCenter);
    text->setStringValue("a\na\na");
    text->setFrameSize(NSMakeSize(4, 15));
    EXPECT_EQ(dotRows(text), "2 7 12") << "4 of 15";
    text->setStringValue("a\na");
    text->setFrameSize(NSMakeSize(4, 4));
    EXPECT_EQ(dotRows(text), "") << "a block of 6 in 4: from 1 above to 1 below";
}

TEST_F(ZRTextFieldCellDrawing, AllCharactersLookLikeTheFirst)
{
    const auto attributes = dots();
    attributes->setObject(NSColor::redColor(), NSForegroundColorAttributeName);
    attributes->setObject(NSNumber::numberWithDouble(3), NSKernAttributeName);
    const auto text = make<NSMutableAttributedString>("aa", attributes);
    text->setAttributes(dots(40), NSMakeRange(1, 1));
    const auto shown = field<PlainField>("", 6, 2);
    shown->setAttributedStringValue(text);
    const Canvas canvas = drawn(shown);
    EXPECT_COVERAGE(canvas,
        "#.#..." // without the kern of the text
        "......");
    EXPECT_EQ(canvas.pixel(0, 0), rgba(255, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(2, 0), rgba(255, 0, 0, 255));
}

TEST_F(ZRTextFieldCellDrawing, TextWithoutAColorOrStyleHasTheLabelColorAtTheLeft)
{
    const auto shown = field<PlainField>("", 6, 1);
    shown->setAlignment(NSTextAlignmentRight);
    shown->setAttributedStringValue(make<NSAttributedString>("a", dots()));
    const Canvas canvas = drawn(shown);
    const auto expected = field<PlainField>("a", 6, 1);
    expected->setTextColor(NSColor::labelColor());
    EXPECT_EQ(canvas.pixel(0, 0), drawn(expected).pixel(0, 0));
    EXPECT_NE(canvas.alpha(0, 0), 0);
}

TEST_F(ZRTextFieldCellDrawing, TextWithoutAFontIsLoggedAndIn10Points)
{
    const NSLogCapture log;
    const auto shown = field<StyledField>("", 4, 40);
    shown->setLineHeightMultiplier(2);
    const auto attributes = make<NSMutableDictionary>();
    attributes->setObject(NSColor::blackColor(), NSForegroundColorAttributeName);
    shown->setAttributedStringValue(make<NSAttributedString>("a\na", attributes));
    // The system font is the font of dots here, which is the only one.
    EXPECT_EQ(dotRows(shown), "0 1 20 21");
    EXPECT_EQ(log.messages(),
        std::vector<std::string>{
            "ZRTextFieldCell unexpectedly encounterd a null font. Defaulting to system 10."});
}

TEST_F(ZRTextFieldCellDrawing, OnlyTheSizeOfTheFrameCounts)
{
    const auto text = field<PlainField>("a", 8, 4);
    text->setAlignment(NSTextAlignmentRight);
    Canvas canvas(8, 4);
    CGContextTranslateCTM(canvas.context(), 0, 4); // the top edge is y = 0
    CGContextScaleCTM(canvas.context(), 1, -1);
    CGContextSetTextMatrix(canvas.context(), CGAffineTransformMakeTranslation(2, 2));
    const CGAffineTransform before = CGContextGetCTM(canvas.context());
    const CurrentCanvas current(canvas);
    text->cell()->drawWithFrame(NSMakeRect(100, 200, 4, 4), nullptr);
    EXPECT_COVERAGE(canvas,
        "..#....."
        "........"
        "........"
        "........");
    EXPECT_TRUE(CGAffineTransformEqualToTransform(CGContextGetCTM(canvas.context()), before));
}

TEST_F(ZRTextFieldCellDrawing, InAViewOfAnotherKindItRaises)
{
    const auto control = make<NSControl>(NSMakeRect(0, 0, 8, 4));
    const auto cell = make<ZRTextFieldCell>("a");
    for (const bool hasView : {true, false}) {
        SCOPED_TRACE(hasView);
        control->setCell(hasView ? cell : nullptr);
        Canvas canvas(8, 4);
        const CurrentCanvas current(canvas);
        const CGAffineTransform before = CGContextGetCTM(canvas.context());
        try {
            cell->drawWithFrame(NSMakeRect(0, 0, 8, 4), make<NSTextField>().get());
            ADD_FAILURE() << "nothing was raised";
        } catch (const NSException& exception) {
            EXPECT_EQ(exception.name(), ZRErrorDomain);
            EXPECT_EQ(exception.reason(), "ZRTextFieldCell was inside a view other than NSTextField");
            EXPECT_EQ(exception.userInfo(), nullptr);
        }
        EXPECT_COVERAGE(canvas, "................................");
        // The state that was saved is still there to be restored.
        CGContextScaleCTM(canvas.context(), 2, 2);
        CGContextRestoreGState(canvas.context());
        EXPECT_TRUE(CGAffineTransformEqualToTransform(CGContextGetCTM(canvas.context()), before));
    }
}

TEST_F(ZRTextFieldCellDrawing, OddMultipliersCountAsZero)
{
    for (const double odd : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        const auto text = field<StyledField>("aa\n a", 8, 5);
        text->setVerticalAlignment(NSTextAlignmentCenter);
        text->setLineHeightMultiplier(odd);
        text->setKernMultiplier(odd);
        EXPECT_EQ(dotRows(text), "2") << odd;
        EXPECT_EQ(dotColumns(text), "0 1 2") << odd;
    }
}

TEST_F(ZRTextFieldCellDrawing, TextWithoutCharactersDrawsNothing)
{
    const NSLogCapture log;
    const auto text = field<PlainField>("", 4, 2);
    EXPECT_COVERAGE(drawn(text), "........");
    text->setAttributedStringValue(make<NSAttributedString>());
    EXPECT_COVERAGE(drawn(text), "........");
    EXPECT_EQ(log.messages(), std::vector<std::string>());
}

TEST_F(ZRTextFieldCellDrawing, NothingIsDrawnWithoutAContext)
{
    const auto text = field<PlainField>("a", 4, 2);
    text->cell()->drawWithFrame(text->bounds(), text);
    EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
}
