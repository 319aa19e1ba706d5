#include "DrawnPixels.h"
#include "RecordingView.h"

#include "support/Describe.h"

#include <AppKit/NSTrackingArea.h>
#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <utility>
#include <vector>

namespace {

/// A view that lists its number among those that were drawn.
class Numbered : public NSView {
public:
    Numbered(NSRect frame, int number, bool isFlipped, std::vector<int>& drawn)
        : NSView(frame)
        , number(number)
        , _isFlipped(isFlipped)
        , _drawn(drawn)
    {
    }

    const int number;

    bool isFlipped() const override { return _isFlipped; }
    void drawRect(NSRect) override { _drawn.push_back(number); }

private:
    const bool _isFlipped;
    std::vector<int>& _drawn;
};

/// Can be hit up to 10 points around its frame.
class WideTarget : public NSView {
public:
    using NSView::NSView;
    NSView* hitTest(NSPoint point) override
    {
        return NSPointInRect(point, NSInsetRect(frame(), -10, -10)) ? this : nullptr;
    }
};

/// What a hit test has to return, by a search through all views.
NSView* plainHitTest(NSView& view, NSPoint point)
{
    const NSPoint inside = view.convertPointFromView(point, view.superview());
    if (view.isHidden() || !view.mouse(inside, view.bounds()))
        return nullptr;
    for (auto subview = view.subviews().rbegin(); subview != view.subviews().rend(); ++subview) {
        if (NSView* const hit = plainHitTest(**subview, inside))
            return hit;
    }
    return &view;
}

/// A tree of 600 views at random places, some of them in groups, which changes at random.
class ManyViews : public testing::Test {
protected:
    static constexpr NSRect kBounds{{0, 0}, {400, 300}};

    std::vector<int> drawn;
    RetainPtr<NSView> root = make<Numbered>(kBounds, 0, false, drawn);
    std::vector<RetainPtr<NSView>> views; ///< without the root
    std::vector<RetainPtr<NSView>> groups{root};

    void SetUp() override
    {
        for (int i = 1; i <= 3; ++i) {
            auto group = make<Numbered>(randomFrame(150), i, i == 2, drawn);
            root->addSubview(group);
            group->setBoundsOrigin({0, -40.0 * i});
            views.push_back(group);
            groups.push_back(std::move(group));
        }
        for (int i = 4; i <= 600; ++i) {
            views.push_back(make<Numbered>(randomFrame(i % 40 ? 20 : 300), i, i % 3 == 0, drawn));
            any(groups)->addSubview(views.back());
        }
    }

    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(_random); }
    /// Quarters of a point, so that edges meet.
    double number(int limit) { return below(4 * limit + 1) / 4.0; }
    NSRect randomFrame(int longest)
    {
        return NSMakeRect(number(440) - 40, number(340) - 40, number(longest), number(longest));
    }
    NSPoint randomPoint() { return {number(400), number(300)}; }
    RetainPtr<NSView>& any(std::vector<RetainPtr<NSView>>& list)
    {
        return list[std::size_t(below(int(list.size())))];
    }

    /// Does one of all the things that can happen to a view.
    void change()
    {
        NSView& view = *any(views);
        NSView* const group = any(groups);
        switch (below(8)) {
        case 0:
            return view.setHidden(!view.isHidden());
        case 1:
            return view.removeFromSuperview();
        case 2:
            return group->addSubview(&view);
        case 3:
            return group->addSubview(&view, NSWindowBelow, any(views));
        case 4:
            return view.setFrameSize(NSMakeSize(number(200), number(100)));
        case 5:
            return group->setBoundsOrigin(NSMakePoint(number(20), number(20)));
        default:
            return view.setFrameOrigin(NSMakePoint(number(400), number(300)));
        }
    }

    /// The numbers of the views that touch a pixel of `rect`, which is in the root's coordinates, by a search
    /// through all views.
    std::vector<int> touching(NSView& view, NSRect rect)
    {
        std::vector<int> numbers;
        const NSRect frame = view.convertRectToView(view.bounds(), root);
        const NSPoint least{std::floor(NSMinX(frame)), std::floor(NSMinY(frame))};
        const NSRect pixels = NSIntersectionRect(
            rect, {least, {std::ceil(NSMaxX(frame)) - least.x, std::ceil(NSMaxY(frame)) - least.y}});
        if (NSIsEmptyRect(pixels))
            return numbers;
        numbers.push_back(dynamic_cast<Numbered&>(view).number);
        for (const auto& subview : view.subviews()) {
            if (subview->isHidden())
                continue;
            const std::vector<int> inside = touching(*subview, pixels);
            numbers.insert(numbers.end(), inside.begin(), inside.end());
        }
        return numbers;
    }

