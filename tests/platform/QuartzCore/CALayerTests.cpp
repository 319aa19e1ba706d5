#include <QuartzCore/CALayer.h>

#include "Foundation/testing/NSLogCapture.h"
#include "support/Canvas.h"
#include "support/Describe.h"
#include "support/Numbers.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

/// A layer that records how it is asked to draw, and fills a part of itself.
class PatchLayer : public CALayer {
public:
    /// "clip, CTM" of each drawing.
    std::vector<std::string> drawings;
    /// Filled in each drawing.
    CGRect patch = CGRectInfinite;
    std::function<void()> onDraw;

    void drawInContext(CGContextRef context) override
    {
        drawings.push_back(
            describe(CGContextGetClipBoundingBox(context)) + ", " + describe(CGContextGetCTM(context)));
        CGContextSetRGBFillColor(context, 0, 0, 0, 1);
        CGContextFillRect(context, CGRectIntersection(patch, CGContextGetClipBoundingBox(context)));
        if (onDraw)
            onDraw();
    }
};

/// What the layer looks like, at a scale.
Canvas shown(CALayer* layer, int width, int height, int scale = 1)
{
    Canvas canvas(width * scale, height * scale);
    CGContextScaleCTM(canvas.context(), scale, scale);
    layer->renderInContext(canvas.context());
    return canvas;
}

RetainPtr<PatchLayer> makePatchLayer(CGRect frame)
{
    auto layer = make<PatchLayer>();
    layer->setFrame(frame);
    layer->setNeedsDisplay();
    return layer;
}

using Changes = std::vector<std::string>;

} // namespace

// Contents.

TEST(CALayer, IsEmptyAndNeedsNoDisplayAtFirst)
{
    const auto layer = make<CALayer>();
    EXPECT_EQ(describe(layer->bounds()), "0 0 0 0");
    EXPECT_EQ(describe(layer->position()), "0 0");
    EXPECT_EQ(layer->contentsScale(), 1);
    EXPECT_FALSE(layer->needsDisplay());
    EXPECT_FALSE(layer->needsDisplayOnBoundsChange());
    EXPECT_FALSE(layer->isHidden());
    EXPECT_EQ(layer->contents(), nullptr);
    EXPECT_EQ(layer->superlayer(), nullptr);
    EXPECT_TRUE(layer->sublayers().empty());
}

TEST(CALayer, DrawsNothingUntilMarkedForDisplay)
{
    const auto layer = make<PatchLayer>();
    layer->setBounds(CGRectMake(0, 0, 2, 1));
    EXPECT_COVERAGE(shown(layer, 2, 1), "..");
    EXPECT_TRUE(layer->drawings.empty());
    layer->setNeedsDisplay();
    EXPECT_TRUE(layer->needsDisplay());
    EXPECT_COVERAGE(shown(layer, 2, 1), "##");
    EXPECT_FALSE(layer->needsDisplay());
}

TEST(CALayer, CachesItsContents)
{
    const auto layer = makePatchLayer(CGRectMake(0, 0, 3, 2));
    layer->patch = CGRectMake(0, 0, 1, 1);
    for (int i = 0; i < 3; ++i)
        EXPECT_COVERAGE(shown(layer, 3, 2),
            "..."
            "#..");
    EXPECT_EQ(layer->drawings.size(), 1);
    layer->patch = CGRectMake(2, 1, 1, 1);
    layer->setNeedsDisplay();
    EXPECT_COVERAGE(shown(layer, 3, 2),
        "..#"
        "...");
    EXPECT_EQ(layer->drawings.size(), 2);
}

TEST(CALayer, TheClipIsItsBounds)
{
    const auto layer = makePatchLayer(CGRectMake(50, 60, 3, 2));
    layer->displayIfNeeded();
    EXPECT_EQ(layer->drawings, Changes{"0 0 3 2, 1 0 0 1 0 0"});
    layer->setBounds(CGRectMake(-5, 7, 3, 2));
    layer->display();
    EXPECT_EQ(layer->drawings.back(), "-5 7 3 2, 1 0 0 1 5 -7");
}

TEST(CALayer, ItsBitmapHasItsScale)
{
    const auto layer = makePatchLayer(CGRectMake(0, 0, 2, 1));
    layer->patch = CGRectMake(0.5, 0, 1, 0.5);
    layer->setContentsScale(2);
    EXPECT_COVERAGE(shown(layer, 2, 1, 2),
        "...."
        ".##.");
    EXPECT_EQ(layer->drawings, Changes{"0 0 2 1, 2 0 0 2 0 0"});
    EXPECT_EQ(CGImageGetWidth(layer->contents()), 4);
    EXPECT_EQ(CGImageGetHeight(layer->contents()), 2);
}

