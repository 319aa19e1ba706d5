#include "support/Describe.h"
#include "support/Numbers.h"
#include "support/Rendering.h"

#include <KorvidAppKit/ZRQRCodeGenerator.h>
#include <KorvidAppKit/ZRQRView.h>

#include <AppKit/NSColor.h>
#include <Foundation/NSData.h>
#include <Foundation/NSError.h>
#include <Foundation/NSKeyedArchiver.h>

#include <atomic>
#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace {

/// Counts how often the symbol is built, and exposes the cached symbol.
class WatchedView : public ZRQRView {
public:
    using ZRQRView::ZRQRView;

    int rebuilds() const { return _rebuilds; }
    CGPathRef path() const { return _path.get(); }
    NSInteger dim() const { return _dim; }

protected:
    void _rebuild() override
    {
        ++_rebuilds;
        ZRQRView::_rebuild();
    }

private:
    int _rebuilds = 0;
};

RetainPtr<WatchedView> makeWatchedView(double width, double height)
{
    auto view = make<WatchedView>(NSMakeRect(0, 0, width, height));
    view->setNeedsDisplay(false);
    return view;
}

/// 25 modules a side.
constexpr char kMessage[] = "twenty-five modules";

} // namespace

TEST(QRView, StartsEmptyWithoutMarginAndColours)
{
    const auto view = makeWatchedView(100, 100);
    EXPECT_TRUE(view->string().isNull());
    EXPECT_EQ(view->inset(), 0);
    EXPECT_FALSE(view->bgColor());
    EXPECT_FALSE(view->fgColor());
    EXPECT_EQ(view->path(), nullptr);
    EXPECT_EQ(view->dim(), 0);
    EXPECT_FALSE(view->isFlipped());
}

TEST(QRView, ANewStringIsStoredBuiltAndDrawn)
{
    const auto view = makeWatchedView(100, 100);
    view->setString(kMessage);
    EXPECT_EQ(view->string(), kMessage);
    EXPECT_EQ(view->rebuilds(), 1);
    EXPECT_EQ(view->dim(), 25);
    NSInteger dim = 0;
    const auto expected =
        adopt(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRPathFromText(kMessage, &dim));
    EXPECT_TRUE(CGPathEqualToPath(view->path(), expected));
    EXPECT_TRUE(takeDisplayMark(view));

    view->setString("short");
    EXPECT_EQ(view->rebuilds(), 2);
    EXPECT_EQ(view->dim(), 21);
    EXPECT_TRUE(takeDisplayMark(view));
}

TEST(QRView, AnEqualStringNeitherBuildsNorRedraws)
{
    const auto view = makeWatchedView(100, 100);
    view->setString("the same text, too long to be kept inside");
    takeDisplayMark(view);
    view->setString(NSString(std::string("the same text, ") + "too long to be kept inside"));
    EXPECT_EQ(view->rebuilds(), 1);
    EXPECT_FALSE(takeDisplayMark(view));
}

TEST(QRView, NullRemovesTheSymbolAndDiffersFromTheEmptyString)
{
    const auto view = makeWatchedView(100, 100);
    view->setString(nullptr);
    EXPECT_EQ(view->rebuilds(), 0);
    EXPECT_FALSE(takeDisplayMark(view));

    view->setString("");
    EXPECT_EQ(view->dim(), 21);
    EXPECT_NE(view->path(), nullptr);
    EXPECT_TRUE(takeDisplayMark(view));

    view->setString(nullptr);
    EXPECT_EQ(view->rebuilds(), 2);
    EXPECT_EQ(view->dim(), 0);
    EXPECT_EQ(view->path(), nullptr);
    EXPECT_TRUE(takeDisplayMark(view));
}

TEST(QRView, SettingColoursDoesNotRedraw)
{
    const auto view = makeWatchedView(100, 100);
    view->setBgColor(NSColor::redColor());
    EXPECT_FALSE(takeDisplayMark(view));
    view->setFgColor(NSColor::blueColor());
    EXPECT_FALSE(takeDisplayMark(view));
    EXPECT_EQ(view->rebuilds(), 0);
    EXPECT_TRUE(view->bgColor()->isEqual(NSColor::redColor()));
    EXPECT_TRUE(view->fgColor()->isEqual(NSColor::blueColor()));
    view->setBgColor(nullptr);
    view->setFgColor(nullptr);
    EXPECT_FALSE(view->bgColor());
    EXPECT_FALSE(view->fgColor());
    EXPECT_FALSE(takeDisplayMark(view));
}