    std::mt19937 _random{5};
};

TEST_F(ManyViews, AHitTestFindsTheTopmostView)
{
    int hits = 0;
    for (int step = 0; step < 3000; ++step) {
        const NSPoint point = randomPoint();
        NSView* const hit = root->hitTest(point);
        ASSERT_EQ(hit, plainHitTest(*root, point)) << "step " << step;
        hits += hit != root;
        change();
    }
    EXPECT_GT(hits, 1000); // not only the background
}

TEST_F(ManyViews, AllViewsInTheRectangleAreDrawnFromBottomToTop)
{
    std::size_t count = 0;
    for (int step = 0; step < 1000; ++step) {
        const NSRect rect =
            NSMakeRect(below(380), below(280), 1 + below(step % 10 ? 20 : 400), 1 + below(20));
        DrawnPixels pixels(std::size_t(rect.size.width), std::size_t(rect.size.height));
        drawn.clear();
        root->displayRectIgnoringOpacity(rect, pixels.graphicsContext());
        ASSERT_EQ(drawn, touching(*root, rect)) << "step " << step;
        count += drawn.size();
        change();
    }
    EXPECT_GT(count, 1000U);
}

TEST_F(ManyViews, AViewThatCoversAPartOfAPixelIsDrawnWithAllOfIt)
{
    const auto grid = make<NSView>(kBounds);
    for (int i = 0; i < 100; ++i)
        grid->addSubview(make<Numbered>(NSMakeRect(3.5 * i, 0, 3.5, 10), i, false, drawn));
    DrawnPixels pixels(1, 1);
    grid->displayRectIgnoringOpacity(NSMakeRect(3, 0, 1, 1), pixels.graphicsContext()); // half of each
    EXPECT_EQ(drawn, (std::vector<int>{0, 1}));
    drawn.clear();
    grid->displayRectIgnoringOpacity(NSMakeRect(4, 0, 1, 1), pixels.graphicsContext());
    EXPECT_EQ(drawn, std::vector<int>{1});
}

TEST_F(ManyViews, AHitTestFindsTheTopmostOfFewViews)
{
    int hits = 0;
    for (int step = 0; step < 1000; ++step) {
        const auto box = make<Numbered>(kBounds, 0, step % 2 == 0, drawn);
        for (int i = 0; i < 10; ++i)
            box->addSubview(make<Numbered>(randomFrame(100), i, i % 3 == 0, drawn));
        const NSPoint point = randomPoint();
        NSView* const hit = box->hitTest(point);
        ASSERT_EQ(hit, plainHitTest(*box, point)) << "step " << step;
        hits += hit != box;
    }
    EXPECT_GT(hits, 100); // not only the background
}

TEST_F(ManyViews, AHitTestOutsideOfAFrameIsLeftToTheOverride)
{
    for (const int count : {12, 50}) { // few and many
        SCOPED_TRACE(count);
        const auto target = make<WideTarget>(NSMakeRect(100, 100, 10, 10));
        const auto box = make<NSView>(kBounds);
        for (int i = 0; i < count; ++i)
            box->addSubview(make<NSView>(NSMakeRect(8 * i, 0, 8, 300)));
        EXPECT_EQ(box->hitTest({95, 95}), box->subviews()[11]);
        box->addSubview(target);
        EXPECT_EQ(box->hitTest({95, 95}), target);
        EXPECT_EQ(box->hitTest({89, 95}), box->subviews()[11]);
        box->addSubview(target, NSWindowBelow, nullptr);
        EXPECT_EQ(box->hitTest({95, 95}), box->subviews()[12]);
        target->removeFromSuperview();
        EXPECT_EQ(box->hitTest({95, 95}), box->subviews()[11]);
    }
}

TEST_F(ManyViews, AnOverrideCountsOfAViewThatAddsItselfWhileItIsConstructed)
{
    class SelfAdding : public NSView {
    public:
        SelfAdding(NSRect frame, NSView& superview)
            : NSView(frame)
        {
            superview.addSubview(this);
        }
    };
    class WideSelfAdding : public SelfAdding {
    public:
        using SelfAdding::SelfAdding;
        NSView* hitTest(NSPoint) override { return this; }
    };
    const auto box = make<NSView>(kBounds);
    for (int i = 0; i < 50; ++i)
        box->addSubview(make<NSView>(NSMakeRect(8 * i, 0, 8, 300)));
    EXPECT_EQ(box->hitTest({1, 1}), box->subviews()[0]);
    const auto wide = make<WideSelfAdding>(NSMakeRect(300, 0, 8, 8), *box);
    EXPECT_EQ(box->hitTest({1, 1}), wide);
}

