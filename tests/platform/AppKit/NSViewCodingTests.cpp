#include <AppKit/NSView.h>

#include "support/Describe.h"

#include <Foundation/NSData.h>
#include <Foundation/NSError.h>
#include <Foundation/NSKeyedArchiver.h>
#include <gtest/gtest.h>

namespace {

/// A class that is registered for archives.
class Leaf : public NSView {
public:
    using NSView::NSView;
};
const NSCodingClass<Leaf> leafCoding("NSViewCodingTests.Leaf");

/// An unregistered class.
class Stranger : public NSView { };

RetainPtr<NSView> archivedAndBack(const NSView* view)
{
    const auto data = NSKeyedArchiver::archivedDataWithRootObject(view, true);
    return data ? NSKeyedUnarchiver::unarchivedObjectOfClass<NSView>(data) : nullptr;
}

} // namespace

TEST(NSViewCoding, RoundTripsEveryProperty)
{
    const auto view = make<NSView>(NSMakeRect(1, 2, 30, 40));
    view->setBounds(NSMakeRect(5, 6, 60, 20));
    view->setAutoresizingMask(NSViewWidthSizable | NSViewMinYMargin);
    view->setAutoresizesSubviews(false);
    view->setHidden(true);
    view->setToolTip("tip");

    const auto back = archivedAndBack(view);
    ASSERT_TRUE(back);
    EXPECT_EQ(describe(back->frame()), "1 2 30 40");
    EXPECT_EQ(describe(back->bounds()), "5 6 60 20");
    EXPECT_EQ(back->autoresizingMask(), NSViewWidthSizable | NSViewMinYMargin);
    EXPECT_FALSE(back->autoresizesSubviews());
    EXPECT_TRUE(back->isHidden());
    EXPECT_EQ(back->toolTip(), "tip");
}

TEST(NSViewCoding, RoundTripsSubviewsWithOrderAndClasses)
{
    const auto view = make<NSView>(NSMakeRect(0, 0, 30, 40));
    view->addSubview(make<Leaf>(NSMakeRect(1, 1, 2, 2)));
    view->addSubview(make<NSView>(NSMakeRect(3, 3, 4, 4)));
    view->subviews()[0]->addSubview(make<Leaf>(NSMakeRect(0, 0, 1, 1)));

    const auto back = archivedAndBack(view);
    ASSERT_TRUE(back);
    ASSERT_EQ(back->subviews().size(), 2u);
    EXPECT_TRUE(dynamic_cast<Leaf*>(back->subviews()[0].get()));
    EXPECT_FALSE(dynamic_cast<Leaf*>(back->subviews()[1].get()));
    EXPECT_EQ(back->subviews()[0]->superview(), back);
    EXPECT_EQ(back->subviews()[0]->subviews().size(), 1u);
}

TEST(NSViewCoding, FailsForAnUnregisteredClass)
{
    const auto view = make<NSView>(NSMakeRect(0, 0, 30, 40));
    view->addSubview(make<Stranger>());
    EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(view, true));
}

TEST(NSViewCoding, ANullCoderGivesAnEmptyFrame)
{
    EXPECT_EQ(describe(make<NSView>(static_cast<NSCoder*>(nullptr))->frame()), "0 0 0 0");
}
