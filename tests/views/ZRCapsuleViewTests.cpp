#include "support/Describe.h"
#include "support/Rendering.h"
#include "support/Threads.h"

#include <KorvidAppKit/ZRCapsuleView.h>

#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSStringAttributes.h>
#include <Foundation/NSKeyedArchiver.h>
#include <Foundation/NSNumber.h>
#include <limits>

namespace {

/// Opens protected members to tests.
class Capsule : public ZRCapsuleView {
public:
    using ZRCapsuleView::_attributedString;
    using ZRCapsuleView::_kern;
    using ZRCapsuleView::_pad;
    using ZRCapsuleView::ZRCapsuleView;
};

/// Counts changes of intrinsic content sizes.
class Superview : public NSView {
public:
    void subviewIntrinsicContentSizeDidChange(NSView*) override { ++changes; }
    int changes = 0;
};

/// A capsule in a superview, not marked for redisplay.
class CapsuleView : public testing::Test {
protected:
    CapsuleView()
    {
        superview->addSubview(capsule);
        capsule->setNeedsDisplay(false);
    }
    /// Returns whether the intrinsic content size was invalidated since the last call.
    bool wasInvalidated() { return std::exchange(superview->changes, 0) > 0; }

    RetainPtr<Superview> superview = make<Superview>();
    RetainPtr<Capsule> capsule = make<Capsule>(NSMakeRect(0, 0, 80, 22));
};

NSObject* attribute(const NSAttributedString& text, const NSString& name)
{
    return text.attributeAtIndex(name, 0);
}

} // namespace

TEST_F(CapsuleView, StartsWithItsDefaults)
{
    EXPECT_TRUE(capsule->string().isNull());
    EXPECT_EQ(capsule->fontSize(), 9);
    EXPECT_EQ(capsule->color(), NSColor::whiteColor());
    EXPECT_EQ(capsule->drawType(), kZRCapsuleDrawTypeOutline);
    EXPECT_EQ(capsule->drawType(), 1);
    EXPECT_EQ(capsule->fontName(), "Helvetica Neue Regular");
    EXPECT_EQ(capsule->_pad, 0);
    EXPECT_EQ(describe(make<ZRCapsuleView>()->frame()), "0 0 0 0");
}

TEST_F(CapsuleView, IsUnarchivedWithItsFrameAndTheDefaults)
{
    const auto view = make<ZRCapsuleView>(NSMakeRect(1, 2, 30, 40));
    view->setString("text");
    view->setFontSize(20);
    view->setDrawType(2);
    view->setFontName("Liberation Sans");
    const auto data = NSKeyedArchiver::archivedDataWithRootObject(view, true);
    ASSERT_TRUE(data);
    const auto back = NSKeyedUnarchiver::unarchivedObjectOfClass<ZRCapsuleView>(data);
    ASSERT_TRUE(back);
    EXPECT_EQ(describe(back->frame()), "1 2 30 40");
    EXPECT_TRUE(back->string().isNull());
    EXPECT_EQ(back->fontSize(), 9);
    EXPECT_EQ(back->drawType(), 1);
    EXPECT_EQ(back->color(), NSColor::whiteColor());
    EXPECT_EQ(back->fontName(), "Helvetica Neue Regular");
}

TEST_F(CapsuleView, ANewStringRedrawsAndInvalidatesTheIntrinsicSize)
{
    capsule->setString("a");
    EXPECT_TRUE(takeDisplayMark(capsule));
    EXPECT_TRUE(wasInvalidated());
    capsule->setString(NSString(std::string("a")));
    EXPECT_FALSE(takeDisplayMark(capsule));
    EXPECT_FALSE(wasInvalidated());
    capsule->setString(NSString());
    EXPECT_TRUE(takeDisplayMark(capsule));
    EXPECT_TRUE(wasInvalidated());
    EXPECT_TRUE(capsule->string().isNull());
    capsule->setString("");
    EXPECT_TRUE(takeDisplayMark(capsule)) << "an empty string differs from null";
}

TEST_F(CapsuleView, ANewFontSizeRedrawsAndInvalidatesTheIntrinsicSize)
{
    capsule->setFontSize(12.5);
    EXPECT_EQ(capsule->fontSize(), 12.5);
    EXPECT_TRUE(takeDisplayMark(capsule));
    EXPECT_TRUE(wasInvalidated());
    capsule->setFontSize(12.5);
    EXPECT_FALSE(takeDisplayMark(capsule));
    EXPECT_FALSE(wasInvalidated());
}

TEST_F(CapsuleView, ANewColorRedrawsOnly)
{
    const auto red = NSColor::colorWithSRGBRed(1, 0, 0, 1);
    capsule->setColor(red);
    EXPECT_EQ(capsule->color(), red);
    EXPECT_TRUE(takeDisplayMark(capsule));
    EXPECT_FALSE(wasInvalidated());
}

TEST_F(CapsuleView, AnEqualColorDoesNothing)
{
    const auto red = NSColor::colorWithSRGBRed(1, 0, 0, 1);
    capsule->setColor(red);
    capsule->setNeedsDisplay(false);
    capsule->setColor(NSColor::colorWithSRGBRed(1, 0, 0, 1));
    EXPECT_FALSE(takeDisplayMark(capsule));
    EXPECT_EQ(capsule->color(), red) << "the equal colour is not stored";
    capsule->setColor(nullptr);
    EXPECT_TRUE(takeDisplayMark(capsule));
    capsule->setColor(nullptr);
    EXPECT_FALSE(takeDisplayMark(capsule));
}