TEST_F(ManyViews, FarAndHugeViewsAreFound)
{
    const auto box = make<NSView>(NSMakeRect(0, 0, 4e12, 4e12));
    for (int i = 0; i < 50; ++i)
        box->addSubview(make<NSView>(NSMakeRect(8 * i, 0, 8, 8)));
    const auto far = make<NSView>(NSMakeRect(3e12, 3e12, 10, 10));
    const auto huge = make<NSView>(NSMakeRect(-1e300, 1e12, 2e300, 5e11));
    box->addSubview(far);
    box->addSubview(huge);
    EXPECT_EQ(box->hitTest({3e12 + 5, 3e12 + 5}), far);
    EXPECT_EQ(box->hitTest({1, 1.2e12}), huge);
    EXPECT_EQ(box->hitTest({9, 5}), box->subviews()[1]);
    EXPECT_EQ(box->hitTest({9, 9}), box);
    far->setFrameOrigin({9, 9});
    EXPECT_EQ(box->hitTest({3e12 + 5, 3e12 + 5}), box);
    EXPECT_EQ(box->hitTest({9, 10}), far);
}

TEST_F(ManyViews, ViewsThatChangeTheTreeWhileTheyAreDrawn)
{
    class Changing : public Numbered {
    public:
        using Numbered::Numbered;
        std::function<void()> onDraw;
        void drawRect(NSRect dirty) override
        {
            Numbered::drawRect(dirty);
            if (onDraw)
                std::exchange(onDraw, nullptr)();
        }
    };
    const auto box = make<NSView>(kBounds);
    std::vector<RetainPtr<Changing>> row;
    for (int i = 0; i < 50; ++i) {
        row.push_back(make<Changing>(NSMakeRect(2 * i, 0, 2, 10), i, false, drawn));
        box->addSubview(row.back());
    }
    // Some come, some go, one moves into the rectangle, and one is put below the others.
    row[2]->onDraw = [&] {
        row[4]->removeFromSuperview();
        row[40]->setFrameOrigin({2, 0});
        box->addSubview(row[6], NSWindowBelow, nullptr);
        box->addSubview(make<Numbered>(NSMakeRect(0, 0, 5, 5), 100, false, drawn));
        row[4] = nullptr;
    };
    DrawnPixels pixels(16, 10);
    box->displayRectIgnoringOpacity(NSMakeRect(0, 0, 16, 10), pixels.graphicsContext());
    EXPECT_EQ(drawn, (std::vector<int>{0, 1, 2, 3, 5, 7, 40, 100}));
    drawn.clear();
    box->displayRectIgnoringOpacity(NSMakeRect(0, 0, 16, 10), pixels.graphicsContext());
    EXPECT_EQ(drawn, (std::vector<int>{6, 0, 1, 2, 3, 5, 7, 40, 100}));
}

TEST_F(ManyViews, OnlyThoseUnderThePointerTrackIt)
{
    class Tracking : public RecordingView {
    public:
        using RecordingView::RecordingView;
        int updates = 0;
        std::function<void()> onUpdate;
        void updateTrackingAreas() override
        {
            ++updates;
            if (onUpdate)
                onUpdate();
        }
    };
    Log log; // outlives the views
    const auto window = make<NSWindow>(kBounds, NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    std::vector<RetainPtr<Tracking>> row;
    for (int i = 0; i < 50; ++i) {
        const NSRect frame = NSMakeRect(2 * i, 0, 2, 100);
        row.push_back(make<Tracking>(frame, std::to_string(i), log));
        row.back()->addTrackingArea(make<NSTrackingArea>(
            row.back()->bounds(), NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways, row.back()));
        window->contentView()->addSubview(row.back());
    }
    // A view may come under the pointer while others are asked for their areas.
    row[5]->onUpdate = [&] { row[8]->setFrameOrigin({10, 50}); };
    log.clear();
    const auto move = NSEvent::mouseEventWithType(
        NSEventTypeMouseMoved, NSMakePoint(10.5, 70), 0, 0, window->windowNumber(), nullptr, 0, 0, 0);
    window->sendEvent(move);
    EXPECT_EQ(log, (Log{"5 entered 0.5 70 x0", "8 entered 0.5 20 x0"}));
    for (std::size_t i = 0; i < row.size(); ++i)
        EXPECT_EQ(row[i]->updates, i == 5 || i == 8 ? 1 : 0) << i;
}

} // namespace
