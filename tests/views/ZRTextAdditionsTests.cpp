#include "TextFields.h"
#include "support/Rendering.h"

#include <KorvidAppKit/ZRAppKitAdditions.h>

using namespace ZRAppKitAdditions;

namespace {

constexpr NSStringDrawingOptions kBlock = NSStringDrawingUsesLineFragmentOrigin;

class ZRTextAdditions : public DotFontTest {
protected:
    static RetainPtr<NSAttributedString> text(const NSString& string)
    {
        return make<NSAttributedString>(string, dots());
    }

    /// The rows, from the top, in which a text drawn in a rectangle has dots; y downward if `isFlipped`.
    template <class Draw> static std::string dotRows(Draw draw, bool isFlipped = false)
    {
        Canvas canvas(4, 40);
        if (isFlipped)
            CGContextConcatCTM(canvas.context(), {1, 0, 0, -1, 0, 40});
        NSGraphicsContext::setCurrentContext(
            NSGraphicsContext::graphicsContextWithCGContext(canvas.context(), isFlipped));
        draw();
        NSGraphicsContext::setCurrentContext(nullptr);
        std::string rows;
        for (int row = 0; row < canvas.height(); ++row)
            if (canvas.alpha(0, row) == 255)
                rows += (rows.empty() ? "" : " ") + std::to_string(row);
        return rows;
    }
};

/// The rectangle from row 10 to row 31 of the canvas; two lines measure 11 with their leading.
constexpr NSRect kRect{{0, 9}, {4, 21}};

const NSParagraphStyle* styleOf(NSTextField* field)
{
    static RetainPtr<NSAttributedString> text;
    text = field->attributedStringValue();
    return dynamic_cast<NSParagraphStyle*>(text->attributeAtIndex(NSParagraphStyleAttributeName, 0));
}

} // namespace

TEST_F(ZRTextAdditions, AlignsABlockOfLinesVertically)
{
    const auto rows = [&](NSInteger alignment) {
        return dotRows([&] { drawWithRect(text("a\na").get(), kRect, kBlock, alignment); });
    };
    EXPECT_EQ(rows(ZRVerticalAlignTop), "13 18");
    EXPECT_EQ(rows(ZRVerticalAlignCenter), "18 23") << "down by half of 21 - 11";
    EXPECT_EQ(rows(ZRVerticalAlignBottom), "23 28");
    for (const NSInteger other : {-1, 3, 5})
        EXPECT_EQ(rows(other), "13 18") << other;
}

TEST_F(ZRTextAdditions, ItsConstantsAreTheSameOnEveryProcessor)
{
    EXPECT_EQ(ZRVerticalAlignTop, 0);
    EXPECT_EQ(ZRVerticalAlignCenter, 1);
    EXPECT_EQ(ZRVerticalAlignBottom, 2);
}

TEST_F(ZRTextAdditions, ABlockHigherThanItsRectangleMovesUp)
{
    const NSRect low = NSMakeRect(0, 20, 4, 1); // 10 less than the text
    EXPECT_EQ(
        dotRows([&] { drawWithRect(text("a\na").get(), low, kBlock, ZRVerticalAlignBottom); }), "12 17");
    EXPECT_EQ(dotRows([&] { drawWithRect(text("a\na").get(), low, kBlock, ZRVerticalAlignTop); }), "22 27");
}

TEST_F(ZRTextAdditions, InAFlippedContextItMovesTheOtherWay)
{
    const auto rows = [&](NSInteger alignment) {
        return dotRows([&] { drawWithRect(text("a\na").get(), kRect, kBlock, alignment); }, true);
    };
    EXPECT_EQ(rows(ZRVerticalAlignTop), "12 17");
    EXPECT_EQ(rows(ZRVerticalAlignBottom), "2 7");
}

TEST_F(ZRTextAdditions, TheHeightIsThatOfLinesOf300PointsWhateverTheRectangleIs)
{
    // 150 letters of 2 fill a line of 300: 11 for two lines. In lines of 4 they have 75 lines.
    const NSString letters(std::string(151, 'a'));
    const auto firstRow = [&](NSInteger alignment) {
        return dotRows([&] { drawWithRect(text(letters).get(), kRect, kBlock, alignment); }).substr(0, 2);
    };
    EXPECT_EQ(firstRow(ZRVerticalAlignTop), "13");
    EXPECT_EQ(firstRow(ZRVerticalAlignBottom), "23");
    // One line of 5.5 in a rectangle from row 10 to 30.5: down by 15.
    const auto one = text(NSString(std::string(149, 'a')));
    const NSRect rect = NSMakeRect(0, 9.5, 4, 20.5);
    const auto rows = dotRows([&] { drawWithRect(one.get(), rect, kBlock, ZRVerticalAlignBottom); });
    EXPECT_EQ(rows.substr(0, 2), "28");
}

TEST_F(ZRTextAdditions, StringsAreDrawnWithTheirAttributes)
{
    for (const NSInteger alignment : {0, 1, 2})
        EXPECT_EQ(dotRows([&] { drawWithRect("a\na", kRect, dots(), kBlock, alignment); }), dotRows([&] {
            drawWithRect(text("a\na").get(), kRect, kBlock, alignment);
        })) << alignment;
    EXPECT_EQ(dotRows([&] { drawWithRect("a\na", kRect, dots(), 0, ZRVerticalAlignTop); }), "30")
        << "the options are those of the caller";
}

