#include "support/Rendering.h"

#include <KorvidAppKit/ZRQRCodeGenerator.h>
#include <KorvidAppKit/ZRQRView.h>

#include <AppKit/NSColor.h>

#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

RetainPtr<ZRQRView> makeView(double width, double height)
{
    return make<ZRQRView>(NSMakeRect(0, 0, width, height));
}

/// A symbol, module by module.
class Modules {
public:
    explicit Modules(const char* text)
        : _bytes(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRBytesFromText(text, &dim, true))
    {
    }
    Modules(const Modules&) = delete;
    Modules& operator=(const Modules&) = delete;
    ~Modules() { std::free(_bytes); }

    bool isDark(NSInteger x, NSInteger y) const { return _bytes[y * dim + x] == 0; }

    NSInteger dim = 0;

private:
    std::uint8_t* _bytes;
};

/// Expects each module's middle in its colour, in a symbol whose top left corner is at (left, top).
void expectSymbol(const Rendering& rendering, const Modules& modules, double left, double top, double module,
    CanvasPixel dark = kBlack, CanvasPixel light = kWhite)
{
    for (NSInteger y = 0; y < modules.dim; ++y) {
        for (NSInteger x = 0; x < modules.dim; ++x) {
            ASSERT_EQ(rendering.at(left + (static_cast<double>(x) + 0.5) * module,
                          top - (static_cast<double>(y) + 0.5) * module),
                modules.isDark(x, y) ? dark : light)
                << "module " << x << ", " << y;
        }
    }
}

/// 25 modules a side.
constexpr char kText[] = "twenty-five modules";

} // namespace

TEST(QRViewDrawing, BandsBesideTheSquareShowThePanelBelow)
{
    class Panel : public NSView {
    public:
        using NSView::NSView;
        void drawRect(NSRect) override
        {
            NSColor::redColor()->setFill();
            CGContextFillRect(NSGraphicsContext::currentContext()->CGContext(), bounds());
        }
    };
    for (const NSInteger scale : {1, 2}) {
        SCOPED_TRACE(scale);
        const auto panel = make<Panel>(NSMakeRect(0, 0, 60, 40));
        const auto view = make<ZRQRView>(NSMakeRect(0, 10, 60, 30));
        view->setString(kText);
        panel->addSubview(view);
        const auto bitmap = NSBitmapImageRep::initWithBitmapDataPlanes(
            nullptr, 60 * scale, 40 * scale, 8, 4, true, false, NSDeviceRGBColorSpace, 0, 0);
        panel->cacheDisplayInRect(panel->bounds(), bitmap);
        const auto isRed = [&](NSInteger x, NSInteger y) {
            return bitmap->colorAtX(x, y)->isEqual(NSColor::colorWithDeviceRed(1, 0, 0, 1).get());
        };
        EXPECT_TRUE(isRed(0, 0));
        EXPECT_TRUE(isRed(15 * scale - 1, 0));
        EXPECT_FALSE(isRed(15 * scale, 0));
        EXPECT_FALSE(isRed(45 * scale - 1, 30 * scale - 1));
        EXPECT_TRUE(isRed(45 * scale, 30 * scale - 1));
        EXPECT_TRUE(isRed(15 * scale, 30 * scale));
    }
}

TEST(QRViewDrawing, TheSquareIsCentredInAWideView)
{
    const auto view = makeView(200, 100);
    view->setInset(10);
    view->setString(kText);
    const Modules modules(kText);
    ASSERT_EQ(modules.dim, 25);
    for (const double scale : {1.0, 2.0}) {
        Rendering rendering(200, 100, scale);
        rendering.draw(view);
        // The square is (50, 0, 100, 100); the view is erased around it.
        for (const double y : {0.25, 50.0, 99.75}) {
            EXPECT_EQ(rendering.at(0.25, y), kTransparent);
            EXPECT_EQ(rendering.at(49.75, y), kTransparent);
            EXPECT_EQ(rendering.at(50.25, y), kWhite);
            EXPECT_EQ(rendering.at(149.75, y), kWhite);
            EXPECT_EQ(rendering.at(150.25, y), kTransparent);
            EXPECT_EQ(rendering.at(199.75, y), kTransparent);
        }
        // The symbol is in (60, 10, 80, 80): the corner finder patterns begin exactly there.
        EXPECT_EQ(rendering.at(59.75, 89.75), kWhite);
        EXPECT_EQ(rendering.at(60.25, 90.25), kWhite);
        EXPECT_EQ(rendering.at(60.25, 89.75), kBlack);
        EXPECT_EQ(rendering.at(139.75, 89.75), kBlack);
        EXPECT_EQ(rendering.at(60.25, 10.25), kBlack);
        EXPECT_EQ(rendering.at(140.25, 89.75), kWhite);
        EXPECT_EQ(rendering.at(60.25, 9.75), kWhite);
        expectSymbol(rendering, modules, 60, 90, 3.2);
    }
}

