#include "RecordingView.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSWindow.h>
#include <Foundation/WeakPtr.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

class NSViewTest : public testing::Test {
protected:
    RetainPtr<RecordingView> view(const char* name, NSRect frame = NSMakeRect(0, 0, 10, 10))
    {
        return make<RecordingView>(frame, name, log);
    }
    RetainPtr<NSWindow> window()
    {
        return make<NSWindow>(
            NSMakeRect(0, 0, 100, 100), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    }
    /// The subviews' indices in `all`, back to front.
    static std::string order(const NSView& parent, const std::vector<RetainPtr<RecordingView>>& all)
    {
        std::string text;
        for (const auto& subview : parent.subviews())
            text += std::to_string(std::find_if(all.begin(), all.end(), [&](const auto& view) {
                return view == subview;
            }) - all.begin());
        return text;
    }

    Log log;
};

TEST_F(NSViewTest, ANewViewHasNoSuperviewSubviewsOrWindow)
{
    const auto one = make<NSView>(NSMakeRect(1, 2, 3, 4));
    EXPECT_EQ(one->superview(), nullptr);
    EXPECT_EQ(one->window(), nullptr);
    EXPECT_EQ(one->nextResponder(), nullptr);
    EXPECT_TRUE(one->subviews().empty());
    EXPECT_EQ(describe(one->frame()), "1 2 3 4");
    EXPECT_EQ(describe(one->bounds()), "0 0 3 4");
    EXPECT_FALSE(one->isFlipped());
    EXPECT_FALSE(one->isHidden());
    EXPECT_FALSE(one->needsDisplay());
    EXPECT_TRUE(one->toolTip().isNull());
    EXPECT_EQ(describe(make<NSView>()->frame()), "0 0 0 0");
}

TEST_F(NSViewTest, SubviewsAreOrderedBackToFront)
{
    const auto parent = view("parent");
    const std::vector all{view("0"), view("1"), view("2"), view("3")};
    parent->addSubview(all[0]);
    parent->addSubview(all[1]);
    EXPECT_EQ(order(*parent, all), "01");
    parent->addSubview(all[2], NSWindowBelow, all[1]);
    EXPECT_EQ(order(*parent, all), "021");
    parent->addSubview(all[3], NSWindowAbove, all[0]);
    EXPECT_EQ(order(*parent, all), "0321");
    parent->addSubview(all[1], NSWindowBelow, nullptr);
    EXPECT_EQ(order(*parent, all), "1032");
    parent->addSubview(all[1], NSWindowAbove, all[0]);
    EXPECT_EQ(order(*parent, all), "0132");
    parent->addSubview(all[0]);
    EXPECT_EQ(order(*parent, all), "1320");
    const auto unrelated = view("unrelated");
    parent->addSubview(all[0], NSWindowBelow, unrelated);
    EXPECT_EQ(order(*parent, all), "0132");
    parent->addSubview(all[0], NSWindowAbove, unrelated);
    EXPECT_EQ(order(*parent, all), "1320");
    parent->addSubview(all[3], NSWindowAbove, all[3]);
    EXPECT_EQ(order(*parent, all), "1203");
}

TEST_F(NSViewTest, AddingAViewRemovesItFromItsOldSuperview)
{
    const auto first = view("first");
    const auto second = view("second");
    const auto child = view("child");
    first->addSubview(child);
    second->addSubview(child);
    EXPECT_TRUE(first->subviews().empty());
    EXPECT_EQ(child->superview(), second);
    EXPECT_EQ(child->nextResponder(), second);
    child->removeFromSuperview();
    EXPECT_TRUE(second->subviews().empty());
    EXPECT_EQ(child->superview(), nullptr);
    child->removeFromSuperview();
}

TEST_F(NSViewTest, AViewCannotContainItself)
{
    const auto parent = view("parent");
    const auto child = view("child");
    parent->addSubview(child);
    child->addSubview(parent);
    child->addSubview(child);
    child->addSubview(nullptr);
    EXPECT_TRUE(child->subviews().empty());
    EXPECT_EQ(parent->superview(), nullptr);
}

TEST_F(NSViewTest, ASuperviewOwnsItsSubviews)
{
    auto parent = view("parent");
    auto child = view("child");
    const auto survivor = view("survivor");
    const WeakPtr<RecordingView> gone = child;
    parent->addSubview(child);
    parent->addSubview(survivor);
    child = nullptr;
    EXPECT_TRUE(gone.lock());
    parent = nullptr;
    EXPECT_FALSE(gone.lock());
    EXPECT_EQ(survivor->superview(), nullptr);
}

TEST_F(NSViewTest, AViewIsADescendantOfItselfAndItsAncestors)
{
    const auto parent = view("parent");
    const auto child = view("child");
    parent->addSubview(child);
    EXPECT_TRUE(child->isDescendantOf(parent));
    EXPECT_TRUE(child->isDescendantOf(child));
    EXPECT_FALSE(parent->isDescendantOf(child));
    EXPECT_FALSE(parent->isDescendantOf(nullptr));
}

TEST_F(NSViewTest, EveryViewIsNotifiedOnceWhenItsTreeEntersOrLeavesAWindow)
{
    const auto a = window();
    const auto parent = view("parent");
    const auto child = view("child");
    parent->addSubview(child);
    EXPECT_EQ(log, Log{});
    a->contentView()->addSubview(parent);
    EXPECT_EQ(log, (Log{"parent enters", "child enters"}));
    EXPECT_EQ(child->window(), a);

    // Moving within the window does not notify.
    log.clear();
    a->contentView()->addSubview(child);
    EXPECT_EQ(log, Log{});
    parent->addSubview(child);

    parent->removeFromSuperview();
    EXPECT_EQ(log, (Log{"parent leaves", "child leaves"}));
    EXPECT_EQ(child->window(), nullptr);
}

TEST_F(NSViewTest, AViewThatOutlivesItsWindowHasNoWindow)
{
    const auto child = view("child");
    {
        const auto a = window();
        a->contentView()->addSubview(child);
        EXPECT_EQ(child->window(), a);
    }
    EXPECT_EQ(child->window(), nullptr);
    EXPECT_EQ(log, (Log{"child enters", "child leaves"}));
}

TEST_F(NSViewTest, IsHiddenOrHasHiddenAncestorIncludesAncestors)
{
    const auto parent = view("parent");
    const auto child = view("child");
    parent->addSubview(child);
    EXPECT_FALSE(child->isHiddenOrHasHiddenAncestor());
    parent->setHidden(true);
    EXPECT_FALSE(child->isHidden());
    EXPECT_TRUE(child->isHiddenOrHasHiddenAncestor());
    parent->setHidden(false);
    child->setHidden(true);
    EXPECT_TRUE(child->isHiddenOrHasHiddenAncestor());
    EXPECT_FALSE(parent->isHiddenOrHasHiddenAncestor());
}

TEST_F(NSViewTest, HitTestFindsTheTopmostViewInSuperviewCoordinates)
{
    const auto root = view("root", NSMakeRect(100, 100, 50, 50));
    const auto below = view("below", NSMakeRect(10, 10, 20, 20));
    const auto above = view("above", NSMakeRect(20, 20, 20, 20));
    root->addSubview(below);
    root->addSubview(above);
    EXPECT_EQ(root->hitTest(NSMakePoint(115, 115)), below);
    EXPECT_EQ(root->hitTest(NSMakePoint(125, 125)), above);
    EXPECT_EQ(root->hitTest(NSMakePoint(105, 105)), root);
    EXPECT_EQ(root->hitTest(NSMakePoint(99, 125)), nullptr);
    EXPECT_EQ(root->hitTest(NSMakePoint(150, 125)), nullptr);
    EXPECT_EQ(root->hitTest(NSMakePoint(15, 15)), nullptr);
    EXPECT_EQ(root->hitTest(NSMakePoint(NAN, NAN)), nullptr);
}

TEST_F(NSViewTest, HitTestSkipsHiddenViews)
{
    const auto root = view("root", NSMakeRect(0, 0, 50, 50));
    const auto child = view("child", NSMakeRect(0, 0, 50, 50));
    root->addSubview(child);
    child->setHidden(true);
    EXPECT_EQ(root->hitTest(NSMakePoint(5, 5)), root);
    root->setHidden(true);
    EXPECT_EQ(root->hitTest(NSMakePoint(5, 5)), nullptr);
}

TEST_F(NSViewTest, HitTestFollowsFlippedAndScaledCoordinates)
{
    const auto root = view("root", NSMakeRect(0, 0, 100, 100));
    const auto flipped = view("flipped", NSMakeRect(0, 0, 100, 100));
    flipped->flipped = true;
    flipped->setBounds(NSMakeRect(1000, 1000, 10, 10)); // ten points to a unit
    const auto leaf = view("leaf", NSMakeRect(1001, 1002, 2, 3));
    root->addSubview(flipped);
    flipped->addSubview(leaf);
    // 10 to 30 from the left, 20 to 50 from the top.
    EXPECT_EQ(root->hitTest(NSMakePoint(10, 80)), leaf);
    EXPECT_EQ(root->hitTest(NSMakePoint(29, 51)), leaf);
    EXPECT_EQ(root->hitTest(NSMakePoint(30, 60)), flipped);
    EXPECT_EQ(root->hitTest(NSMakePoint(20, 50)), flipped);
    EXPECT_EQ(root->hitTest(NSMakePoint(20, 81)), flipped);
}

TEST_F(NSViewTest, PartsOutsideTheSuperviewAreNotHit)
{
    const auto root = view("root", NSMakeRect(0, 0, 20, 20));
    const auto wide = view("wide", NSMakeRect(10, 10, 100, 100));
    root->addSubview(wide);
    EXPECT_EQ(root->hitTest(NSMakePoint(15, 15)), wide);
    EXPECT_EQ(root->hitTest(NSMakePoint(50, 50)), nullptr);
}

TEST_F(NSViewTest, EffectiveAppearanceIsTheApplications)
{
    EXPECT_EQ(view("one")->effectiveAppearance(), NSApplication::sharedApplication()->effectiveAppearance());
}

TEST_F(NSViewTest, ToolTipsAreStored)
{
    const auto one = view("one");
    one->setToolTip("a tip");
    EXPECT_EQ(one->toolTip(), "a tip");
    one->setToolTip(nullptr);
    EXPECT_TRUE(one->toolTip().isNull());
}

} // namespace