TEST_F(ZRTextAdditions, TheContextIsAsBefore)
{
    Canvas canvas(4, 4);
    NSGraphicsContext::setCurrentContext(
        NSGraphicsContext::graphicsContextWithCGContext(canvas.context(), false));
    const CGAffineTransform before = CGContextGetCTM(canvas.context());
    drawWithRect(text("a").get(), NSMakeRect(0, 0, 4, 4), kBlock, ZRVerticalAlignBottom);
    NSGraphicsContext::setCurrentContext(nullptr);
    EXPECT_TRUE(CGAffineTransformEqualToTransform(CGContextGetCTM(canvas.context()), before));
}

TEST_F(ZRTextAdditions, NothingIsDrawnWithoutTextOrContext)
{
    drawWithRect(text("a").get(), kRect, kBlock, ZRVerticalAlignTop);
    EXPECT_EQ(dotRows([] {
        drawWithRect(static_cast<const NSAttributedString*>(nullptr), kRect, kBlock, ZRVerticalAlignTop);
        drawWithRect(NSString(), kRect, nullptr, kBlock, ZRVerticalAlignBottom);
        drawWithRect("", kRect, dots(), kBlock, ZRVerticalAlignBottom);
    }),
        "");
}

// Line heights of fields.

TEST_F(ZRTextAdditions, SetLineHeightLimitsTheHeightOfLines)
{
    const auto field = make<NSTextField>();
    const auto style = make<NSMutableParagraphStyle>();
    style->setLineSpacing(3);
    style->setMinimumLineHeight(2);
    style->setMaximumLineHeight(40);
    style->setAlignment(NSTextAlignmentRight);
    const auto attributes = dots();
    attributes->setObject(style->copy(), NSParagraphStyleAttributeName);
    field->setAttributedStringValue(make<NSAttributedString>("a\na", attributes));
    setLineHeight(field, 20);
    style->setLineSpacing(0);
    style->setMaximumLineHeight(20);
    EXPECT_TRUE(styleOf(field)->isEqual(style)) << styleOf(field)->description().UTF8String();
    EXPECT_EQ(field->stringValue(), "a\na");
    EXPECT_TRUE(takeDisplayMark(field));
}

TEST_F(ZRTextAdditions, SetLineHeightWithoutAParagraphStyleStartsFromTheDefaultOne)
{
    const auto field = make<NSTextField>();
    field->setAttributedStringValue(text("a"));
    setLineHeight(field, 4);
    const auto expected = make<NSMutableParagraphStyle>();
    expected->setMaximumLineHeight(4);
    EXPECT_TRUE(styleOf(field)->isEqual(expected));
    EXPECT_EQ(field->attributedStringValue()->attributesAtIndex(0)->count(), 2U);
    setLineHeight(field, -1);
    EXPECT_TRUE(styleOf(field)->isEqual(NSParagraphStyle::defaultParagraphStyle())) << "no limit";
}

TEST_F(ZRTextAdditions, SetLineHeightGivesAllTextTheFirstCharactersAttributes)
{
    const auto field = make<NSTextField>();
    const auto mixed = make<NSMutableAttributedString>(text("abc").get());
    mixed->addAttribute(NSForegroundColorAttributeName, NSColor::redColor(), NSMakeRange(1, 2));
    field->setAttributedStringValue(mixed);
    setLineHeight(field, 4);
    const auto result = field->attributedStringValue();
    EXPECT_EQ(result->attributeRuns().size(), 1U);
    EXPECT_EQ(result->attributeAtIndex(NSForegroundColorAttributeName, 2), nullptr);
    EXPECT_NE(result->attributeAtIndex(NSFontAttributeName, 2), nullptr);
}

TEST_F(ZRTextAdditions, SetLineHeightLeavesAFieldWithoutTextAsItIs)
{
    const auto field = make<NSTextField>();
    setLineHeight(field, 4);
    EXPECT_EQ(field->objectValue(), nullptr);
    setLineHeight(nullptr, 4);
}

// Strings.

TEST_F(ZRTextAdditions, BeginsWithComparesCodeUnits)
{
    EXPECT_TRUE(beginsWith("abc", "abc"));
    EXPECT_TRUE(beginsWith("abc", "a"));
    EXPECT_FALSE(beginsWith("abc", "abcd"));
    EXPECT_FALSE(beginsWith("abc", "b"));
    EXPECT_FALSE(beginsWith("abc", "A"));
    EXPECT_FALSE(beginsWith("\u00E9t", "e"));
    EXPECT_FALSE(beginsWith("e\u0301t", "\u00E9"));
    EXPECT_TRUE(beginsWith("e\u0301t", "e"));
}

TEST_F(ZRTextAdditions, NothingBeginsWithTheEmptyString)
{
    EXPECT_FALSE(beginsWith("abc", ""));
    EXPECT_FALSE(beginsWith("abc", nullptr));
    EXPECT_FALSE(beginsWith("", "a"));
    EXPECT_FALSE(beginsWith("", ""));
    EXPECT_FALSE(beginsWith(nullptr, "a"));
    EXPECT_FALSE(beginsWith(nullptr, nullptr));
}