TEST(QRViewDrawing, TheSquareIsCentredInATallView)
{
    const auto view = makeView(75, 125);
    view->setString(kText);
    const Modules modules(kText);
    Rendering rendering(75, 125);
    rendering.draw(view);
    expectSymbol(rendering, modules, 0, 100, 3);
    EXPECT_EQ(rendering.at(1, 24.5), kTransparent);
    EXPECT_EQ(rendering.at(1, 100.5), kTransparent);
}

TEST(QRViewDrawing, TheOriginOfSquareBoundsIsUsed)
{
    const auto view = makeView(100, 100);
    view->setBounds(NSMakeRect(5, 5, 100, 100));
    view->setString(kText);
    Rendering rendering(120, 120);
    CGContextTranslateCTM(rendering.context(), 0, 10);
    rendering.draw(view);
    // In the flipped coordinates, which start at the height, the square is (5, 5, 100, 100): points from
    // y = -5 to 95 of the view, 10 pixels higher in the bitmap.
    const Modules modules(kText);
    expectSymbol(rendering, modules, 5, 105, 4);
    EXPECT_EQ(rendering.at(4.5, 50), kGreen);
    EXPECT_EQ(rendering.at(105.5, 50), kGreen);
    EXPECT_EQ(rendering.at(50, 4.5), kGreen);
    EXPECT_EQ(rendering.at(50, 105.5), kGreen);
}

TEST(QRViewDrawing, TheOriginOfWideBoundsIsIgnored)
{
    const auto view = makeView(100, 90);
    view->setBounds(NSMakeRect(5, 5, 100, 90));
    Rendering rendering(120, 120);
    CGContextTranslateCTM(rendering.context(), 0, 10);
    rendering.draw(view);
    // The square is (5, 0, 90, 90), from y = 0 to 90 of the view; what is erased is (5, 5, 100, 90), from
    // y = -5 to 85. The bitmap shows both 10 pixels higher.
    EXPECT_EQ(rendering.at(4.5, 50), kGreen);
    EXPECT_EQ(rendering.at(5.5, 10.5), kWhite);
    EXPECT_EQ(rendering.at(5.5, 99.5), kWhite);
    EXPECT_EQ(rendering.at(94.5, 99.5), kWhite);
    EXPECT_EQ(rendering.at(50, 100.5), kGreen);
    EXPECT_EQ(rendering.at(50, 9.5), kTransparent);
    EXPECT_EQ(rendering.at(50, 5.5), kTransparent);
    EXPECT_EQ(rendering.at(50, 4.5), kGreen);
    EXPECT_EQ(rendering.at(95.5, 50), kTransparent);
    EXPECT_EQ(rendering.at(104.5, 94.5), kTransparent);
    EXPECT_EQ(rendering.at(104.5, 95.5), kGreen);
    EXPECT_EQ(rendering.at(105.5, 50), kGreen);
}

