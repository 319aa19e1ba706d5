#include "DrawnPixels.h"
#include "RecordingView.h"

#include <QuartzCore/CALayer.h>
#include <gtest/gtest.h>

// Views that show a layer.

namespace {

/// A red layer with a blue pixel at the origin of its bounds.
class FlagLayer : public CALayer {
public:
    int drawings = 0;

    FlagLayer()
    {
        setNeedsDisplayOnBoundsChange(true);
        setNeedsDisplay();
    }
    void drawInContext(CGContextRef context) override
    {
        ++drawings;
        CGContextSetRGBFillColor(context, 1, 0, 0, 1);
        CGContextFillRect(context, bounds());
        CGContextSetRGBFillColor(context, 0, 0, 1, 1);
        CGContextFillRect(context, CGRectMake(bounds().origin.x, bounds().origin.y, 1, 1));
    }
};

/// A green root view of 4 x 3 points; in it, a green view of 2 x 2 points that shows a layer.
class HostedLayer : public testing::Test {
protected:
    Log log;
    RetainPtr<RecordingView> root = make<RecordingView>(NSMakeRect(0, 0, 4, 3), "root", log);
    RetainPtr<RecordingView> view = make<RecordingView>(NSMakeRect(1, 0, 2, 2), "view", log);
    RetainPtr<FlagLayer> layer = make<FlagLayer>();

    HostedLayer()
    {
        root->color = NSColor::greenColor();
        view->color = NSColor::greenColor();
        root->addSubview(view);
        view->setLayer(layer);
        view->setWantsLayer(true);
    }
    std::string drawn(std::size_t scale = 1) const
    {
        DrawnPixels pixels(4 * scale, 3 * scale);
        CGContextScaleCTM(pixels.context(), static_cast<CGFloat>(scale), static_cast<CGFloat>(scale));
        root->displayRectIgnoringOpacity(root->bounds(), pixels.graphicsContext());
        return pixels.text();
    }
    /// Whether `change` schedules a repaint of the view.
    template <class Change> bool redraws(Change change) const
    {
        view->setNeedsDisplay(false);
        change();
        return view->needsDisplay();
    }
};

} // namespace

TEST_F(HostedLayer, IsShownInPlaceOfTheViewsOwnDrawing)
{
    EXPECT_EQ(view->layer(), layer);
    EXPECT_TRUE(view->wantsLayer());
    EXPECT_EQ(drawn(), "gggg/grrg/gbrg");
    EXPECT_EQ(log, Log{"root draws 0 0 4 3"});
}

TEST_F(HostedLayer, IsNotShownUnlessWanted)
{
    EXPECT_FALSE(root->wantsLayer());
    EXPECT_EQ(root->layer(), nullptr);
    view->setWantsLayer(false);
    EXPECT_EQ(drawn(), "gggg/gggg/gggg");
    view->setWantsLayer(true);
    view->setLayer(nullptr);
    EXPECT_EQ(view->layer(), nullptr);
    EXPECT_EQ(drawn(), "gggg/gggg/gggg");
    EXPECT_EQ(layer->drawings, 0);
}

TEST_F(HostedLayer, IsDrawnOnceForManyRepaints)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(drawn(), "gggg/grrg/gbrg");
    EXPECT_EQ(layer->drawings, 1);
}

TEST_F(HostedLayer, HasYUpwardInAFlippedViewToo)
{
    view->flipped = true;
    EXPECT_EQ(drawn(), "gggg/grrg/gbrg");
    layer->setBounds(CGRectMake(5, 6, 2, 2));
    view->setBoundsOrigin(NSMakePoint(-3, 8));
    EXPECT_EQ(drawn(), "gggg/grrg/gbrg");
    view->flipped = false;
    EXPECT_EQ(drawn(), "gggg/grrg/gbrg");
}

TEST_F(HostedLayer, LiesBelowTheSubviews)
{
    const auto subview = make<RecordingView>(NSMakeRect(1, 1, 1, 1), "subview", log);
    subview->color = NSColor::whiteColor();
    view->addSubview(subview);
    EXPECT_EQ(drawn(), "gggg/grwg/gbrg");
}

