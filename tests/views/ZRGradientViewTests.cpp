#include "GradientViews.h"
#include "support/Describe.h"

#include <Foundation/NSData.h>
#include <Foundation/NSError.h>
#include <Foundation/NSKeyedArchiver.h>
#include <Foundation/WeakPtr.h>

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

TEST(GradientView, StartsWithEverythingAtZero)
{
    const auto view = makeGradientView(100, 50);
    EXPECT_EQ(view->color(), nullptr);
    EXPECT_EQ(view->gradient(), nullptr);
    EXPECT_EQ(view->roundedCorners(), 0);
    EXPECT_EQ(view->cornerRadius(), 0);
    EXPECT_EQ(view->stroke(), 0);
    EXPECT_EQ(view->strokeColor(), nullptr);
    EXPECT_EQ(view->type(), kZRGradientTypeLinear);
    EXPECT_EQ(view->type(), 0);
    EXPECT_EQ(view->noise(), 0);
    EXPECT_FALSE(view->bezel());
    for (const NSPoint point :
        {view->startPoint(), view->endPoint(), view->startCenter(), view->endCenter()}) {
        EXPECT_EQ(point.x, 0);
        EXPECT_EQ(point.y, 0);
    }
    EXPECT_EQ(view->startRadius(), 0);
    EXPECT_EQ(view->endRadius(), 0);
    EXPECT_FALSE(view->isFlipped());
    EXPECT_FALSE(make<ZRGradientView>()->needsDisplay());
}

TEST(GradientView, SndRedraws)
{
    const auto view = makeGradientView(100, 50);
    view->snd();
    EXPECT_TRUE(takeDisplayMark(view));
}

TEST(GradientView, ANewColourRedrawsAndAnEqualOneDoesNothing)
{
    const auto view = makeGradientView(100, 50);
    view->setColor(nullptr);
    EXPECT_FALSE(takeDisplayMark(view));
    const auto first = NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 1);
    view->setColor(first);
    EXPECT_EQ(view->color(), first);
    EXPECT_TRUE(takeDisplayMark(view));

    view->setColor(NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 1));
    EXPECT_EQ(view->color(), first); // the equal one is not stored
    EXPECT_FALSE(takeDisplayMark(view));

    view->setColor(NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.9));
    EXPECT_NE(view->color(), first);
    EXPECT_TRUE(takeDisplayMark(view));
    view->setColor(nullptr);
    EXPECT_EQ(view->color(), nullptr);
    EXPECT_TRUE(takeDisplayMark(view));
}

TEST(GradientView, AGradientRedrawsEvenIfItIsTheCurrentOne)
{
    const auto view = makeGradientView(100, 50);
    const auto gradient = redToBlue();
    view->setGradient(gradient);
    EXPECT_EQ(view->gradient(), gradient);
    EXPECT_TRUE(takeDisplayMark(view));
    view->setGradient(gradient);
    EXPECT_TRUE(takeDisplayMark(view));
    view->setGradient(nullptr);
    EXPECT_EQ(view->gradient(), nullptr);
    EXPECT_TRUE(takeDisplayMark(view));
    view->setGradient(nullptr);
    EXPECT_TRUE(takeDisplayMark(view));
}

TEST(GradientView, OwnsItsGradientAndItsColours)
{
    const auto view = makeGradientView(4, 1);
    view->setGradient(redToBlue());
    view->setGradient(view->gradient()); // which has no other owner
    view->setColor(NSColor::colorWithSRGBRed(0, 0, 0, 1));
    view->setStrokeColor(NSColor::colorWithSRGBRed(0, 0, 0.5, 1));
    Rendering rendering(4, 1);
    rendering.draw(view);
    EXPECT_EQ(rendering.at(0.5, 0.5), rgba(0, 0, 255, 255));
    EXPECT_EQ(view->color()->blueComponent(), 0);
    EXPECT_EQ(view->strokeColor()->blueComponent(), 0.5);
}