TEST(QRViewDrawing, TheOriginOfTallBoundsIsIgnored)
{
    const auto view = makeView(90, 100);
    view->setBounds(NSMakeRect(7, 3, 90, 100));
    view->setString(kText);
    Rendering rendering(120, 120);
    CGContextTranslateCTM(rendering.context(), 0, 10);
    rendering.draw(view.get());
    // In the flipped coordinates, which start at the height, the square is (0, 5, 90, 90), from y = 5 to 95
    // of the view; what is erased is (7, 3, 90, 100), from y = -3 to 97. The bitmap shows both 10 pixels
    // higher.
    expectSymbol(rendering, Modules(kText), 0, 105, 3.6);
    EXPECT_EQ(rendering.at(90.5, 50), kTransparent);
    EXPECT_EQ(rendering.at(96.5, 50), kTransparent);
    EXPECT_EQ(rendering.at(97.5, 50), kGreen);
    EXPECT_EQ(rendering.at(6.5, 14.5), kGreen);
    EXPECT_EQ(rendering.at(7.5, 14.5), kTransparent);
    EXPECT_EQ(rendering.at(6.5, 105.5), kGreen);
    EXPECT_EQ(rendering.at(7.5, 105.5), kTransparent);
    EXPECT_EQ(rendering.at(50, 106.5), kTransparent);
    EXPECT_EQ(rendering.at(50, 107.5), kGreen);
    EXPECT_EQ(rendering.at(50, 7.5), kTransparent);
    EXPECT_EQ(rendering.at(50, 6.5), kGreen);
}

TEST(QRViewDrawing, WithoutAStringTheSquareIsEmpty)
{
    const auto view = makeView(40, 20);
    Rendering rendering(40, 20);
    rendering.draw(view);
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 40; ++x)
            ASSERT_EQ(rendering.at(x, y), x >= 10 && x < 30 ? kWhite : kTransparent) << x << ", " << y;
    }
}

TEST(QRViewDrawing, ATransparentBackgroundLeavesTheViewTransparent)
{
    const auto view = makeView(100, 50);
    view->setBgColor(NSColor::clearColor());
    Rendering empty(100, 50);
    empty.draw(view);
    for (int y = 0; y < 50; ++y) {
        for (int x = 0; x < 100; ++x)
            ASSERT_EQ(empty.at(x, y), kTransparent) << x << ", " << y;
    }

    view->setString(kText);
    Rendering rendering(100, 50, 2);
    rendering.draw(view);
    expectSymbol(rendering, Modules(kText), 25, 50, 2, kBlack, kTransparent);
    EXPECT_EQ(rendering.at(24, 25), kTransparent);
}

TEST(QRViewDrawing, ColoursReplaceThePixelsBelowIncludingAlpha)
{
    const auto view = makeView(100, 100);
    view->setBgColor(NSColor::colorWithSRGBRed(1, 0, 0, 0.4));
    view->setFgColor(NSColor::colorWithSRGBRed(0, 0, 1, 0.2));
    view->setString(kText);
    Rendering rendering(100, 100);
    rendering.draw(view);
    expectSymbol(rendering, Modules(kText), 0, 100, 4, rgba(0, 0, 51, 51), rgba(102, 0, 0, 102));
}

TEST(QRViewDrawing, ATransparentForegroundCutsTheModulesOut)
{
    const auto view = makeView(100, 100);
    view->setBgColor(NSColor::redColor());
    view->setFgColor(NSColor::clearColor());
    view->setString(kText);
    Rendering rendering(100, 100);
    rendering.draw(view);
    expectSymbol(rendering, Modules(kText), 0, 100, 4, kTransparent, rgba(255, 0, 0, 255));
}

TEST(QRViewDrawing, ColoursOfOtherSpacesAreDrawn)
{
    const auto view = makeView(100, 100);
    view->setBgColor(NSColor::colorWithDeviceWhite(0.2, 1));
    view->setFgColor(NSColor::colorWithDeviceRed(0.4, 0.6, 0.8, 1));
    view->setString(kText);
    Rendering rendering(100, 100);
    rendering.draw(view);
    expectSymbol(rendering, Modules(kText), 0, 100, 4, rgba(102, 153, 204, 255), rgba(51, 51, 51, 255));
}

TEST(QRViewDrawing, ModuleEdgesBetweenPixelsAreAntialiased)
{
    const auto view = makeView(40, 40);
    view->setString(kText); // modules of 1.6 points
    Rendering rendering(40, 40);
    rendering.draw(view);
    // The finder pattern's side is 7 modules, 11.2 pixels: the twelfth pixel is covered by a fifth.
    EXPECT_EQ(rendering.at(10.5, 39.5), kBlack);
    EXPECT_EQ(rendering.at(11.5, 39.5), rgba(204, 204, 204, 255));
    EXPECT_EQ(rendering.at(12.5, 39.5), kWhite);
}

