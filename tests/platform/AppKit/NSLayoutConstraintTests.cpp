#include "Foundation/testing/NSLogCapture.h"
#include "RecordingView.h"

#include <AppKit/NSLayoutConstraint.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSRunLoop.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr auto kLeft = NSLayoutAttributeLeft;
constexpr auto kRight = NSLayoutAttributeRight;
constexpr auto kTop = NSLayoutAttributeTop;
constexpr auto kBottom = NSLayoutAttributeBottom;
constexpr auto kWidth = NSLayoutAttributeWidth;
constexpr auto kHeight = NSLayoutAttributeHeight;
constexpr auto kEqual = NSLayoutRelationEqual;
constexpr auto kAtLeast = NSLayoutRelationGreaterThanOrEqual;
constexpr auto kAtMost = NSLayoutRelationLessThanOrEqual;

/// A view with an intrinsic size.
class Sized : public NSView {
public:
    using NSView::NSView;
    NSSize natural{NSViewNoIntrinsicMetric, NSViewNoIntrinsicMetric};
    NSSize intrinsicContentSize() const override { return natural; }

protected:
    ~Sized() override = default;
};

class FlippedView : public NSView {
public:
    using NSView::NSView;
    bool isFlipped() const override { return true; }

protected:
    ~FlippedView() override = default;
};

/// A superview of 200 x 100 with a view that gets its frame from constraints.
class NSLayoutConstraints : public testing::Test {
protected:
    RetainPtr<NSView> root = make<NSView>(NSMakeRect(0, 0, 200, 100));
    RetainPtr<Sized> view = added(NSMakeRect(10, 20, 30, 40));

    RetainPtr<Sized> added(NSRect frame)
    {
        auto made = make<Sized>(frame);
        made->setTranslatesAutoresizingMaskIntoConstraints(false);
        root->addSubview(made);
        return made;
    }
    /// A constraint between a view and the root.
    RetainPtr<NSLayoutConstraint> toRoot(NSLayoutAttribute attribute, CGFloat constant,
        NSLayoutRelation relation = kEqual, NSLayoutPriority priority = NSLayoutPriorityRequired)
    {
        return between(view, attribute, relation, root, attribute, 1, constant, priority);
    }
    RetainPtr<NSLayoutConstraint> size(NSLayoutAttribute attribute, CGFloat length,
        NSLayoutRelation relation = kEqual, NSLayoutPriority priority = NSLayoutPriorityRequired)
    {
        return between(
            view, attribute, relation, nullptr, NSLayoutAttributeNotAnAttribute, 1, length, priority);
    }
    static RetainPtr<NSLayoutConstraint> between(NSView* first, NSLayoutAttribute attribute1,
        NSLayoutRelation relation, NSView* second, NSLayoutAttribute attribute2, CGFloat multiplier,
        CGFloat constant, NSLayoutPriority priority = NSLayoutPriorityRequired)
    {
        auto constraint = NSLayoutConstraint::constraintWithItem(
            first, attribute1, relation, second, attribute2, multiplier, constant);
        constraint->setPriority(priority);
        return constraint;
    }
    std::string laidOut()
    {
        root->layoutSubtreeIfNeeded();
        return describe(view->frame());
    }
};

TEST_F(NSLayoutConstraints, PinsFollowTheSuperviewsSize)
{
    root->addConstraints({toRoot(kTop, 5), toRoot(kRight, -7), toRoot(kBottom, -11), toRoot(kLeft, 3)});
    EXPECT_EQ(laidOut(), "3 11 190 84");
    root->setFrameSize(NSMakeSize(100, 50)); // at once
    EXPECT_EQ(describe(view->frame()), "3 11 90 34");
}

TEST_F(NSLayoutConstraints, TopIsTheUpperSideInAFlippedViewToo)
{
    root = make<FlippedView>(NSMakeRect(0, 0, 200, 100));
    view = added(NSMakeRect(10, 20, 30, 40));
    root->addConstraints({toRoot(kTop, 5), toRoot(kBottom, -11)});
    EXPECT_EQ(laidOut(), "10 5 30 84");
}