TEST(CALayer, BoundsThatFillAPixelInPartGetAllOfIt)
{
    const auto layer = makePatchLayer(CGRectMake(0, 0, 2.5, 1));
    EXPECT_COVERAGE(shown(layer, 4, 1), "###.");
    EXPECT_EQ(layer->drawings, Changes{"0 0 3 1, 1 0 0 1 0 0"});
    // 3 times 1/3 is more than 1 by the last bit of a product at most.
    layer->setContentsScale(3);
    layer->setBounds(CGRectMake(0, 0, 1.0 / 3, 0.1 * 10 / 3));
    layer->display();
    EXPECT_EQ(CGImageGetWidth(layer->contents()), 1);
    EXPECT_EQ(CGImageGetHeight(layer->contents()), 1);
}

TEST(CALayer, AnotherScaleRedrawsWhatItHasDrawn)
{
    const auto layer = makePatchLayer(CGRectMake(0, 0, 2, 1));
    layer->setContentsScale(3); // nothing was drawn at the old scale
    layer->displayIfNeeded();
    EXPECT_FALSE(layer->needsDisplay());
    layer->setContentsScale(3);
    EXPECT_FALSE(layer->needsDisplay());
    for (const double invalid : {0.0, -1.0, kNaN, kInfinity}) {
        layer->setContentsScale(invalid);
        EXPECT_EQ(layer->contentsScale(), 3);
    }
    layer->setContentsScale(2);
    EXPECT_TRUE(layer->needsDisplay());
}

TEST(CALayer, ContentsAreStretchedUntilDrawnAgain)
{
    const auto layer = makePatchLayer(CGRectMake(0, 0, 2, 1));
    layer->patch = CGRectMake(0, 0, 1, 1);
    EXPECT_COVERAGE(shown(layer, 4, 1), "#...");
    layer->setBounds(CGRectMake(0, 0, 4, 1));
    EXPECT_FALSE(layer->needsDisplay());
    EXPECT_EQ(shown(layer, 4, 1).alpha(0, 0), 255);
    EXPECT_EQ(shown(layer, 4, 1).alpha(3, 0), 0);
    layer->setNeedsDisplay();
    EXPECT_COVERAGE(shown(layer, 4, 1), "#...");
}

TEST(CALayer, RedrawsOnAChangeOfBoundsIfToldTo)
{
    const auto layer = makePatchLayer(CGRectMake(0, 0, 2, 1));
    layer->setNeedsDisplayOnBoundsChange(true);
    layer->displayIfNeeded();
    layer->setBounds(CGRectMake(0, 0, 2, 1));
    layer->setPosition(CGPointMake(70, 80));
    EXPECT_FALSE(layer->needsDisplay());
    layer->setBounds(CGRectMake(0, 0, 3, 1));
    EXPECT_TRUE(layer->needsDisplay());
    layer->displayIfNeeded();
    layer->setBounds(CGRectMake(1, 0, 3, 1));
    EXPECT_TRUE(layer->needsDisplay());
}

TEST(CALayer, WithoutASizeNothingIsDrawn)
{
    const auto layer = makePatchLayer(CGRectMake(0, 0, 2, 1));
    layer->displayIfNeeded();
    EXPECT_NE(layer->contents(), nullptr);
    layer->setBounds(CGRectMake(0, 0, 0, 1));
    layer->display();
    EXPECT_EQ(layer->contents(), nullptr);
    EXPECT_EQ(layer->drawings.size(), 1);
    EXPECT_COVERAGE(shown(layer, 2, 1), "..");
}

TEST(CALayer, ATooLargeBitmapIsLoggedAndNotDrawn)
{
    const auto layer = makePatchLayer(CGRectMake(0, 0, 1e300, 1));
    const NSLogCapture log;
    layer->displayIfNeeded();
    EXPECT_EQ(layer->contents(), nullptr);
    EXPECT_TRUE(layer->drawings.empty());
    EXPECT_EQ(log.messages().size(), 1);
}

TEST(CALayer, ContentsMayBeAnyImage)
{
    Canvas picture(2, 1);
    picture.setPixel(1, 0, rgba(0, 0, 0, 255));
    const auto image = adopt(CGBitmapContextCreateImage(picture.context()));
    const auto layer = makePatchLayer(CGRectMake(0, 0, 2, 1));
    layer->displayIfNeeded();
    layer->setContents(image);
    EXPECT_EQ(layer->contents(), image);
    EXPECT_COVERAGE(shown(layer, 2, 1), ".#");
    layer->setContentsScale(2);
    EXPECT_FALSE(layer->needsDisplay()); // not drawn by the layer
    layer->setContents(nullptr);
    EXPECT_COVERAGE(shown(layer, 2, 1), "..");
    layer->setNeedsDisplay();
    EXPECT_COVERAGE(shown(layer, 2, 1), "##");
}

TEST(CALayer, MayMarkItselfWhileItDraws)
{
    const auto layer = makePatchLayer(CGRectMake(0, 0, 2, 1));
    layer->onDraw = [&] { layer->setNeedsDisplay(); };
    layer->displayIfNeeded();
    EXPECT_TRUE(layer->needsDisplay());
    EXPECT_EQ(layer->drawings.size(), 1);
}

// Place and tree.