TEST(QRViewDrawing, AnInsetOfHalfTheSquareOrMoreHidesTheSymbol)
{
    const auto view = makeView(60, 40);
    view->setString(kText);
    for (const double inset : {20, 21, 1000}) {
        view->setInset(inset);
        Rendering rendering(60, 40);
        rendering.draw(view);
        for (int y = 0; y < 40; ++y) {
            for (int x = 10; x < 50; ++x)
                ASSERT_EQ(rendering.at(x, y), kWhite) << inset << ": " << x << ", " << y;
        }
    }
}

TEST(QRViewDrawing, ANegativeInsetMakesTheSymbolLargerThanTheSquare)
{
    const auto view = makeView(80, 80);
    view->setInset(-10);
    view->setString(kText);
    Rendering rendering(100, 100);
    CGContextTranslateCTM(rendering.context(), 10, 10);
    rendering.draw(view);
    // Outside the square only dark modules are painted.
    const Modules modules(kText);
    ASSERT_TRUE(modules.isDark(0, 0) && modules.isDark(6, 0) && !modules.isDark(7, 0));
    EXPECT_EQ(rendering.at(2, 98), kBlack);
    EXPECT_EQ(rendering.at(26, 98), kBlack);
    EXPECT_EQ(rendering.at(30, 98), kGreen);
    EXPECT_EQ(rendering.at(30, 88), kWhite);
}

TEST(QRViewDrawing, TheDirtyRectangleMakesNoDifference)
{
    const auto view = makeView(50, 50);
    view->setString(kText);
    Rendering rendering(50, 50);
    NSGraphicsContext::setCurrentContext(
        NSGraphicsContext::graphicsContextWithCGContext(rendering.context(), false));
    view->drawRect(NSMakeRect(0, 0, 1, 1));
    NSGraphicsContext::setCurrentContext(nullptr);
    expectSymbol(rendering, Modules(kText), 0, 50, 2);
}

TEST(QRViewDrawing, DrawingNeedsNoCachedSymbol)
{
    /// Caches no symbol.
    class ForgetfulView : public ZRQRView {
    public:
        using ZRQRView::ZRQRView;

    protected:
        void _rebuild() override { }
    };
    const auto view = make<ForgetfulView>(NSMakeRect(0, 0, 50, 50));
    view->setString(kText);
    Rendering rendering(50, 50);
    rendering.draw(view);
    expectSymbol(rendering, Modules(kText), 0, 50, 2);
}

TEST(QRViewDrawing, DrawingRestoresTheStateExceptTheColourSpaces)
{
    const auto view = makeView(50, 50);
    view->setString(kText);
    Rendering rendering(50, 50);
    const CGContextRef context = rendering.context();
    CGContextSetRGBFillColor(context, 1, 0, 0, 1);
    CGContextSetRGBStrokeColor(context, 1, 0, 0, 1);
    rendering.draw(view);
    // The transform and the blend mode are restored. The spaces are set before the state is saved, and
    // setting a space sets its opaque black.
    CGContextFillRect(context, CGRectMake(0, 0, 10, 10));
    EXPECT_EQ(rendering.at(5, 5), kBlack);
    CGContextSetRGBFillColor(context, 0, 0, 1, 0);
    CGContextFillRect(context, CGRectMake(0, 0, 10, 10));
    EXPECT_EQ(rendering.at(5, 5), kBlack);
    CGContextClearRect(context, CGRectMake(0, 0, 10, 10));
    CGContextStrokeRectWithWidth(context, CGRectMake(2, 2, 6, 6), 2);
    EXPECT_EQ(rendering.at(2, 5), kBlack);
    EXPECT_EQ(rendering.at(5, 5), kTransparent);
    // The spaces are RGB, not gray as in a new context: the second component is green.
    const CGFloat green[]{0, 1, 0, 1};
    CGContextSetFillColor(context, green);
    CGContextFillRect(context, CGRectMake(0, 0, 10, 10));
    EXPECT_EQ(rendering.at(5, 5), kGreen);
    CGContextSetRGBFillColor(context, 0, 0, 0, 1);
    CGContextSetStrokeColor(context, green);
    CGContextStrokeRectWithWidth(context, CGRectMake(2, 2, 6, 6), 2);
    EXPECT_EQ(rendering.at(2, 5), kGreen);
}