TEST_F(HostedLayer, IsClippedToTheView)
{
    const auto sublayer = make<FlagLayer>();
    sublayer->setFrame(CGRectMake(1, 1, 50, 50));
    layer->addSublayer(sublayer);
    EXPECT_EQ(drawn(), "gggg/grbg/gbrg");
}

TEST_F(HostedLayer, HasTheSizeOfTheView)
{
    EXPECT_EQ(describe(layer->frame()), "0 0 2 2");
    view->setFrameSize(NSMakeSize(3, 1));
    EXPECT_EQ(describe(layer->frame()), "0 0 3 1");
    EXPECT_EQ(drawn(), "gggg/gggg/gbrr");
    EXPECT_EQ(layer->drawings, 1);
    view->setBounds(NSMakeRect(7, 8, 6, 2));
    EXPECT_EQ(describe(layer->frame()), "7 8 6 2");
    EXPECT_EQ(describe(layer->bounds()), "0 0 6 2");
}

TEST_F(HostedLayer, HasTheScaleThatItIsShownAt)
{
    EXPECT_EQ(drawn(2), "gggggggg/gggggggg/ggrrrrgg/ggrrrrgg/ggbbrrgg/ggbbrrgg");
    EXPECT_EQ(layer->contentsScale(), 2);
    EXPECT_EQ(CGImageGetWidth(layer->contents()), 4);
    view->setBoundsSize(NSMakeSize(4, 4)); // two units for each point
    drawn(2);
    EXPECT_EQ(layer->contentsScale(), 1);
    EXPECT_EQ(CGImageGetWidth(layer->contents()), 4);
}

TEST_F(HostedLayer, AScaleOfItsOwnStays)
{
    layer->setContentsScale(1);
    drawn(2);
    EXPECT_EQ(layer->contentsScale(), 1);
    EXPECT_EQ(CGImageGetWidth(layer->contents()), 2);
}

TEST_F(HostedLayer, AdaptingTheScaleSchedulesNoOtherRepaint)
{
    drawn(1);
    EXPECT_FALSE(redraws([&] { drawn(2); }));
    EXPECT_EQ(layer->drawings, 2);
}

TEST_F(HostedLayer, ItsChangesAreRepainted)
{
    const auto sublayer = make<CALayer>();
    const auto other = make<CALayer>();
    EXPECT_TRUE(redraws([&] { layer->setNeedsDisplay(); }));
    sublayer->setBounds(CGRectMake(0, 0, 1, 1));
    EXPECT_TRUE(redraws([&] { layer->addSublayer(sublayer); }));
    EXPECT_TRUE(redraws([&] { sublayer->setHidden(true); }));
    EXPECT_FALSE(redraws([&] { sublayer->setNeedsDisplay(); }));
    EXPECT_FALSE(redraws([&] { view->setLayer(layer); }));
    EXPECT_FALSE(redraws([&] { view->setWantsLayer(true); }));
    EXPECT_TRUE(redraws([&] { view->setLayer(other); }));
    EXPECT_FALSE(redraws([&] { layer->setNeedsDisplay(); }));
    EXPECT_TRUE(redraws([&] { view->setWantsLayer(false); }));
    EXPECT_FALSE(redraws([&] { other->setNeedsDisplay(); }));
}

TEST_F(HostedLayer, GoesToTheLastViewThatItWasGivenTo)
{
    const auto second = make<NSView>(NSMakeRect(0, 0, 1, 1));
    EXPECT_TRUE(redraws([&] { second->setLayer(layer); }));
    EXPECT_EQ(view->layer(), nullptr);
    EXPECT_EQ(second->layer(), layer);
    EXPECT_EQ(drawn(), "gggg/gggg/gggg");
    const auto superlayer = make<CALayer>();
    superlayer->addSublayer(layer);
    EXPECT_EQ(second->layer(), nullptr);
    view->setLayer(layer);
    EXPECT_TRUE(superlayer->sublayers().empty());
}

TEST_F(HostedLayer, OutlivesItsView)
{
    root = nullptr;
    view = nullptr;
    layer->setNeedsDisplay();
    EXPECT_EQ(layer->superlayer(), nullptr);
}
