#include "QtTestSupport.h"
#include "XServer.h"

#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSView.h>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

// What a real X server shows at each scale. Qt reads the factor once, so each needs a process of its own.

namespace {

/// Shapes whose edges fall anywhere within pixels.
class Blob : public NSView {
public:
    using NSView::NSView;
    bool flipped = false;
    bool hasHole = false; ///< which shows what lies below the view
    CGFloat red = 0.5;

    bool isFlipped() const override { return flipped; }
    void drawRect(NSRect) override
    {
        CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
        CGContextSetRGBFillColor(context, red, 0.3, 0.8, 0.7);
        CGContextFillEllipseInRect(context, NSInsetRect(bounds(), -1.3, 2.7));
        CGContextSetRGBStrokeColor(context, 0, 1, red, 0.9);
        CGContextSetLineWidth(context, 1.7);
        CGContextStrokeRect(context, NSInsetRect(bounds(), 0.4, 1.1));
        if (hasHole)
            CGContextClearRect(context, NSInsetRect(bounds(), 6.3, 4.4));
    }
};

QImage grabbed(const NSWindow& window)
{
    QWidget* widget = widgetOf(window);
    return widget->screen()->grabWindow(widget->winId()).toImage().convertToFormat(QImage::Format_RGB32);
}

/// How two pictures differ.
struct Difference {
    int pixels = 0;
    int greatest = 0; ///< of one component, from 0 to 255
};

Difference difference(const QImage& a, const QImage& b)
{
    Difference result;
    EXPECT_EQ(a.size(), b.size());
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            result.pixels += p != q;
            for (int shift = 0; shift < 24; shift += 8) {
                const int difference =
                    static_cast<int>(p >> shift & 0xFF) - static_cast<int>(q >> shift & 0xFF);
                result.greatest = std::max(result.greatest, std::abs(difference));
            }
        }
    }
    return result;
}

class ScaledStage {
public:
    explicit ScaledStage(const char* scale)
        : _scale(scale)
        , window(shownWindow(NSMakeRect(20, 20, 203, 131), root))
    {
        EXPECT_EQ(window->backingScaleFactor(), std::atof(scale));
        _last = grabbed(*window);
    }

    double number(double limit) { return std::uniform_real_distribution<>(0, limit)(_random); }
    Blob& anyBlob() { return *blobs[_random() % blobs.size()]; }
    void add(NSRect frame, NSView* parent)
    {
        blobs.push_back(make<Blob>(frame));
        blobs.back()->flipped = blobs.size() % 3 == 0;
        blobs.back()->hasHole = blobs.size() % 2 == 0;
        if (blobs.size() % 4 == 1)
            blobs.back()->setBoundsSize(NSMakeSize(33, 17));
        parent->addSubview(blobs.back());
    }
    /// Draws what was asked for, then everything.
    Difference partFromWhole()
    {
        QCoreApplication::processEvents();
        const QImage part = grabbed(*window);
        root->setNeedsDisplay(true);
        QCoreApplication::processEvents();
        changes += difference(part, _last).pixels > 0;
        _last = part;
        return difference(part, grabbed(*window));
    }

private:
    /// Sets the factor before Qt reads it.
    struct Scale {
        explicit Scale(const char* factor) { setenv("QT_SCALE_FACTOR", factor, 1); }
    } _scale;
    const XServer _server;
    std::mt19937 _random{7};
    QImage _last;

public:
    int changes = 0; ///< how often the picture became another one: if it never does, nothing is proved
    std::vector<RetainPtr<Blob>> blobs;
    RetainPtr<NSView> root = make<NSView>();
    RetainPtr<NSWindow> window;
};

void redrawWholeViews(const char* scale)
{
    ScaledStage stage(scale);
    for (int i = 0; i < 24; ++i) {
        const int column = i % 4, row = i / 4;
        const double x = 2 + column * 50 + stage.number(3);
        const double y = 2 + row * 21 + stage.number(3);
        stage.add(NSMakeRect(x, y, 38 + stage.number(6), 13 + stage.number(3)), stage.root);
    }
    stage.partFromWhole();
    for (int i = 0; i < 40; ++i) {
        for (int j = 0; j < 3; ++j) {
            Blob& blob = stage.anyBlob();
            blob.red = stage.number(1);
            blob.setNeedsDisplay(true);
        }
        EXPECT_EQ(stage.partFromWhole().pixels, 0) << "step " << i;
    }
    EXPECT_GE(stage.changes, 30);
}

void redrawParts(const char* scale)
{
    // Where the side of a dirty rectangle cuts a slanted edge, cairo splits the edge there, at a multiple of
    // 1/256 of a pixel: one of its 15 sample rows in that pixel may see the edge elsewhere.
    constexpr int splitEdge = 3;
    constexpr int fewPixels = 8;

    ScaledStage stage(scale);
    for (std::size_t i = 0; i < 12; ++i) {
        NSView* parent = i % 5 == 4 ? stage.blobs[i - 2].get() : stage.root.get();
        stage.add(
            NSMakeRect(stage.number(150), stage.number(90), 20 + stage.number(50), 15 + stage.number(40)),
            parent);
    }
    stage.partFromWhole();
    for (int i = 0; i < 40; ++i) {
        if (i % 2) {
            Blob& blob = stage.anyBlob();
            blob.red = stage.number(1);
            blob.setNeedsDisplay(true);
        }
        stage.anyBlob().setNeedsDisplayInRect(
            NSMakeRect(stage.number(20), stage.number(10), stage.number(20), stage.number(20)));
        const Difference difference = stage.partFromWhole();
        EXPECT_LE(difference.greatest, splitEdge) << "step " << i;
        EXPECT_LE(difference.pixels, fewPixels) << "step " << i;
    }
    EXPECT_GE(stage.changes, 15);
}

class WindowScaleDeathTest : public testing::TestWithParam<const char*> { };

TEST_P(WindowScaleDeathTest, AViewIsDrawnAloneExactlyAsInTheWhole)
{
    EXPECT_EXIT((redrawWholeViews(GetParam()), finish()), testing::ExitedWithCode(0), "");
}

TEST_P(WindowScaleDeathTest, APartThatCutsShapesIsDrawnAsInTheWhole)
{
    EXPECT_EXIT((redrawParts(GetParam()), finish()), testing::ExitedWithCode(0), "");
}

INSTANTIATE_TEST_SUITE_P(
    Scales, WindowScaleDeathTest, testing::Values("1", "1.25", "1.5", "1.75", "2"), [](const auto& info) {
        std::string name = info.param;
        std::replace(name.begin(), name.end(), '.', '_');
        return "At" + name;
    });

} // namespace
