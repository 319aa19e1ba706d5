#include "../RecordingView.h"
#include "QtTestSupport.h"

#include "AppKit/testing/EffectiveAppearance.h"
#include "Foundation/testing/NSLogCapture.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <QImage>
#include <QuartzCore/CALayer.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace {

class WindowDrawing : public testing::Test {
protected:
    RetainPtr<RecordingView> makeView(const char* name, NSRect frame, NSColor* color = nullptr)
    {
        auto view = make<RecordingView>(frame, name, log);
        view->color = color;
        return view;
    }
    /// Serves what is due, and answers what was drawn.
    Log drawn()
    {
        log.clear();
        QCoreApplication::processEvents();
        return log;
    }

    Log log;
    RetainPtr<RecordingView> root = makeView("root", NSZeroRect, NSColor::whiteColor());
    RetainPtr<RecordingView> left = makeView("left", NSMakeRect(10, 10, 40, 30), NSColor::redColor());
    RetainPtr<RecordingView> right = makeView("right", NSMakeRect(60, 10, 30, 30), NSColor::blueColor());
    RetainPtr<NSWindow> window;

    void SetUp() override
    {
        root->addSubview(left);
        root->addSubview(right);
        window = shownWindow(NSMakeRect(50, 50, 100, 50), root);
    }
};

TEST_F(WindowDrawing, ShowsTheViewsOnTheBackground)
{
    const QImage image = pixelsOf(*window);
    ASSERT_EQ(image.size(), QSize(100, 50));
    EXPECT_EQ(image.pixel(0, 0), 0xFFFFFFFF);
    // Window coordinates run upward: the views are 10 to 40 above the bottom edge.
    EXPECT_EQ(image.pixel(10, 10), 0xFFFF0000);
    EXPECT_EQ(image.pixel(49, 39), 0xFFFF0000);
    EXPECT_EQ(image.pixel(50, 39), 0xFFFFFFFF);
    EXPECT_EQ(image.pixel(49, 40), 0xFFFFFFFF);
    EXPECT_EQ(image.pixel(89, 10), 0xFF0000FF);
    EXPECT_FALSE(root->needsDisplay());
}

TEST_F(WindowDrawing, OnlyViewsInTheDirtyRectangleAreDrawn)
{
    left->setNeedsDisplay(true);
    EXPECT_EQ(drawn(), (Log{"root draws 10 10 40 30", "left draws 0 0 40 30"}));
    left->setNeedsDisplayInRect(NSMakeRect(5, 5, 10, 10));
    EXPECT_EQ(drawn(), (Log{"root draws 15 15 10 10", "left draws 5 5 10 10"}));
    root->setNeedsDisplayInRect(NSMakeRect(0, 0, 5, 5));
    EXPECT_EQ(drawn(), Log{"root draws 0 0 5 5"});
    EXPECT_EQ(drawn(), Log{});
}

TEST_F(WindowDrawing, DirtyRectanglesGrowToWholePixels)
{
    left->setNeedsDisplayInRect(NSMakeRect(5.5, 5.25, 1, 1));
    EXPECT_EQ(drawn(), (Log{"root draws 15 15 2 2", "left draws 5 5 2 2"}));
}

TEST_F(WindowDrawing, RequestsBetweenTwoPaintsAreDrawnTogether)
{
    left->setNeedsDisplay(true);
    left->setNeedsDisplayInRect(NSMakeRect(0, 0, 5, 5));
    left->setNeedsDisplay(true);
    EXPECT_EQ(drawn(), (Log{"root draws 10 10 40 30", "left draws 0 0 40 30"}));
    // Rectangles apart stay apart.
    left->setNeedsDisplayInRect(NSMakeRect(0, 0, 5, 5));
    right->setNeedsDisplayInRect(NSMakeRect(0, 20, 5, 5));
    EXPECT_EQ(drawn(),
        (Log{"root draws 60 30 5 5", "right draws 0 20 5 5", "root draws 10 10 5 5", "left draws 0 0 5 5"}));
}

TEST_F(WindowDrawing, ManySmallRectanglesBecomeOne)
{
    for (int i = 0; i < 20; ++i)
        root->setNeedsDisplayInRect(NSMakeRect(4 * i, 2 * i, 1, 1));
    const Log all = drawn();
    EXPECT_LE(std::count_if(
                  all.begin(), all.end(), [](const std::string& line) { return line.starts_with("root"); }),
        16);
}

