#include "BitmapPixels.h"

#include <AppKit/AppKit.h>
#include <KorvidAppKit/KorvidAppKit.h>
#include <gtest/gtest.h>

#include <fstream>
#include <limits>
#include <stdexcept>
#include <string>

// In this program nothing makes an application object.

namespace {

/// Fills its bounds with a colour, red first.
class Plate : public NSView {
public:
    using NSView::NSView;

    RetainPtr<NSColor> color = NSColor::redColor();
    std::function<void()> onDraw;

    void drawRect(NSRect) override
    {
        CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
        CGContextSetFillColorWithColor(context, color->CGColor());
        CGContextFillRect(context, bounds());
        if (onDraw)
            onDraw();
    }
};

RetainPtr<Plate> plate(NSRect frame, const RetainPtr<NSColor>& color = nullptr)
{
    auto made = make<Plate>(frame);
    if (color)
        made->color = color;
    return made;
}

/// Pixels as letters, rows from the top, separated by "/": "." transparent, "r" "g" "b" an opaque colour, a
/// digit from 1 to 9 for tenths of red, "?" anything else.
std::string letters(CGImageRef image)
{
    std::string text;
    const Bytes bytes = pixels(image);
    for (std::size_t i = 0; i < bytes.size(); i += 4) {
        if (i > 0 && i / 4 % CGImageGetWidth(image) == 0)
            text += '/';
        const Bytes pixel(&bytes[i], &bytes[i] + 4);
        if (pixel == Bytes{0, 0, 0, 0})
            text += '.';
        else if (pixel[3] == 255)
            text += pixel[0] == 255 ? 'r' : pixel[1] == 255 ? 'g' : pixel[2] == 255 ? 'b' : '?';
        else
            text += pixel[0] == pixel[3] ? char('0' + (pixel[0] + 12) * 10 / 255) : '?';
    }
    return text;
}

std::string pictureOf(const RetainPtr<NSView>& view, double scale, NSAppearance* appearance = nullptr)
{
    const auto image = adopt(ZRCreateViewImage(view, scale, appearance));
    return image ? letters(image.get()) : "none";
}

/// Whether a library with that in its name is loaded.
bool isLoaded(const std::string& name)
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find(name) != std::string::npos)
            return true;
    }
    return false;
}

} // namespace

TEST(ZRCreateViewImage, DrawsAViewAndItsSubviews)
{
    const auto view = plate(NSMakeRect(70, 80, 4, 3));
    view->addSubview(plate(NSMakeRect(1, 0, 2, 2), NSColor::greenColor()));
    EXPECT_EQ(pictureOf(view, 1), "rrrr/rggr/rggr");
}

TEST(ZRCreateViewImage, HasScalePixelsForEachPoint)
{
    const auto view = make<NSView>(NSMakeRect(0, 0, 2, 2));
    view->addSubview(plate(NSMakeRect(0.5, 1, 1, 1)));
    EXPECT_EQ(pictureOf(view, 2), ".rr./.rr./..../....");
    EXPECT_EQ(pictureOf(view, 0.5), "2"); // a quarter of the only pixel
}

TEST(ZRCreateViewImage, IsTransparentWhereNothingPaintsAndInSRGB)
{
    const auto view = make<NSView>(NSMakeRect(0, 0, 3, 2));
    EXPECT_EQ(pictureOf(view, 1), ".../...");
    const auto image = adopt(ZRCreateViewImage(view, 1, nullptr));
    EXPECT_EQ(CGImageGetAlphaInfo(image), kCGImageAlphaPremultipliedLast);
    const auto teal =
        plate(NSMakeRect(0, 0, 1, 1), ZRGraphics::sharedGraphics()->platformColorFromHex("336699"));
    EXPECT_EQ(pixels(adopt(ZRCreateViewImage(teal, 1, nullptr)).get()), (Bytes{0x33, 0x66, 0x99, 255}));
}

TEST(ZRCreateViewImage, CoversTheLastColumnAndRowInPart)
{
    const auto view = plate(NSMakeRect(0, 0, 1.5, 1.2));
    EXPECT_EQ(pictureOf(view, 1), "r5/21");
    // 0.1 x 30 is a little more than 3 in binary.
    EXPECT_EQ(pictureOf(plate(NSMakeRect(0, 0, 0.1, 0.1)), 30), "rrr/rrr/rrr");
}

TEST(ZRCreateViewImage, DrawsAFlippedViewFromTheTop)
{
    class Flipped : public NSView {
    public:
        using NSView::NSView;
        bool isFlipped() const override { return true; }
    };
    const auto view = make<Flipped>(NSMakeRect(0, 0, 2, 3));
    view->addSubview(plate(NSMakeRect(0, 0, 1, 1)));
    view->addSubview(plate(NSMakeRect(1, 1, 1, 1), NSColor::greenColor()));
    EXPECT_EQ(pictureOf(view, 1), "r./.g/..");
}

TEST(ZRCreateViewImage, HasTheSizeOfTheFrameNotOfTheBounds)
{
    const auto view = make<NSView>(NSMakeRect(0, 0, 4, 2));
    view->setBounds(NSMakeRect(10, 10, 2, 2));
    view->addSubview(plate(NSMakeRect(10, 10, 1, 1)));
    EXPECT_EQ(pictureOf(view, 1), "..../rr..");
}

