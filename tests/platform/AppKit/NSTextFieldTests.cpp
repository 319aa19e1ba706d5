#include "../CoreText/DotFont.h"
#include "support/Canvas.h"
#include "support/Describe.h"
#include "support/Rendering.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSTextField.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSKeyedArchiver.h>

namespace {

/// Counts the invalidations of intrinsic sizes below it.
class SizeCounter : public NSView {
public:
    using NSView::NSView;
    int invalidations = 0;
    void subviewIntrinsicContentSizeDidChange(NSView*) override { ++invalidations; }
};

class NSTextFieldTest : public DotFontTest {
protected:
    static RetainPtr<NSTextField> dotField(const NSString& text, NSRect frame = NSZeroRect)
    {
        auto field = make<NSTextField>(frame);
        field->setFont(NSFont::fontWithName("Dots", 5));
        field->setTextColor(NSColor::blackColor());
        field->setStringValue(text);
        return field;
    }
    static Canvas drawn(NSTextField& field)
    {
        const NSRect bounds = field.bounds();
        Canvas canvas(int(bounds.size.width), int(bounds.size.height));
        const auto context = NSGraphicsContext::graphicsContextWithCGContext(canvas.context(), false);
        field.displayRectIgnoringOpacity(bounds, context);
        return canvas;
    }
    static RetainPtr<NSTextField> copy(NSTextField* field)
    {
        return NSKeyedUnarchiver::unarchivedObjectOfClass<NSTextField>(
            NSKeyedArchiver::archivedDataWithRootObject(field, true).get());
    }
};

} // namespace

TEST_F(NSTextFieldTest, IsALabelWithoutText)
{
    const auto field = make<NSTextField>(NSMakeRect(1, 2, 30, 40));
    EXPECT_EQ(describe(field->frame()), "1 2 30 40");
    EXPECT_TRUE(field->isFlipped());
    EXPECT_FALSE(field->isEditable());
    EXPECT_FALSE(field->isSelectable());
    EXPECT_FALSE(field->acceptsFirstResponder());
    EXPECT_EQ(field->stringValue(), "");
    EXPECT_EQ(field->alignment(), NSTextAlignmentNatural);
    EXPECT_EQ(field->lineBreakMode(), NSLineBreakByWordWrapping);
    EXPECT_EQ(field->textColor(), NSColor::labelColor());
    EXPECT_TRUE(field->font()->isEqual(NSFont::systemFontOfSize(13).get()));
    EXPECT_EQ(field->preferredMaxLayoutWidth(), 0);
    EXPECT_EQ(dynamic_cast<NSTextFieldCell*>(field->cell())->controlView(), field);
}

TEST_F(NSTextFieldTest, HasTheSizeOfItsTextInWholePoints)
{
    EXPECT_EQ(describe(dotField("aa\na")->intrinsicContentSize()), "4 11");
    EXPECT_EQ(describe(dotField("a")->intrinsicContentSize()), "2 6") << "5.5 with the font's leading";
    EXPECT_EQ(describe(dotField("")->intrinsicContentSize()), "0 6") << "a line without text";
}