TEST(CALayer, FrameAndPositionFollowEachOther)
{
    const auto layer = make<CALayer>();
    layer->setBounds(CGRectMake(3, 4, 10, 20));
    layer->setPosition(CGPointMake(100, 200));
    EXPECT_EQ(describe(layer->frame()), "95 190 10 20");
    layer->setFrame(CGRectMake(1, 2, 30, 40));
    EXPECT_EQ(describe(layer->position()), "16 22");
    EXPECT_EQ(describe(layer->bounds()), "3 4 30 40");
}

TEST(CALayer, NumbersThatAreNoLengthsCountAsZero)
{
    const auto layer = make<CALayer>();
    layer->setBounds(CGRectMake(kNaN, kInfinity, -3, kNaN));
    EXPECT_EQ(describe(layer->bounds()), "0 0 0 0");
    layer->setPosition(CGPointMake(kNaN, -kInfinity));
    EXPECT_EQ(describe(layer->position()), "0 0");
    layer->setFrame(CGRectMake(kNaN, 2, 5, -1));
    EXPECT_EQ(describe(layer->frame()), "0 2 5 0");
}

TEST(CALayer, SublayersAreDrawnAboveInTheBoundsOfTheirSuperlayer)
{
    const auto root = makePatchLayer(CGRectMake(0, 0, 4, 3));
    root->setBounds(CGRectMake(10, 20, 4, 3));
    root->patch = CGRectMake(10, 20, 1, 1);
    const auto child = makePatchLayer(CGRectMake(12, 21, 2, 2));
    child->setBounds(CGRectMake(-7, -8, 2, 2));
    child->patch = CGRectMake(-7, -8, 1, 1);
    const auto leaf = makePatchLayer(CGRectMake(-6, -7, 1, 1));
    child->addSublayer(leaf);
    root->addSublayer(child);

    Canvas canvas(4, 3);
    CGContextTranslateCTM(canvas.context(), -10, -20);
    const CGAffineTransform before = CGContextGetCTM(canvas.context());
    root->renderInContext(canvas.context());
    EXPECT_COVERAGE(canvas,
        "...#"   // leaf
        "..#."   // child
        "#..."); // root
    EXPECT_EQ(describe(CGContextGetCTM(canvas.context())), describe(before));
}

TEST(CALayer, LaterSublayersAreOnTop)
{
    Canvas red(1, 1), green(1, 1);
    red.setPixel(0, 0, rgba(255, 0, 0, 255));
    green.setPixel(0, 0, rgba(0, 255, 0, 255));
    const auto root = make<CALayer>();
    for (const Canvas* picture : {&red, &green}) {
        const auto layer = make<CALayer>();
        layer->setFrame(CGRectMake(0, 0, 1, 1));
        layer->setContents(adopt(CGBitmapContextCreateImage(picture->context())));
        root->addSublayer(layer);
    }
    EXPECT_EQ(shown(root, 1, 1).pixel(0, 0), rgba(0, 255, 0, 255));
    const RetainPtr<CALayer> first = root->sublayers()[0];
    root->addSublayer(first); // moves it to the top
    EXPECT_EQ(root->sublayers().size(), 2);
    EXPECT_EQ(shown(root, 1, 1).pixel(0, 0), rgba(255, 0, 0, 255));
}

TEST(CALayer, HiddenSublayersAreLeftOut)
{
    const auto root = make<CALayer>();
    const auto child = makePatchLayer(CGRectMake(0, 0, 2, 1));
    root->addSublayer(child);
    child->setHidden(true);
    EXPECT_COVERAGE(shown(root, 2, 1), "..");
    EXPECT_COVERAGE(shown(child, 2, 1), "##"); // by itself
    child->setHidden(false);
    EXPECT_COVERAGE(shown(root, 2, 1), "##");
}

TEST(CALayer, TheTreeStaysATree)
{
    const auto root = make<CALayer>();
    const auto child = make<CALayer>();
    const auto other = make<CALayer>();
    root->addSublayer(nullptr);
    root->addSublayer(root);
    root->addSublayer(child);
    child->addSublayer(root);
    EXPECT_EQ(root->sublayers().size(), 1);
    EXPECT_TRUE(child->sublayers().empty());
    EXPECT_EQ(child->superlayer(), root);
    other->addSublayer(child);
    EXPECT_TRUE(root->sublayers().empty());
    EXPECT_EQ(child->superlayer(), other);
    child->removeFromSuperlayer();
    child->removeFromSuperlayer();
    EXPECT_TRUE(other->sublayers().empty());
    EXPECT_EQ(child->superlayer(), nullptr);
}

TEST(CALayer, ASublayerOutlivesItsSuperlayer)
{
    auto root = make<CALayer>();
    const auto child = make<CALayer>();
    root->addSublayer(child);
    root = nullptr;
    EXPECT_EQ(child->superlayer(), nullptr);
}

TEST(CALayer, RendersIntoNoContext)
{
    const auto layer = makePatchLayer(CGRectMake(0, 0, 2, 1));
    layer->renderInContext(nullptr);
    EXPECT_TRUE(layer->needsDisplay());
}