TEST_F(NSLayoutConstraints, WhatIsLeftOpenStaysTheSizeFirst)
{
    root->addConstraint(toRoot(kRight, 0));
    EXPECT_EQ(laidOut(), "170 20 30 40");
    root->addConstraint(size(kWidth, 50));
    EXPECT_EQ(laidOut(), "150 20 50 40");
}

TEST_F(NSLayoutConstraints, AttributesAndMultipliers)
{
    struct {
        NSLayoutAttribute attribute;
        NSLayoutAttribute ofRoot;
        CGFloat multiplier, constant;
        const char* frame;
    } const cases[] = {
        {kWidth, kWidth, 0.25, 1, "10 20 51 40"},
        {kHeight, kWidth, 0.25, 0, "10 10 30 50"},
        {NSLayoutAttributeCenterX, NSLayoutAttributeCenterX, 1, 10, "95 20 30 40"},
        // Downward.
        {NSLayoutAttributeCenterY, NSLayoutAttributeCenterY, 1, 10, "10 20 30 40"},
        {NSLayoutAttributeLeading, kRight, 0.5, 0, "100 20 30 40"},
        {NSLayoutAttributeTrailing, kRight, 0.5, 0, "70 20 30 40"},
        {kTop, kBottom, 0.5, 0, "10 10 30 40"},
        {kBottom, kTop, 1, 40, "10 60 30 40"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.frame);
        view->setFrame(NSMakeRect(10, 20, 30, 40));
        const auto constraint =
            between(view, one.attribute, kEqual, root, one.ofRoot, one.multiplier, one.constant);
        root->addConstraint(constraint);
        EXPECT_EQ(laidOut(), one.frame);
        root->removeConstraint(constraint);
    }
}

TEST_F(NSLayoutConstraints, SiblingsDependOnEachOther)
{
    const auto other = added(NSMakeRect(0, 0, 10, 10));
    const auto given = make<NSView>(NSMakeRect(100, 50, 20, 20));
    root->addSubview(given);
    root->addConstraints({
        between(view, kLeft, kEqual, other, kRight, 1, 8),
        between(other, kLeft, kEqual, given, kRight, 1, 0),
        between(other, kWidth, kEqual, view, kWidth, 2, 0),
    });
    EXPECT_EQ(laidOut(), "188 20 30 40");
    EXPECT_EQ(describe(other->frame()), "120 0 60 10");
    // The frame of a view that the program places counts.
    given->setFrameOrigin(NSMakePoint(0, 50));
    EXPECT_EQ(laidOut(), "88 20 30 40");
}