TEST_F(CapsuleView, ANewDrawTypeRedrawsOnly)
{
    capsule->setDrawType(2);
    EXPECT_TRUE(takeDisplayMark(capsule));
    EXPECT_FALSE(wasInvalidated());
    capsule->setDrawType(2);
    EXPECT_FALSE(takeDisplayMark(capsule));
}

TEST_F(CapsuleView, ANewFontNameTriggersNothing)
{
    capsule->setString("WWW");
    takeDisplayMark(capsule);
    wasInvalidated();
    const auto before = capsule->intrinsicContentSize();
    capsule->setFontName("DejaVu Sans");
    EXPECT_EQ(capsule->fontName(), "DejaVu Sans");
    EXPECT_FALSE(takeDisplayMark(capsule));
    EXPECT_FALSE(wasInvalidated());
    EXPECT_GT(capsule->intrinsicContentSize().width, before.width) << "but it takes effect";
}

TEST_F(CapsuleView, SpacesLettersByAnEighthOfTheFontSize)
{
    EXPECT_EQ(capsule->_kern(), 1.125);
    capsule->setFontSize(20);
    EXPECT_EQ(capsule->_kern(), 2.5);
}

TEST_F(CapsuleView, HasAnAttributedStringWithFontKernAndColor)
{
    capsule->setString("abc");
    capsule->setFontName("Liberation Sans Bold");
    const auto text = capsule->_attributedString();
    EXPECT_EQ(text->string(), "abc");
    ASSERT_EQ(text->attributeRuns().size(), 1u);
    EXPECT_EQ(text->attributesAtIndex(0)->count(), 3u);
    const auto* font = dynamic_cast<const NSFont*>(attribute(*text, NSFontAttributeName));
    ASSERT_TRUE(font);
    EXPECT_EQ(font->fontName(), "LiberationSans-Bold");
    EXPECT_EQ(font->pointSize(), 9);
    EXPECT_TRUE(attribute(*text, NSKernAttributeName)->isEqual(NSNumber::numberWithDouble(1.125).get()));
    EXPECT_EQ(attribute(*text, NSForegroundColorAttributeName), NSColor::whiteColor());
    EXPECT_NE(capsule->_attributedString(), text) << "a new one each time";
}

TEST_F(CapsuleView, TakesANullStringForAnEmptyOne)
{
    EXPECT_EQ(capsule->_attributedString()->string(), "");
}

TEST_F(CapsuleView, TakesTheSystemFontOfTheSameSizeForAMissingFont)
{
    capsule->setString("a");
    capsule->setFontSize(11);
    for (const NSString& name : {NSString("Helvetica Neue Regular"), NSString("No Such Font"), NSString()}) {
        capsule->setFontName(name);
        const auto text = capsule->_attributedString();
        EXPECT_TRUE(attribute(*text, NSFontAttributeName)->isEqual(NSFont::systemFontOfSize(11).get()));
    }
}

TEST_F(CapsuleView, HasTheIntrinsicSizeOfItsTextAnd1Point4Ascents)
{
    // In Liberation Sans, the system font, A is 1366 of 2048 units wide, and the ascent is 1854.
    capsule->setString("A");
    const double ascent = 9 * 1854 / 2048.0;
    NSSize size = capsule->intrinsicContentSize();
    EXPECT_NEAR(size.width, 9 * 1366 / 2048.0 + 1.4 * ascent, 1e-5);
    EXPECT_NEAR(size.height, 2.4 * ascent, 1e-9);
    EXPECT_NEAR(capsule->_pad, 1.4 * ascent, 1e-9);

    capsule->setString("AA");
    size = capsule->intrinsicContentSize();
    EXPECT_NEAR(size.width, 2 * 9 * 1366 / 2048.0 + 1.125 + 1.4 * ascent, 1e-5)
        << "the kern between the letters counts";
}

TEST_F(CapsuleView, HasAnIntrinsicHeightOfZeroForAnEmptyText)
{
    const NSSize size = capsule->intrinsicContentSize();
    EXPECT_EQ(size.width, -1.125);
    EXPECT_EQ(size.height, 0);
}

TEST_F(CapsuleView, HasTheDefaultFontSizeAndNoKernForASizeThatIsNotFinite)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    capsule->setString("A");
    const double ascent = 13 * 1854 / 2048.0; // the system font at its default size
    for (const double size : {std::numeric_limits<double>::quiet_NaN(), kInfinity, -kInfinity}) {
        capsule->setFontSize(size);
        EXPECT_EQ(capsule->_kern(), 0) << size;
        EXPECT_NEAR(capsule->intrinsicContentSize().width, 13 * 1366 / 2048.0 + 1.4 * ascent, 1e-5) << size;
        EXPECT_NEAR(capsule->intrinsicContentSize().height, 2.4 * ascent, 1e-9) << size;
    }
}

TEST_F(CapsuleView, ListsTheKeyPathsThatItsIntrinsicSizeDependsOn)
{
    EXPECT_EQ(ZRCapsuleView::keyPathsForValuesAffectingIntrinsicContentSize(),
        (std::vector<NSString>{"fontSize", "string"}));
}

TEST_F(CapsuleView, AllowsSettingTheFontNameOnAnotherThread)
{
    capsule->setString("abc");
    onThreads(2, [&](int thread) {
        for (int i = 0; i < 200; ++i) {
            if (thread == 0)
                capsule->setFontName(
                    i % 2 ? "Liberation Sans" : "A name that is not kept inside of the text");
            else
                EXPECT_GT(capsule->intrinsicContentSize().width, 0);
        }
    });
}