TEST(QRView, InsetIsTruncatedToWholePoints)
{
    const auto view = makeWatchedView(100, 100);
    view->setInset(2.7);
    EXPECT_EQ(view->inset(), 2);
    view->setInset(-2.7);
    EXPECT_EQ(view->inset(), -2);
    view->setInset(0.9);
    EXPECT_EQ(view->inset(), 0);
    view->setInset(12);
    EXPECT_EQ(view->inset(), 12);
    EXPECT_EQ(view->rebuilds(), 0);
}

TEST(QRView, InsetRedrawsWheneverTheNewValueDiffersFromTheWholePoints)
{
    const auto view = makeWatchedView(100, 100);
    view->setInset(0);
    EXPECT_FALSE(takeDisplayMark(view));
    view->setInset(2.7);
    EXPECT_TRUE(takeDisplayMark(view));
    view->setInset(2.7);
    EXPECT_TRUE(takeDisplayMark(view));
    view->setInset(2);
    EXPECT_FALSE(takeDisplayMark(view));
    view->setInset(3);
    EXPECT_TRUE(takeDisplayMark(view));
}

TEST(QRView, InsetAcceptsAnyNumber)
{
    const auto view = makeWatchedView(100, 100);
    view->setString(kMessage);
    view->setInset(5);
    takeDisplayMark(view);
    view->setInset(std::nan(""));
    EXPECT_EQ(view->inset(), 0);
    EXPECT_TRUE(takeDisplayMark(view));

    for (const double huge : {kInfinity, 1e300, 0x1p63}) {
        view->setInset(huge);
        EXPECT_EQ(view->inset(), 0x1p63);
        Rendering rendering(100, 100);
        rendering.draw(view);
        EXPECT_EQ(rendering.at(50.5, 50.5), kWhite);
    }
    for (const double huge : {-kInfinity, -1e300, -0x1p63}) {
        view->setInset(huge);
        EXPECT_EQ(view->inset(), -0x1p63);
        Rendering rendering(100, 100);
        rendering.draw(view); // comes back
    }
}

TEST(QRView, DrawingOutsideOfADrawingPassDoesNothing)
{
    const auto view = makeWatchedView(50, 50);
    view->setString(kMessage);
    ASSERT_EQ(NSGraphicsContext::currentContext(), nullptr);
    view->drawRect(view->bounds());
}

TEST(QRView, ColoursMayBeSetOnAnotherThread)
{
    const auto view = makeWatchedView(50, 50);
    view->setString(kMessage);
    std::atomic<bool> isDone = false;
    std::thread other([&] {
        for (int i = 0; i < 200; ++i) {
            view->setBgColor(NSColor::colorWithSRGBRed(1, 0, 0, 1));
            view->setFgColor(i % 2 ? NSColor::blueColor() : nullptr);
        }
        isDone = true;
    });
    do {
        Rendering rendering(50, 50);
        rendering.draw(view);
        const CanvasPixel dark = rendering.at(1, 49);
        EXPECT_TRUE(dark == kBlack || dark == rgba(0, 0, 255, 255));
    } while (!isDone);
    other.join();
    EXPECT_EQ(view->bgColor()->redComponent(), 1);
}

TEST(QRViewDeathTest, AStringBeyondCapacityStopsTheProcess)
{
    EXPECT_EXIT(makeWatchedView(50, 50)->setString(NSString(std::string(2332, 'x'))),
        ::testing::KilledBySignal(SIGABRT), "qrcodegen_getSize: Assertion .* failed");
}

TEST(QRView, IsUnarchivedWithItsFrameAndDefaults)
{
    const auto view = make<ZRQRView>(NSMakeRect(1, 2, 30, 40));
    view->setString("text");
    const auto data = NSKeyedArchiver::archivedDataWithRootObject(view, true);
    ASSERT_TRUE(data);
    const auto back = NSKeyedUnarchiver::unarchivedObjectOfClass<ZRQRView>(data);
    ASSERT_TRUE(back);
    EXPECT_EQ(describe(back->frame()), "1 2 30 40");
    EXPECT_TRUE(back->string().isNull());
}