TEST_F(WindowDrawing, HiddenViewsAskForNothing)
{
    left->setHidden(true);
    EXPECT_EQ(drawn(), Log{"root draws 10 10 40 30"});
    left->setNeedsDisplay(true);
    EXPECT_EQ(drawn(), Log{});
    EXPECT_TRUE(left->needsDisplay());
    left->setHidden(true);
    left->setHidden(false);
    EXPECT_EQ(drawn(), (Log{"root draws 10 10 40 30", "left draws 0 0 40 30"}));
    left->setHidden(false);
    EXPECT_EQ(drawn(), Log{});
}

TEST_F(WindowDrawing, MovingRedrawsTheOldAndTheNewPlace)
{
    left->setFrameOrigin(NSMakePoint(10, 15));
    EXPECT_EQ(drawn(), (Log{"root draws 10 10 40 35", "left draws 0 0 40 30"}));
    left->removeFromSuperview();
    EXPECT_EQ(drawn(), Log{"root draws 10 15 40 30"});
    root->addSubview(left);
    EXPECT_EQ(drawn(), (Log{"root draws 10 15 40 30", "left draws 0 0 40 30"}));
    left->setFrameSize(NSMakeSize(10, 10));
    EXPECT_EQ(drawn(), (Log{"root draws 10 15 40 30", "left draws 0 0 10 10"}));
    left->setFrameSize(NSMakeSize(10, 10));
    EXPECT_EQ(drawn(), Log{});
}

TEST_F(WindowDrawing, APartOutsideTheSuperviewIsNotRedrawn)
{
    left->setFrameOrigin(NSMakePoint(-20, 10));
    drawn();
    left->setNeedsDisplayInRect(NSMakeRect(0, 0, 20, 30));
    EXPECT_EQ(drawn(), Log{});
    left->setNeedsDisplay(true);
    EXPECT_EQ(drawn(), (Log{"root draws 0 10 20 30", "left draws 20 0 20 30"}));
}

TEST_F(WindowDrawing, WhatIsUncoveredIsNotDrawnAgain)
{
    const QImage before = pixelsOf(*window);
    log.clear();
    widgetOf(*window)->repaint();
    EXPECT_EQ(log, Log{});
    window->orderOut();
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(widgetOf(*window)));
    EXPECT_EQ(drawn(), Log{});
    EXPECT_EQ(pixelsOf(*window), before);
}

TEST_F(WindowDrawing, WhatChangesOffScreenIsDrawnWhenTheWindowComesBack)
{
    window->orderOut();
    left->color = NSColor::greenColor();
    left->setNeedsDisplay(true);
    EXPECT_EQ(drawn(), Log{});
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(widgetOf(*window)));
    QCoreApplication::processEvents();
    EXPECT_EQ(log, (Log{"root draws 10 10 40 30", "left draws 0 0 40 30"}));
    EXPECT_EQ(pixelsOf(*window).pixel(20, 20), 0xFF00FF00);
}

TEST_F(WindowDrawing, DisplayIfNeededDrawsAtOnce)
{
    log.clear();
    left->setNeedsDisplay(true);
    EXPECT_EQ(log, Log{});
    left->displayIfNeeded();
    EXPECT_EQ(log, (Log{"root draws 10 10 40 30", "left draws 0 0 40 30"}));
    left->displayIfNeeded();
    EXPECT_EQ(drawn(), Log{});
}

TEST_F(WindowDrawing, OnlyTheChangedPartOfALayerIsRepainted)
{
    const auto layer = make<CALayer>();
    const auto sublayer = make<CALayer>();
    sublayer->setFrame(CGRectMake(5, 6, 7, 8));
    layer->addSublayer(sublayer);
    left->flipped = true;
    left->setLayer(layer);
    left->setWantsLayer(true);
    drawn();
    sublayer->setNeedsDisplay();
    EXPECT_EQ(drawn(), Log{"root draws 15 16 7 8"});
}

