#include "support/Describe.h"

#include <AppKit/NSClipView.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <gtest/gtest.h>

namespace {

class FlippedClipView : public NSClipView {
public:
    using NSClipView::NSClipView;
    bool isFlipped() const override { return true; }

protected:
    ~FlippedClipView() override = default;
};

/// A clip view of 100 x 50 with a document of 300 x 200.
struct Scrolled {
    RetainPtr<NSClipView> clip;
    RetainPtr<NSView> document = make<NSView>(NSMakeRect(0, 0, 300, 200));

    explicit Scrolled(RetainPtr<NSClipView> made = make<NSClipView>(NSMakeRect(0, 0, 100, 50)))
        : clip(std::move(made))
    {
        clip->setDocumentView(document);
    }
    std::string origin() const { return describe(clip->bounds().origin); }
};

TEST(NSClipView, ShowsTheDocumentFromItsCorner)
{
    const Scrolled scrolled;
    EXPECT_EQ(scrolled.document->superview(), scrolled.clip);
    EXPECT_EQ(describe(scrolled.clip->documentRect()), "0 0 300 200");
    EXPECT_EQ(describe(scrolled.clip->documentVisibleRect()), "0 0 100 50");
    scrolled.clip->setDocumentView(nullptr);
    EXPECT_EQ(scrolled.document->superview(), nullptr);
    EXPECT_EQ(describe(scrolled.clip->documentRect()), "0 0 0 0");
    EXPECT_EQ(describe(scrolled.clip->documentVisibleRect()), "0 0 0 0");
}

TEST(NSClipView, StartsAtTheCornerOfAMovedDocument)
{
    Scrolled scrolled;
    const auto other = make<NSView>(NSMakeRect(40, 30, 500, 500));
    scrolled.clip->setDocumentView(other);
    EXPECT_EQ(scrolled.origin(), "40 30");
    EXPECT_EQ(scrolled.clip->subviews().size(), 1U);
    EXPECT_EQ(describe(scrolled.clip->documentVisibleRect()), "0 0 100 50");
}

TEST(NSClipView, ScrollsAsFarAsTheDocumentReaches)
{
    const Scrolled scrolled;
    scrolled.clip->scrollToPoint(NSMakePoint(120, 60));
    EXPECT_EQ(scrolled.origin(), "120 60");
    EXPECT_EQ(describe(scrolled.clip->documentVisibleRect()), "120 60 100 50");
    scrolled.clip->scrollToPoint(NSMakePoint(1000, 1000));
    EXPECT_EQ(scrolled.origin(), "200 150");
    scrolled.clip->scrollToPoint(NSMakePoint(-5, -5));
    EXPECT_EQ(scrolled.origin(), "0 0");
}

TEST(NSClipView, ASmallDocumentDoesNotScroll)
{
    const Scrolled scrolled;
    scrolled.document->setFrameSize(NSMakeSize(40, 30));
    scrolled.clip->scrollToPoint(NSMakePoint(10, 10));
    EXPECT_EQ(scrolled.origin(), "0 0");
}

TEST(NSClipView, ChangesOfSizeScrollBackIntoTheDocument)
{
    const Scrolled scrolled;
    scrolled.clip->scrollToPoint(NSMakePoint(200, 150));
    scrolled.document->setFrameSize(NSMakeSize(250, 120));
    EXPECT_EQ(scrolled.origin(), "150 70");
    scrolled.clip->setFrameSize(NSMakeSize(130, 60));
    EXPECT_EQ(scrolled.origin(), "120 60");
}

/// Turns the wheel in a window around the clip view.
struct Wheel {
    RetainPtr<NSWindow> window =
        make<NSWindow>(NSMakeRect(0, 0, 100, 50), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
    bool passedOn = false;

    explicit Wheel(const RetainPtr<NSClipView>& clip)
    {
        class Around : public NSView {
        public:
            explicit Around(bool& gotIt)
                : _gotIt(gotIt)
            {
            }
            void scrollWheel(NSEvent*) override { _gotIt = true; }

        protected:
            ~Around() override = default;

        private:
            bool& _gotIt;
        };
        window->setContentView(make<Around>(passedOn));
        window->contentView()->addSubview(clip);
    }
    ~Wheel() { window->setContentView(nullptr); }
    Wheel(const Wheel&) = delete;
    Wheel& operator=(const Wheel&) = delete;

    void turn(CGFloat x, CGFloat y, bool isPrecise = true, NSEventModifierFlags flags = 0)
    {
        const auto event = NSEvent::scrollWheelEventWithLocation(
            NSMakePoint(50, 25), flags, 0, window->windowNumber(), x, y, isPrecise);
        window->sendEvent(event);
    }
};

TEST(NSClipView, TheWheelScrolls)
{
    const Scrolled scrolled;
    scrolled.clip->scrollToPoint(NSMakePoint(100, 100));
    Wheel wheel(scrolled.clip);
    wheel.turn(10, 20);
    EXPECT_EQ(scrolled.origin(), "90 120"); // away from the user: what is further up appears
    wheel.turn(0, -1, false);
    EXPECT_EQ(scrolled.origin(), "90 104");
    wheel.turn(0, -30, true, NSEventModifierFlagShift);
    EXPECT_EQ(scrolled.origin(), "120 104");
    EXPECT_FALSE(wheel.passedOn);
    wheel.turn(0, 1000);
    EXPECT_FALSE(wheel.passedOn);
    wheel.turn(0, 1000); // the end is reached
    EXPECT_TRUE(wheel.passedOn);
}

TEST(NSClipView, TheWheelScrollsAFlippedViewTheSameWay)
{
    const Scrolled scrolled(make<FlippedClipView>(NSMakeRect(0, 0, 100, 50)));
    scrolled.clip->scrollToPoint(NSMakePoint(100, 100));
    Wheel wheel(scrolled.clip);
    wheel.turn(10, 20);
    EXPECT_EQ(scrolled.origin(), "90 80");
}

TEST(NSClipView, AViewInTheDocumentScrollsItselfIntoView)
{
    const Scrolled scrolled;
    const auto view = make<NSView>(NSMakeRect(150, 100, 40, 20));
    scrolled.document->addSubview(view);
    EXPECT_TRUE(view->scrollRectToVisible(view->bounds()));
    EXPECT_EQ(scrolled.origin(), "90 70");
    EXPECT_FALSE(view->scrollRectToVisible(view->bounds()));
    scrolled.clip->scrollToPoint(NSMakePoint(200, 150));
    EXPECT_TRUE(view->scrollRectToVisible(view->bounds()));
    EXPECT_EQ(scrolled.origin(), "150 100");
    // The start of what is too large.
    EXPECT_TRUE(scrolled.document->scrollRectToVisible(NSMakeRect(20, 10, 270, 180)));
    EXPECT_EQ(scrolled.origin(), "20 10");
    EXPECT_FALSE(make<NSView>()->scrollRectToVisible(NSMakeRect(0, 0, 1, 1)));
}

} // namespace