TEST(ZRCreateViewImage, LaysTheViewOutFirst)
{
    const auto view = make<NSView>(NSMakeRect(0, 0, 3, 2));
    const auto pinned = plate(NSZeroRect);
    view->addSubview(pinned);
    ZRAppKitAdditions::addConstraintsPin4SidesWithPriority(pinned, NSLayoutPriorityRequired);
    EXPECT_EQ(pictureOf(view, 1), "rrr/rrr");
}

TEST(ZRCreateViewImage, DrawsAHiddenViewButNoHiddenSubview)
{
    const auto view = plate(NSMakeRect(0, 0, 2, 1));
    const auto child = plate(NSMakeRect(1, 0, 1, 1), NSColor::greenColor());
    view->addSubview(child);
    view->setHidden(true);
    EXPECT_EQ(pictureOf(view, 1), "rg");
    child->setHidden(true);
    EXPECT_EQ(pictureOf(view, 1), "rr");
}

TEST(ZRCreateViewImage, ReportsItsScaleToTheViews)
{
    const auto view = plate(NSMakeRect(0, 0, 2, 1));
    NSRect backing{};
    view->onDraw = [&] { backing = view->convertRectToBacking(view->bounds()); };
    pictureOf(view, 3);
    EXPECT_EQ(backing.size.width, 6);
    EXPECT_EQ(backing.size.height, 3);
}

TEST(ZRCreateViewImage, DrawsInTheAppearance)
{
    const auto light = NSAppearance::appearanceNamed(NSAppearanceNameAqua);
    const auto dark = NSAppearance::appearanceNamed(NSAppearanceNameDarkAqua);
    const auto view = plate(NSMakeRect(0, 0, 1, 1), NSColor::labelColor());
    NSAppearance* effective = nullptr;
    view->onDraw = [&] { effective = view->effectiveAppearance(); };
    const auto red = [&](NSAppearance* appearance) {
        return pixels(adopt(ZRCreateViewImage(view, 1, appearance)).get())[0];
    };

    EXPECT_EQ(red(light), 0); // black letters
    EXPECT_EQ(effective, light);
    EXPECT_EQ(red(dark), 216); // white ones of 0.85
    EXPECT_EQ(effective, dark);
    EXPECT_EQ(red(nullptr), 0); // the light one, without an application
    EXPECT_EQ(effective, light);
    dark->performAsCurrentDrawingAppearance([&] { EXPECT_EQ(red(nullptr), 216); });
    EXPECT_EQ(effective, dark);
    EXPECT_EQ(view->effectiveAppearance(), light) << "outside of drawing";
}

TEST(ZRCreateViewImage, IsNullWithoutAViewAnAreaOrAScale)
{
    EXPECT_EQ(pictureOf(nullptr, 1), "none");
    EXPECT_EQ(pictureOf(plate(NSMakeRect(0, 0, 3, 0)), 1), "none");
    EXPECT_EQ(pictureOf(plate(NSMakeRect(0, 0, 0, 3)), 1), "none");
    const auto view = plate(NSMakeRect(0, 0, 2, 2));
    for (const double scale :
        {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
        EXPECT_EQ(pictureOf(view, scale), "none") << scale;
}

TEST(ZRCreateViewImage, IsNullWhenItWouldBeTooLarge)
{
    const auto row = plate(NSMakeRect(0, 0, 32767, 1));
    EXPECT_EQ(pictureOf(row, 1), std::string(32767, 'r'));
    EXPECT_EQ(pictureOf(row, 1.0001), "none");
    EXPECT_EQ(pictureOf(plate(NSMakeRect(0, 0, 1, 32768)), 1), "none");
}

TEST(ZRCreateViewImage, PassesOnWhatAViewThrows)
{
    const auto view = plate(NSMakeRect(0, 0, 2, 2));
    view->onDraw = [] { throw std::runtime_error("broken"); };
    EXPECT_THROW(pictureOf(view, 1), std::runtime_error);
    view->onDraw = nullptr;
    EXPECT_EQ(pictureOf(view, 1), "rr/rr");
    EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
}

TEST(ZRCreateViewImage, DrawsEveryViewWithoutTheWindowSystem)
{
    const NSRect frame = NSMakeRect(0, 0, 60, 24);
    const auto capsule = make<ZRCapsuleView>(frame);
    capsule->setString("beta");
    const auto code = make<ZRQRView>(frame);
    code->setString("https://example.org");
    const auto panel = make<ZRGradientView>(frame);
    panel->setColor(NSColor::greenColor());
    const auto field = make<NSTextField>(frame);
    field->setStringValue("text");
    const RetainPtr<NSView> views[] = {capsule, code, panel, field, make<ZRSwitchControl>(frame),
        make<ZR2DColorPicker>(frame), make<NSButton>(frame), make<ZRPDFView>(frame)};
    for (const auto& view : views) {
        const auto image = adopt(ZRCreateViewImage(view, 2, nullptr));
        ASSERT_TRUE(image);
        EXPECT_EQ(CGImageGetWidth(image), 120U);
        EXPECT_EQ(CGImageGetHeight(image), 48U);
        const bool isEmpty = pixels(image.get()) == Bytes(120 * 48 * 4);
        EXPECT_EQ(isEmpty, view == views[7]) << "all but the icon without a document";
    }
    EXPECT_EQ(NSApp, nullptr);
    EXPECT_TRUE(isLoaded("libKorvidAppKit")); // the name is looked for in the right place
    EXPECT_FALSE(isLoaded("libKorvidPlatformQt"));
    EXPECT_FALSE(isLoaded("libQt6Gui"));
}