TEST_F(NSTextFieldTest, HasTheHeightOfItsLinesAtAPreferredWidth)
{
    const auto field = dotField("aa aa aa");
    field->setPreferredMaxLayoutWidth(9);
    EXPECT_EQ(describe(field->intrinsicContentSize()), "9 11");
    for (const double odd : {-1.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        field->setPreferredMaxLayoutWidth(odd);
        EXPECT_EQ(field->preferredMaxLayoutWidth(), 0) << odd;
    }
    EXPECT_EQ(describe(field->intrinsicContentSize()), "14 6");
}

TEST_F(NSTextFieldTest, ALabelHasItsTextsSize)
{
    const auto label = NSTextField::labelWithString("a");
    EXPECT_EQ(label->stringValue(), "a");
    EXPECT_EQ(describe(label->frame().size), describe(label->intrinsicContentSize()));
    EXPECT_EQ(label->intrinsicContentSize().height, 15) << "13 points, with leading 14.3";
}

TEST_F(NSTextFieldTest, AStringHasTheAttributesOfTheCell)
{
    const auto field = dotField("a");
    field->setAlignment(NSTextAlignmentRight);
    field->setLineBreakMode(NSLineBreakByTruncatingTail);
    const auto text = field->attributedStringValue();
    EXPECT_EQ(text->string(), "a");
    const NSDictionary& attributes = *text->attributesAtIndex(0);
    EXPECT_EQ(attributes.count(), 3U);
    EXPECT_EQ(attributes.objectForKey(NSFontAttributeName), field->font());
    EXPECT_EQ(attributes.objectForKey(NSForegroundColorAttributeName), NSColor::blackColor());
    const auto* style =
        dynamic_cast<const NSParagraphStyle*>(attributes.objectForKey(NSParagraphStyleAttributeName));
    ASSERT_NE(style, nullptr);
    EXPECT_EQ(style->alignment(), NSTextAlignmentRight);
    EXPECT_EQ(style->lineBreakMode(), NSLineBreakByTruncatingTail);
}

TEST_F(NSTextFieldTest, AnAttributedStringKeepsItsOwn)
{
    const auto field = dotField("");
    const auto text = make<NSMutableAttributedString>("bold", dots());
    field->setAttributedStringValue(text);
    text->addAttribute(NSForegroundColorAttributeName, NSColor::redColor(), NSMakeRange(0, 4));
    EXPECT_TRUE(field->attributedStringValue()->isEqual(make<NSAttributedString>("bold", dots()).get()));
    EXPECT_EQ(field->stringValue(), "bold");
}

TEST_F(NSTextFieldTest, DrawsItsTextAtTheTop)
{
    const auto field = dotField("aa\na", NSMakeRect(7, 7, 6, 12));
    field->setAlignment(NSTextAlignmentRight);
    // Lines of 5.5: the first baseline is 4 below the top, the second one 9.5.
    EXPECT_COVERAGE(drawn(*field),
        "......"
        "......"
        "......"
        "..#.#."
        "......"
        "......"
        "......"
        "......"
        "....+."
        "....+."
        "......"
        "......");
}

TEST_F(NSTextFieldTest, SettersRedrawAndInvalidateTheSizeOnce)
{
    const auto counter = make<SizeCounter>();
    const auto field = dotField("a");
    counter->addSubview(field);
    const std::pair<const char*, std::function<void()>> setters[]{
        {"text", [&] { field->setStringValue("b"); }},
        {"color", [&] { field->setTextColor(NSColor::redColor()); }},
        {"mode", [&] { field->setLineBreakMode(NSLineBreakByClipping); }},
        {"alignment", [&] { field->setAlignment(NSTextAlignmentCenter); }},
        {"font", [&] { field->setFont(NSFont::systemFontOfSize(9)); }},
    };
    for (const auto& [name, set] : setters) {
        SCOPED_TRACE(name);
        takeDisplayMark(field);
        counter->invalidations = 0;
        set();
        EXPECT_TRUE(takeDisplayMark(field));
        EXPECT_EQ(counter->invalidations, 1);
        set();
        EXPECT_FALSE(takeDisplayMark(field)) << "the same value";
        EXPECT_EQ(counter->invalidations, 1);
    }
    field->setPreferredMaxLayoutWidth(100);
    EXPECT_FALSE(takeDisplayMark(field));
    EXPECT_EQ(counter->invalidations, 2);
}

TEST_F(NSTextFieldTest, InvalidValuesGiveTheDefaults)
{
    const auto field = dotField("a");
    field->setTextColor(nullptr);
    EXPECT_EQ(field->textColor(), NSColor::labelColor());
    field->setLineBreakMode(NSLineBreakByClipping);
    field->setLineBreakMode(static_cast<NSLineBreakMode>(99));
    EXPECT_EQ(field->lineBreakMode(), NSLineBreakByWordWrapping);
    field->setStringValue(nullptr);
    EXPECT_EQ(field->stringValue(), "");
}

TEST_F(NSTextFieldTest, WithAnotherKindOfCellItHasNoTextProperties)
{
    const auto field = dotField("a");
    field->setCell(make<NSActionCell>());
    field->setTextColor(NSColor::redColor());
    field->setLineBreakMode(NSLineBreakByClipping);
    EXPECT_EQ(field->textColor(), NSColor::labelColor());
    EXPECT_EQ(field->lineBreakMode(), NSLineBreakByWordWrapping);
    EXPECT_EQ(field->intrinsicContentSize().width, NSViewNoIntrinsicMetric);
    field->setCell(nullptr);
    EXPECT_EQ(field->intrinsicContentSize().width, NSViewNoIntrinsicMetric);
}

TEST_F(NSTextFieldTest, IsArchivedWithItsText)
{
    const auto field = dotField("text");
    field->setAlignment(NSTextAlignmentCenter);
    field->setLineBreakMode(NSLineBreakByTruncatingMiddle);
    field->setEnabled(false);
    field->setTag(7);
    const auto plain = copy(field);
    ASSERT_NE(plain, nullptr);
    EXPECT_EQ(plain->stringValue(), "text");
    EXPECT_EQ(plain->alignment(), NSTextAlignmentCenter);
    EXPECT_EQ(plain->lineBreakMode(), NSLineBreakByTruncatingMiddle);
    EXPECT_FALSE(plain->isEnabled());
    EXPECT_EQ(plain->tag(), 7);

    field->setAttributedStringValue(make<NSAttributedString>("attributed", dots()));
    EXPECT_EQ(copy(field)->stringValue(), "attributed");
    EXPECT_EQ(copy(make<NSTextField>().get())->alignment(), NSTextAlignmentNatural);
    EXPECT_EQ(make<NSTextField>(static_cast<NSCoder*>(nullptr))->alignment(), NSTextAlignmentNatural);
}

TEST_F(NSTextFieldTest, IsStaticTextForAssistiveTechnology)
{
    const auto field = dotField("text");
    EXPECT_TRUE(field->isAccessibilityElement());
    EXPECT_EQ(field->accessibilityRole(), NSAccessibilityStaticTextRole);
    EXPECT_TRUE(field->accessibilityValue()->isEqual(box("text").get()));
}

TEST(NSTextFieldCell, MeasuresItsTextWithinBounds)
{
    const auto cell = make<NSTextFieldCell>("two words");
    const NSSize size = cell->cellSize();
    EXPECT_EQ(describe(cell->cellSizeForBounds(NSMakeRect(0, 0, size.width, 1))), describe(size));
    const NSSize narrow = cell->cellSizeForBounds(NSMakeRect(0, 0, size.width - 1, 1));
    EXPECT_LT(narrow.width, size.width);
    EXPECT_GE(narrow.height, 2 * size.height - 1);
}