TEST_F(WindowDrawing, AViewMarkedDirtyWhileItDrawsIsDrawnAgainLater)
{
    int requests = 2;
    left->onDraw = [&](NSRect) {
        if (requests-- > 0)
            left->setNeedsDisplayInRect(NSMakeRect(0, 0, 1, 1));
    };
    log.clear();
    left->setNeedsDisplay(true);
    EXPECT_TRUE(serveUntil([&] { return requests < 0; }));
    EXPECT_EQ(log,
        (Log{"root draws 10 10 40 30", "left draws 0 0 40 30", "root draws 10 10 1 1", "left draws 0 0 1 1",
            "root draws 10 10 1 1", "left draws 0 0 1 1"}));
}

TEST_F(WindowDrawing, ResizingDrawsEverything)
{
    root->color = NSColor::greenColor();
    window->setContentSize(NSMakeSize(120, 60));
    EXPECT_TRUE(serveUntil([&] { return pixelsOf(*window).size() == QSize(120, 60); }));
    QCoreApplication::processEvents();
    EXPECT_EQ(pixelsOf(*window).pixel(119, 0), 0xFF00FF00);
    // Views keep their distance from the bottom left corner.
    EXPECT_EQ(pixelsOf(*window).pixel(10, 49), 0xFFFF0000);
    EXPECT_EQ(pixelsOf(*window).pixel(10, 19), 0xFF00FF00);
}

TEST_F(WindowDrawing, AViewThatFailsHarmsNoOther)
{
    left->onDraw = [](NSRect) { throw std::runtime_error("out of paint"); };
    right->color = NSColor::greenColor();
    const NSLogCapture capture;
    left->setNeedsDisplay(true);
    right->setNeedsDisplay(true);
    drawn();
    EXPECT_EQ(pixelsOf(*window).pixel(70, 20), 0xFF00FF00);
    ASSERT_FALSE(capture.messages().empty());
    EXPECT_EQ(capture.messages()[0], "A view failed to draw: out of paint");
}

TEST_F(WindowDrawing, TheBackgroundShowsWhereNoViewDraws)
{
    root->color = nullptr;
    const EffectiveAppearance appearance(NSAppearanceNameAqua);
    drawn();
    root->setNeedsDisplay(true);
    drawn();
    EXPECT_EQ(pixelsOf(*window).pixel(0, 0), 0xFFECECEC);
    window->setBackgroundColor(NSColor::colorWithSRGBRed(1, 1, 0, 1));
    EXPECT_EQ(drawn(), (Log{"root draws 0 0 100 50", "left draws 0 0 40 30", "right draws 0 0 30 30"}));
    EXPECT_EQ(pixelsOf(*window).pixel(0, 0), 0xFFFFFF00);
    // What shines through is black.
    window->setBackgroundColor(NSColor::colorWithSRGBRed(1, 1, 1, 0));
    drawn();
    EXPECT_EQ(pixelsOf(*window).pixel(0, 0), 0xFF000000);
    window->setContentView(nullptr);
    window->setBackgroundColor(NSColor::redColor());
    drawn();
    EXPECT_EQ(pixelsOf(*window).pixel(20, 20), 0xFFFF0000);
}

TEST_F(WindowDrawing, AnotherAppearanceRedrawsEveryWindow)
{
    root->color = nullptr;
    EffectiveAppearance appearance(NSAppearanceNameAqua);
    drawn();
    appearance.set(NSAppearanceNameDarkAqua);
    EXPECT_EQ(drawn(), (Log{"root draws 0 0 100 50", "left draws 0 0 40 30", "right draws 0 0 30 30"}));
    EXPECT_EQ(pixelsOf(*window).pixel(0, 0), 0xFF1E1E1E);
    appearance.set(NSAppearanceNameDarkAqua);
    EXPECT_EQ(drawn(), Log{});
}

TEST_F(WindowDrawing, AHoleInAViewShowsTheViewsBelow)
{
    const auto view = makeView("view", NSMakeRect(30, 10, 40, 30));
    view->onDraw = [](NSRect) {
        CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
        CGContextClearRect(context, CGRectMake(0, 0, 40, 30));
        CGContextSetRGBFillColor(context, 0, 1, 0, 1);
        CGContextFillRect(context, CGRectMake(15, 0, 10, 30));
    };
    root->addSubview(view);
    const auto expectPixels = [&] {
        const QImage image = pixelsOf(*window);
        EXPECT_EQ(image.pixel(30, 20), 0xFFFF0000) << "the sibling on the left";
        EXPECT_EQ(image.pixel(50, 45), 0xFFFFFFFF) << "below the view";
        EXPECT_EQ(image.pixel(52, 20), 0xFF00FF00) << "what it draws";
        EXPECT_EQ(image.pixel(57, 20), 0xFFFFFFFF) << "the superview";
        EXPECT_EQ(image.pixel(69, 20), 0xFF0000FF) << "the sibling on the right";
    };
    EXPECT_EQ(drawn().size(), 8U) << "all four views twice: from now on the view has a layer";
    expectPixels();
    view->setNeedsDisplay(true);
    EXPECT_EQ(drawn().size(), 4U);
    expectPixels();
}