TEST(GradientView, ReleasesItsColours)
{
    WeakPtr<NSColor> color, strokeColor;
    {
        const auto view = makeGradientView(4, 1);
        const auto own = NSColor::colorWithSRGBRed(0.5, 0, 0, 1);
        const auto ownStroke = NSColor::colorWithSRGBRed(0, 0.5, 0, 1);
        view->setColor(own);
        view->setStrokeColor(ownStroke);
        color = own.get();
        strokeColor = ownStroke.get();
    }
    EXPECT_EQ(color.lock(), nullptr);
    EXPECT_EQ(strokeColor.lock(), nullptr);
}

TEST(GradientView, AllOtherSettersOnlyStore)
{
    const auto view = makeGradientView(100, 50);
    view->setRoundedCorners(5);
    view->setCornerRadius(7.5);
    view->setStroke(1.5);
    view->setStrokeColor(NSColor::redColor());
    view->setType(1);
    view->setNoise(0.25);
    view->setBezel(true);
    view->setStartPoint({1, 2});
    view->setEndPoint({3, 4});
    view->setStartCenter({5, 6});
    view->setEndCenter({7, 8});
    view->setStartRadius(0.125);
    view->setEndRadius(0.75);
    EXPECT_FALSE(view->needsDisplay());

    EXPECT_EQ(view->roundedCorners(), 5);
    EXPECT_EQ(view->cornerRadius(), 7.5);
    EXPECT_EQ(view->stroke(), 1.5);
    EXPECT_EQ(view->strokeColor(), NSColor::redColor());
    EXPECT_EQ(view->type(), kZRGradientTypeRadial);
    EXPECT_EQ(view->noise(), 0.25);
    EXPECT_TRUE(view->bezel());
    EXPECT_TRUE(CGPointEqualToPoint(view->startPoint(), {1, 2}));
    EXPECT_TRUE(CGPointEqualToPoint(view->endPoint(), {3, 4}));
    EXPECT_TRUE(CGPointEqualToPoint(view->startCenter(), {5, 6}));
    EXPECT_TRUE(CGPointEqualToPoint(view->endCenter(), {7, 8}));
    EXPECT_EQ(view->startRadius(), 0.125);
    EXPECT_EQ(view->endRadius(), 0.75);
}

TEST(GradientView, DrawsNothingWithoutAContext)
{
    const auto view = makeGradientView(50, 50);
    view->setGradient(redToBlue());
    ASSERT_EQ(NSGraphicsContext::currentContext(), nullptr);
    view->drawRect(view->bounds());
}

// Both coordinates of a point change together, also while the view draws. The thread sanitizer checks the
// rest.
TEST(GradientView, AllowsSettingPointsAndStrokeColourOnAnotherThread)
{
    const auto view = makeGradientView(20, 10);
    view->setGradient(redToBlue());
    view->setStroke(1);
    std::atomic<bool> isDone = false;
    std::thread other([&] {
        for (int i = 0; i < 500; ++i) {
            const double value = i % 7;
            view->setStartPoint({value, value});
            view->setEndPoint({value, value});
            view->setStartCenter({value, value});
            view->setEndCenter({value, value});
            view->setStrokeColor(i % 2 ? NSColor::colorWithSRGBRed(0, 0, 0, 1).get() : nullptr);
        }
        isDone = true;
    });
    do {
        for (const NSPoint point :
            {view->startPoint(), view->endPoint(), view->startCenter(), view->endCenter()})
            EXPECT_EQ(point.x, point.y);
        Rendering rendering(20, 10);
        view->setType(view->type() == kZRGradientTypeLinear ? kZRGradientTypeRadial : kZRGradientTypeLinear);
        rendering.draw(view);
    } while (!isDone);
    other.join();
    EXPECT_EQ(view->startPoint().x, 499 % 7);
    EXPECT_EQ(view->strokeColor()->redComponent(), 0);
}

TEST(GradientView, IsUnarchivedWithItsFrameAndTheDefaults)
{
    const auto view = make<ZRGradientView>(NSMakeRect(1, 2, 30, 40));
    view->setCornerRadius(5);
    const auto data = NSKeyedArchiver::archivedDataWithRootObject(view, true);
    ASSERT_TRUE(data);
    const auto back = NSKeyedUnarchiver::unarchivedObjectOfClass<ZRGradientView>(data);
    ASSERT_TRUE(back);
    EXPECT_EQ(describe(back->frame()), "1 2 30 40");
    EXPECT_EQ(back->cornerRadius(), 0);
}
