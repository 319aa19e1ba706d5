#include "Foundation/testing/ManualClock.h"
#include "support/Describe.h"

#include <KorvidAppKit/ZRAppKitAdditions.h>
#include <KorvidAppKit/ZRFlippedClipView.h>

#include <AppKit/NSWindow.h>

#include <gtest/gtest.h>

namespace {

RetainPtr<NSWindow> makeWindow()
{
    return make<NSWindow>(
        NSMakeRect(100, 500, 300, 200), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
}

TEST(ZRFlippedClipView, LaysItsDocumentOutFromTheTop)
{
    const auto clip = make<ZRFlippedClipView>(NSMakeRect(0, 0, 100, 50));
    EXPECT_TRUE(clip->isFlipped());
    const auto document = make<NSView>(NSMakeRect(0, 0, 100, 200));
    clip->setDocumentView(document);
    // The uppermost 50 points of 200, in the document's own coordinates.
    EXPECT_EQ(describe(clip->documentVisibleRect()), "0 150 100 50");
}

TEST(SetSize, TheTopEdgeStaysInPlace)
{
    const auto window = makeWindow();
    ZRAppKitAdditions::setSize(window, NSMakeSize(300, 260), true, false);
    EXPECT_EQ(describe(window->frame()), "100 440 300 260");
    ZRAppKitAdditions::setSize(window, NSMakeSize(50, 10), false, false);
    EXPECT_EQ(describe(window->frame()), "100 690 50 10");
    ZRAppKitAdditions::setSize(nullptr, NSMakeSize(50, 10), false, false);
}

TEST(SetSize, TheTopEdgeStaysInPlaceThroughoutAnAnimation)
{
    ManualClock clock;
    const auto window = makeWindow();
    window->makeKeyAndOrderFront();
    ZRAppKitAdditions::setSize(window, NSMakeSize(300, 260), true, true);
    EXPECT_EQ(describe(window->frame()), "100 500 300 200");
    clock.advance(0.0401); // 2 of 4.8 frames: smoothstep(5 / 12) of 60 points
    EXPECT_EQ(describe(window->frame()), "100 477 300 223");
    clock.advance(1);
    EXPECT_EQ(describe(window->frame()), "100 440 300 260");
}

TEST(AddConstraintsPin4Sides, FourConstraintsInOrder)
{
    const auto superview = make<NSView>(NSMakeRect(0, 0, 200, 100));
    const auto view = make<NSView>(NSMakeRect(1, 2, 3, 4));
    superview->addSubview(view);
    EXPECT_TRUE(ZRAppKitAdditions::addConstraintsPin4SidesWithPriority(view, 321));
    EXPECT_FALSE(view->translatesAutoresizingMaskIntoConstraints());
    EXPECT_FALSE(superview->translatesAutoresizingMaskIntoConstraints());
    std::vector<NSInteger> attributes;
    for (const auto& constraint : superview->constraints()) {
        attributes.push_back(constraint->firstAttribute());
        EXPECT_EQ(constraint->secondAttribute(), constraint->firstAttribute());
        EXPECT_EQ(constraint->firstItem(), view);
        EXPECT_EQ(constraint->secondItem(), superview);
        EXPECT_EQ(constraint->relation(), NSLayoutRelationEqual);
        EXPECT_EQ(constraint->multiplier(), 1);
        EXPECT_EQ(constraint->constant(), 0);
        EXPECT_EQ(constraint->priority(), 321);
    }
    EXPECT_EQ(attributes, (std::vector<NSInteger>{3, 2, 4, 1}));
    EXPECT_TRUE(view->constraints().empty());
}

TEST(AddConstraintsPin4Sides, TheViewFillsItsSuperview)
{
    const auto superview = make<NSView>(NSMakeRect(0, 0, 200, 100));
    const auto view = make<NSView>(NSMakeRect(1, 2, 3, 4));
    superview->addSubview(view);
    ZRAppKitAdditions::addConstraintsPin4SidesWithPriority(view, NSLayoutPriorityRequired);
    superview->layoutSubtreeIfNeeded();
    EXPECT_EQ(describe(view->frame()), "0 0 200 100");
    superview->setFrame(NSMakeRect(50, 60, 70, 80));
    EXPECT_EQ(describe(view->frame()), "0 0 70 80");
}

TEST(AddConstraintsPin4Sides, AViewWithoutASuperviewIsLeftAlone)
{
    const auto view = make<NSView>(NSMakeRect(1, 2, 3, 4));
    EXPECT_FALSE(ZRAppKitAdditions::addConstraintsPin4SidesWithPriority(view, NSLayoutPriorityRequired));
    EXPECT_TRUE(view->translatesAutoresizingMaskIntoConstraints());
    EXPECT_TRUE(view->constraints().empty());
    EXPECT_FALSE(ZRAppKitAdditions::addConstraintsPin4SidesWithPriority(nullptr, 1000));
}

} // namespace