TEST_F(NSLayoutConstraints, TheStrongerOneWins)
{
    root->addConstraints({toRoot(kLeft, 1, kEqual, 998), toRoot(kLeft, 2, kEqual, 999)});
    EXPECT_EQ(laidOut(), "2 20 30 40");
    const NSLogCapture log;
    root->addConstraint(toRoot(kLeft, 3));
    EXPECT_EQ(laidOut(), "3 20 30 40");
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(NSLayoutConstraints, AmongEqualsTheFirstWins)
{
    root->addConstraints({toRoot(kLeft, 1, kEqual, 500), toRoot(kLeft, 2, kEqual, 500)});
    EXPECT_EQ(laidOut(), "1 20 30 40");
}

TEST_F(NSLayoutConstraints, OfRequiredOnesThatContradictTheLaterIsLoggedOnce)
{
    const NSLogCapture log;
    const auto later = toRoot(kRight, -20);
    root->addConstraints({toRoot(kLeft, 10), size(kWidth, 50), later});
    EXPECT_EQ(laidOut(), "10 20 50 40");
    root->setFrameSize(NSMakeSize(300, 100));
    EXPECT_EQ(describe(view->frame()), "10 20 50 40");
    ASSERT_EQ(log.messages().size(), 1U);
    EXPECT_EQ(log.messages().front(),
        "A required constraint contradicts earlier ones and is ignored: "
            + std::string(later->description().UTF8String()));
    // Where it does not contradict, it holds.
    root->setFrameSize(NSMakeSize(80, 100));
    EXPECT_EQ(describe(view->frame()), "10 20 50 40");
    EXPECT_EQ(log.messages().size(), 1U);
}

TEST_F(NSLayoutConstraints, TheSameOneTwiceIsNoContradiction)
{
    const NSLogCapture log;
    root->addConstraints({toRoot(kLeft, 10), toRoot(kLeft, 10), toRoot(kRight, -10)});
    EXPECT_EQ(laidOut(), "10 20 180 40");
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(NSLayoutConstraints, InequalitiesHoldAndNoMore)
{
    const auto least = size(kWidth, 25, kAtLeast);
    const auto most = size(kWidth, 60, kAtMost);
    root->addConstraints({least, most});
    EXPECT_EQ(laidOut(), "10 20 30 40");
    least->setConstant(50);
    EXPECT_EQ(laidOut(), "10 20 50 40");
    most->setConstant(55);
    least->setConstant(0);
    EXPECT_EQ(laidOut(), "10 20 50 40");
    most->setConstant(20);
    EXPECT_EQ(laidOut(), "10 20 20 40");
}

TEST_F(NSLayoutConstraints, TheMostViolatedInequalityDecides)
{
    const NSLogCapture log;
    root->addConstraints(
        {size(kWidth, 40, kAtLeast), size(kWidth, 90, kAtLeast), size(kWidth, 60, kAtLeast)});
    EXPECT_EQ(laidOut(), "10 20 90 40");
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(NSLayoutConstraints, AContradictoryInequalityIsLogged)
{
    const NSLogCapture log;
    root->addConstraints({size(kWidth, 40), size(kWidth, 50, kAtLeast)});
    EXPECT_EQ(laidOut(), "10 20 40 40");
    EXPECT_EQ(log.messages().size(), 1U);
}

TEST_F(NSLayoutConstraints, IntrinsicSizesAreKeptUnlessConstraintsAreStronger)
{
    view->natural = {80, NSViewNoIntrinsicMetric};
    root->addConstraint(toRoot(kLeft, 10));
    EXPECT_EQ(laidOut(), "10 20 80 40");
    // Larger: stronger than 250. Smaller: stronger than 750.
    const auto larger = size(kWidth, 120, kEqual, 251);
    root->addConstraint(larger);
    EXPECT_EQ(laidOut(), "10 20 120 40");
    larger->setPriority(249);
    EXPECT_EQ(laidOut(), "10 20 80 40");
    const auto smaller = size(kWidth, 20, kEqual, 749);
    root->addConstraint(smaller);
    EXPECT_EQ(laidOut(), "10 20 80 40");
    smaller->setPriority(751);
    EXPECT_EQ(laidOut(), "10 20 20 40");
    // Another natural size.
    root->removeConstraint(smaller);
    view->natural.width = 90;
    view->invalidateIntrinsicContentSize();
    EXPECT_EQ(laidOut(), "10 20 90 40");
}

TEST_F(NSLayoutConstraints, AViewMayHoldItsOwnSize)
{
    view->addConstraint(size(kWidth, 77));
    EXPECT_EQ(laidOut(), "10 20 77 40");
    // Also when it held it before it came into the superview.
    const auto late = make<NSView>(NSMakeRect(0, 0, 10, 10));
    late->setTranslatesAutoresizingMaskIntoConstraints(false);
    late->addConstraint(NSLayoutConstraint::constraintWithItem(late, kHeight, kEqual, late, kWidth, 3, 0));
    root->addSubview(late);
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(describe(late->frame()), "0 -20 10 30");
}

TEST_F(NSLayoutConstraints, WithTheFlagOnConstraintsHaveNoEffect)
{
    const NSLogCapture log;
    view->setTranslatesAutoresizingMaskIntoConstraints(true);
    view->setFrameOrigin(NSMakePoint(10.5, 20)); // not rounded to pixels either
    root->addConstraints({toRoot(kLeft, 1), size(kWidth, 99)});
    EXPECT_EQ(laidOut(), "10.5 20 30 40");
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    EXPECT_EQ(laidOut(), "1 20 99 40");
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(NSLayoutConstraints, NegativeSizesCountAsZero)
{
    root->addConstraints({toRoot(kLeft, 150), toRoot(kRight, -150)});
    EXPECT_EQ(laidOut(), "150 20 0 40");
}

TEST_F(NSLayoutConstraints, EdgesAreRoundedToPixels)
{
    root->addConstraints({toRoot(kLeft, 10.4), toRoot(kRight, -10.6)});
    EXPECT_EQ(laidOut(), "10 20 179 40");
}

TEST_F(NSLayoutConstraints, AScrolledSuperviewCountsFromItsVisibleCorner)
{
    root->setBoundsOrigin(NSMakePoint(1000, 500));
    root->addConstraints({toRoot(kLeft, 10), toRoot(kTop, 10)});
    EXPECT_EQ(laidOut(), "1010 550 30 40");
}

TEST_F(NSLayoutConstraints, LayoutHappensInTheNextTurnOfTheRunLoop)
{
    const auto window =
        make<NSWindow>(NSMakeRect(0, 0, 200, 100), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
    window->setContentView(root);
    root->addConstraint(toRoot(kLeft, 33));
    EXPECT_TRUE(root->needsLayout());
    EXPECT_EQ(describe(view->frame()), "10 20 30 40");
    NSRunLoop::mainRunLoop()->runMode(NSDefaultRunLoopMode, nullptr);
    EXPECT_EQ(describe(view->frame()), "33 20 30 40");
    EXPECT_FALSE(root->needsLayout());
}

TEST_F(NSLayoutConstraints, NestedViewsAreLaidOutFromTheOutside)
{
    const auto inner = make<NSView>(NSMakeRect(0, 0, 5, 5));
    inner->setTranslatesAutoresizingMaskIntoConstraints(false);
    view->addSubview(inner);
    view->addConstraint(between(inner, kWidth, kEqual, view, kWidth, 0.5, 0));
    root->addConstraint(size(kWidth, 100));
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(inner->frame().size.width, 50);
}

TEST_F(NSLayoutConstraints, ViewsHoldThemInOrder)
{
    const auto one = toRoot(kLeft, 1), two = toRoot(kTop, 2);
    root->addConstraints({one, nullptr, two, one});
    EXPECT_EQ(root->constraints(), (std::vector<RetainPtr<NSLayoutConstraint>>{one, two}));
    EXPECT_TRUE(one->isActive());
    root->removeConstraint(one);
    view->removeConstraint(two); // which it does not hold
    EXPECT_EQ(root->constraints(), std::vector<RetainPtr<NSLayoutConstraint>>{two});
    EXPECT_FALSE(one->isActive());
    EXPECT_TRUE(view->constraints().empty());
}

TEST_F(NSLayoutConstraints, SetActiveFindsTheViewThatHoldsThem)
{
    const auto other = added(NSMakeRect(0, 0, 10, 10));
    const auto own = size(kWidth, 5), up = toRoot(kLeft, 0),
               down = between(root, kWidth, kEqual, view, kWidth, 1, 0),
               beside = between(view, kLeft, kEqual, other, kLeft, 1, 0);
    NSLayoutConstraint::activateConstraints({own, up, nullptr, down, beside});
    EXPECT_EQ(view->constraints(), std::vector<RetainPtr<NSLayoutConstraint>>{own});
    EXPECT_EQ(root->constraints(), (std::vector<RetainPtr<NSLayoutConstraint>>{up, down, beside}));
    NSLayoutConstraint::deactivateConstraints({own, up, nullptr, down, beside});
    EXPECT_TRUE(view->constraints().empty());
    EXPECT_TRUE(root->constraints().empty());
}

TEST_F(NSLayoutConstraints, ItemsElsewhereAreRefused)
{
    const NSLogCapture log;
    const auto stranger = make<NSView>(NSMakeRect(0, 0, 10, 10));
    const auto constraint = between(view, kLeft, kEqual, stranger, kLeft, 1, 0);
    root->addConstraint(constraint);
    constraint->setActive(true);
    EXPECT_FALSE(constraint->isActive());
    EXPECT_EQ(log.messages().size(), 2U);
}

TEST_F(NSLayoutConstraints, ARemovedViewTakesItsConstraintsAway)
{
    const auto constraint = toRoot(kLeft, 1), own = size(kWidth, 50);
    root->addConstraint(constraint);
    view->addConstraint(own);
    view->removeFromSuperview();
    EXPECT_FALSE(constraint->isActive());
    EXPECT_TRUE(own->isActive());
    // And so does one that moves to another superview.
    root->addSubview(view);
    root->addConstraint(constraint);
    root->addSubview(view); // to the top
    EXPECT_TRUE(constraint->isActive());
    make<NSView>()->addSubview(view);
    EXPECT_FALSE(constraint->isActive());
}

TEST_F(NSLayoutConstraints, DestroyedViewsHaveNoEffect)
{
    auto other = added(NSMakeRect(0, 0, 10, 10));
    const auto constraint = between(view, kLeft, kEqual, other, kRight, 1, 0);
    auto holder = make<NSView>(NSMakeRect(0, 0, 10, 10));
    const auto held = between(holder, kWidth, kEqual, nullptr, NSLayoutAttributeNotAnAttribute, 1, 0);
    holder->addConstraint(held);
    holder = nullptr;
    EXPECT_FALSE(held->isActive());
    EXPECT_FALSE(held->firstItem());
    held->setActive(true);
    EXPECT_FALSE(held->isActive());

    other->removeFromSuperview();
    other = nullptr;
    root->addConstraint(constraint);
    EXPECT_EQ(laidOut(), "10 20 30 40");
}

TEST_F(NSLayoutConstraints, InvalidNumbersAreSanitized)
{
    const auto constraint = between(view, kLeft, kEqual, root, kLeft, NAN, INFINITY);
    EXPECT_EQ(constraint->multiplier(), 0);
    EXPECT_EQ(constraint->constant(), 0);
    constraint->setConstant(-INFINITY);
    EXPECT_EQ(constraint->constant(), 0);
    for (const float priority : {0.F, -5.F, std::numeric_limits<float>::quiet_NaN()}) {
        constraint->setPriority(priority);
        EXPECT_EQ(constraint->priority(), 1);
    }
    constraint->setPriority(5000);
    EXPECT_EQ(constraint->priority(), 1000);
}

TEST_F(NSLayoutConstraints, MissingItemsAndAttributesHaveNoEffect)
{
    root->addConstraints({
        between(nullptr, kLeft, kEqual, root, kLeft, 1, 5),
        between(view, NSLayoutAttributeNotAnAttribute, kEqual, root, kLeft, 1, 5),
        between(view, kLeft, kEqual, root, NSLayoutAttributeNotAnAttribute, 1, 5),
        between(view, kLeft, kEqual, nullptr, kLeft, 1, 5),
    });
    EXPECT_EQ(laidOut(), "10 20 30 40");
}

TEST_F(NSLayoutConstraints, TheDescriptionIsTheRelation)
{
    const std::string first = view->description().UTF8String(), second = root->description().UTF8String();
    EXPECT_EQ(std::string(toRoot(kRight, -10, kAtMost, 999)->description().UTF8String()),
        first + ".right <= " + second + ".right * 1 + -10 (priority 999)");
    EXPECT_EQ(std::string(size(kWidth, 10, kAtLeast)->description().UTF8String()),
        first + ".width >= 10 (priority 1000)");
}

} // namespace
