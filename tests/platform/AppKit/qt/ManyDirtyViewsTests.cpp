#include "../RecordingView.h"
#include "QtTestSupport.h"

#include <QImage>
#include <QPixmap>
#include <gtest/gtest.h>

#include <random>
#include <utility>
#include <vector>

namespace {

/// A translucent ellipse, and a count of how often any was drawn.
class Spot : public NSView {
public:
    Spot(NSRect frame, int& drawings)
        : NSView(frame)
        , _drawings(drawings)
    {
    }

    double red = 0;

    void drawRect(NSRect) override
    {
        ++_drawings;
        CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
        CGContextSetRGBFillColor(context, red, 0.3, 1 - red, 0.7);
        CGContextFillEllipseInRect(context, bounds());
    }

private:
    int& _drawings;
};

/// A window of 400 x 300 points with 1,000 views, many of which overlap.
class ManyDirtyViews : public testing::Test {
protected:
    int drawings = 0;
    RetainPtr<NSView> root = make<NSView>();
    std::vector<RetainPtr<Spot>> spots;
    RetainPtr<NSWindow> window;

    void SetUp() override
    {
        for (int i = 0; i < 1000; ++i) {
            spots.push_back(
                make<Spot>(NSMakeRect(number(390), number(290), 1 + number(20), 1 + number(10)), drawings));
            root->addSubview(spots.back());
        }
        window = shownWindow(NSMakeRect(50, 50, 400, 300), root);
    }

    /// A multiple of a quarter.
    double number(int limit) { return std::uniform_int_distribution<int>(0, 4 * limit)(_random) / 4.0; }
    Spot& anySpot() { return *spots[std::size_t(number(249) * 4)]; }

    void change()
    {
        Spot& spot = anySpot();
        switch (std::uniform_int_distribution<int>(0, 5)(_random)) {
        case 0:
            return spot.setFrameOrigin(NSMakePoint(number(390), number(290)));
        case 1:
            return spot.setHidden(!spot.isHidden());
        case 2:
            return root->addSubview(&spot);
        case 3:
            return root->addSubview(&spot, NSWindowBelow, &anySpot());
        default:
            spot.red = number(1);
            return spot.setNeedsDisplay(true);
        }
    }

    std::mt19937 _random{11};
};

TEST_F(ManyDirtyViews, TheWindowShowsWhatAFullRedrawWouldShow)
{
    for (const int changes : {1, 3, 10, 30, 100, 400, 2, 60}) {
        SCOPED_TRACE(changes);
        for (int i = 0; i < changes; ++i)
            change();
        QCoreApplication::processEvents();
        const QImage partly = pixelsOf(*window);
        root->setNeedsDisplay(true);
        QCoreApplication::processEvents();
        EXPECT_EQ(partly, pixelsOf(*window));
    }
}

TEST_F(ManyDirtyViews, ViewsApartFromTheDirtyOnesAreNotDrawn)
{
    const auto grid = make<NSView>();
    std::vector<RetainPtr<Spot>> cells;
    for (int row = 0; row < 30; ++row) {
        for (int column = 0; column < 40; ++column) {
            cells.push_back(make<Spot>(NSMakeRect(column * 10, row * 10, 10, 10), drawings));
            grid->addSubview(cells.back());
        }
    }
    window->setContentView(grid);
    QCoreApplication::processEvents();
    drawings = 0;
    for (std::size_t i = 0; i < 1200; i += 23) // 53 cells
        cells[i]->setNeedsDisplay(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(drawings, 53);
    drawings = 0;
    for (const auto& cell : cells)
        cell->setNeedsDisplay(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(drawings, 1200); // all in one piece
}

TEST_F(ManyDirtyViews, WhatAPictureOfTheWindowShowsComesOnTheScreenToo)
{
    const auto spot = make<Spot>(NSMakeRect(300, 200, 20, 20), drawings);
    root->addSubview(spot);
    QCoreApplication::processEvents();
    const QImage before = pixelsOf(*window);
    spot->red = 1;
    spot->setNeedsDisplay(true);
    const QImage picture = widgetOf(*window)->grab().toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_NE(picture, before);
    QCoreApplication::processEvents();
    EXPECT_EQ(pixelsOf(*window), picture);
}

TEST_F(ManyDirtyViews, AViewMayDisplayTheWindowWhileItIsDrawn)
{
    class Impatient : public NSView {
    public:
        using NSView::NSView;
        RetainPtr<NSView> other;
        void drawRect(NSRect) override
        {
            if (const RetainPtr<NSView> view = std::exchange(other, nullptr))
                view->setNeedsDisplay(true);
            displayIfNeeded();
        }
    };
    const auto impatient = make<Impatient>(NSMakeRect(0, 0, 10, 10));
    const auto spot = make<Spot>(NSMakeRect(300, 200, 20, 20), drawings);
    root->addSubview(impatient);
    root->addSubview(spot);
    QCoreApplication::processEvents();
    spot->red = 1;
    impatient->other = spot;
    impatient->setNeedsDisplay(true);
    window->displayIfNeeded();
    QCoreApplication::processEvents();
    EXPECT_FALSE(spot->needsDisplay());
    const QImage partly = pixelsOf(*window);
    root->setNeedsDisplay(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(partly, pixelsOf(*window));
}

} // namespace