TEST_F(WindowDrawing, AHoleThroughAllViewsShowsTheBackground)
{
    root->onDraw = [](NSRect) {
        CGContextClearRect(NSGraphicsContext::currentContext()->CGContext(), CGRectMake(0, 0, 5, 5));
    };
    window->setBackgroundColor(NSColor::magentaColor());
    drawn();
    EXPECT_EQ(pixelsOf(*window).pixel(0, 49), 0xFFFF00FF);
    EXPECT_EQ(pixelsOf(*window).pixel(5, 49), 0xFFFFFFFF);
}

TEST_F(WindowDrawing, FractionalColoursArriveUnchanged)
{
    root->color = NSColor::colorWithSRGBRed(2 / 255.0, 130 / 255.0, 29 / 255.0, 1);
    root->setNeedsDisplay(true);
    drawn();
    EXPECT_EQ(pixelsOf(*window).pixel(0, 0), 0xFF02821D);
}

// Qt reads the factor once, so each scale needs a process of its own.

TEST(WindowDrawingDeathTest, AtScaleTwoEverythingHasTwiceThePixels)
{
    EXPECT_EXIT(
        {
            setenv("QT_SCALE_FACTOR", "2", 1);
            Log log;
            const auto root = make<RecordingView>(NSZeroRect, "root", log);
            const auto child = make<RecordingView>(NSMakeRect(10, 10, 10.5, 10), "child", log);
            root->color = NSColor::whiteColor();
            child->color = NSColor::redColor();
            root->addSubview(child);
            const auto window = shownWindow(NSMakeRect(20, 20, 100, 50), root);
            const QImage image = pixelsOf(*window);
            const bool isRight = image.size() == QSize(200, 100) && image.pixel(20, 60) == 0xFFFF0000
                && image.pixel(40, 79) == 0xFFFF0000 && image.pixel(41, 79) == 0xFFFFFFFF
                && image.pixel(20, 80) == 0xFFFFFFFF && image.pixel(19, 60) == 0xFFFFFFFF;
            log.clear();
            child->setNeedsDisplayInRect(NSMakeRect(2.5, 2.5, 0.5, 0.5));
            QCoreApplication::processEvents();
            std::fprintf(stderr, "%s|%s|%s|\n", log.size() == 2 ? log[0].c_str() : "?",
                log.size() == 2 ? log[1].c_str() : "?",
                describe(child->convertRectToBacking(child->bounds())).c_str());
            std::_Exit(isRight ? 0 : 1);
        },
        testing::ExitedWithCode(0), "root draws 12 12 1 1.child draws 2 2 1 1.20 20 21 20.");
}

TEST(WindowDrawingDeathTest, AutoresizingFloorsToTheDevicesPixels)
{
    EXPECT_EXIT(
        {
            setenv("QT_SCALE_FACTOR", "2", 1);
            Log log;
            const auto root = make<RecordingView>(NSZeroRect, "root", log);
            root->flipped = true;
            const auto window = make<NSWindow>(
                NSMakeRect(20, 20, 100, 50), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
            window->setContentView(root);
            const auto child = make<NSView>(NSMakeRect(10, 10, 30, 10));
            child->setAutoresizingMask(
                NSViewMinXMargin | NSViewMaxXMargin | NSViewMinYMargin | NSViewHeightSizable);
            root->addSubview(child);
            // Margins of 10 and 60 share 6 points: 0.86 goes down to a half. Downward, margin and height of
            // 10 share 3 points: 1.5 each.
            window->setContentSize(NSMakeSize(106, 53));
            std::fprintf(stderr, "%s|", describe(child->frame()).c_str());
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "10.5 11.5 30 11.5");
}

} // namespace
