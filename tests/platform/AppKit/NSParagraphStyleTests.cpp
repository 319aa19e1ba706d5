#include <AppKit/NSParagraphStyle.h>

#include <gtest/gtest.h>

#include <limits>

TEST(NSParagraphStyle, HasTheDefaultValues)
{
    EXPECT_EQ(NSParagraphStyle::defaultParagraphStyle(), NSParagraphStyle::defaultParagraphStyle());
    const auto made = make<NSMutableParagraphStyle>()->copy();
    for (const NSParagraphStyle* style : {made.get(), NSParagraphStyle::defaultParagraphStyle()}) {
        EXPECT_EQ(style->alignment(), NSTextAlignmentNatural);
        EXPECT_EQ(style->lineBreakMode(), NSLineBreakByWordWrapping);
        EXPECT_EQ(style->lineSpacing(), 0);
        EXPECT_EQ(style->lineHeightMultiple(), 0);
        EXPECT_EQ(style->minimumLineHeight(), 0);
        EXPECT_EQ(style->maximumLineHeight(), 0);
        EXPECT_EQ(style->description(),
            "Alignment 4, LineBreakMode 0, LineSpacing 0, LineHeightMultiple 0, MinimumLineHeight 0, "
            "MaximumLineHeight 0");
    }
}

TEST(NSParagraphStyle, UsesTheFrameworksNumbersForAlignments)
{
    EXPECT_EQ(NSTextAlignmentLeft, 0);
    EXPECT_EQ(NSTextAlignmentCenter, 1);
    EXPECT_EQ(NSTextAlignmentRight, 2);
    EXPECT_EQ(NSTextAlignmentJustified, 3);
    EXPECT_EQ(NSTextAlignmentNatural, 4);
}

TEST(NSParagraphStyle, UsesTheFrameworksNumbersForLineBreakModes)
{
    EXPECT_EQ(NSLineBreakByWordWrapping, 0u);
    EXPECT_EQ(NSLineBreakByCharWrapping, 1u);
    EXPECT_EQ(NSLineBreakByClipping, 2u);
    EXPECT_EQ(NSLineBreakByTruncatingHead, 3u);
    EXPECT_EQ(NSLineBreakByTruncatingTail, 4u);
    EXPECT_EQ(NSLineBreakByTruncatingMiddle, 5u);
}

TEST(NSMutableParagraphStyle, StoresWhatIsSet)
{
    const auto style = make<NSMutableParagraphStyle>();
    style->setAlignment(NSTextAlignmentRight);
    style->setLineBreakMode(NSLineBreakByTruncatingMiddle);
    style->setLineSpacing(1.5);
    style->setLineHeightMultiple(2);
    style->setMinimumLineHeight(3);
    style->setMaximumLineHeight(4);
    EXPECT_EQ(style->alignment(), NSTextAlignmentRight);
    EXPECT_EQ(style->lineBreakMode(), NSLineBreakByTruncatingMiddle);
    EXPECT_EQ(style->lineSpacing(), 1.5);
    EXPECT_EQ(style->lineHeightMultiple(), 2);
    EXPECT_EQ(style->minimumLineHeight(), 3);
    EXPECT_EQ(style->maximumLineHeight(), 4);
    EXPECT_EQ(style->description(),
        "Alignment 2, LineBreakMode 5, LineSpacing 1.5, LineHeightMultiple 2, MinimumLineHeight 3, "
        "MaximumLineHeight 4");
}

TEST(NSMutableParagraphStyle, TreatsInvalidNumbersAsZero)
{
    using Limits = std::numeric_limits<CGFloat>;
    for (const CGFloat odd : {-1.0, Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), -0.0}) {
        const auto style = make<NSMutableParagraphStyle>();
        style->setLineSpacing(5);
        style->setLineSpacing(odd);
        style->setLineHeightMultiple(5);
        style->setLineHeightMultiple(odd);
        style->setMinimumLineHeight(5);
        style->setMinimumLineHeight(odd);
        style->setMaximumLineHeight(5);
        style->setMaximumLineHeight(odd);
        EXPECT_TRUE(style->isEqual(NSParagraphStyle::defaultParagraphStyle())) << odd;
        EXPECT_EQ(style->hash(), NSParagraphStyle::defaultParagraphStyle()->hash()) << odd;
    }
}

TEST(NSMutableParagraphStyle, TreatsInvalidAlignmentsAsNatural)
{
    for (const NSInteger odd : {-1, 5, 100}) {
        const auto style = make<NSMutableParagraphStyle>();
        style->setAlignment(NSTextAlignmentLeft);
        style->setAlignment(static_cast<NSTextAlignment>(odd));
        EXPECT_EQ(style->alignment(), NSTextAlignmentNatural) << odd;
    }
}

TEST(NSMutableParagraphStyle, TreatsInvalidLineBreakModesAsWordWrapping)
{
    for (const NSUInteger odd : {NSUInteger(6), ~NSUInteger(0)}) {
        const auto style = make<NSMutableParagraphStyle>();
        style->setLineBreakMode(NSLineBreakByClipping);
        style->setLineBreakMode(static_cast<NSLineBreakMode>(odd));
        EXPECT_EQ(style->lineBreakMode(), NSLineBreakByWordWrapping) << odd;
    }
}

TEST(NSParagraphStyle, EqualsStylesWithTheSameValues)
{
    using Change = void (*)(NSMutableParagraphStyle&);
    for (const Change change : {
             Change([](NSMutableParagraphStyle& style) { style.setAlignment(NSTextAlignmentCenter); }),
             Change([](NSMutableParagraphStyle& style) { style.setLineBreakMode(NSLineBreakByClipping); }),
             Change([](NSMutableParagraphStyle& style) { style.setLineSpacing(1); }),
             Change([](NSMutableParagraphStyle& style) { style.setLineHeightMultiple(1); }),
             Change([](NSMutableParagraphStyle& style) { style.setMinimumLineHeight(1); }),
             Change([](NSMutableParagraphStyle& style) { style.setMaximumLineHeight(1); }),
         }) {
        const auto style = make<NSMutableParagraphStyle>();
        EXPECT_TRUE(style->isEqual(NSParagraphStyle::defaultParagraphStyle()));
        change(*style);
        EXPECT_FALSE(style->isEqual(NSParagraphStyle::defaultParagraphStyle()));
        EXPECT_FALSE(NSParagraphStyle::defaultParagraphStyle()->isEqual(style));
        EXPECT_TRUE(style->isEqual(style->copy().get()));
        EXPECT_EQ(style->hash(), style->copy()->hash());
    }
    EXPECT_FALSE(NSParagraphStyle::defaultParagraphStyle()->isEqual(nullptr));
    EXPECT_FALSE(NSParagraphStyle::defaultParagraphStyle()->isEqual(make<NSObject>().get()));
}

TEST(NSParagraphStyle, CopiesAreIndependent)
{
    const auto style = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
    style->setLineSpacing(2);
    const auto copy = style->copy();
    style->setLineSpacing(3);
    EXPECT_EQ(NSParagraphStyle::defaultParagraphStyle()->lineSpacing(), 0);
    EXPECT_EQ(copy->lineSpacing(), 2);
    EXPECT_EQ(copy->copy(), copy);
    EXPECT_EQ(dynamic_cast<NSMutableParagraphStyle*>(copy.get()), nullptr);
    EXPECT_EQ(copy->mutableCopy()->lineSpacing(), 2);
}
