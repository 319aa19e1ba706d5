// Sweeps around a centre: a ring of all hues, and within it a ring of progress that fades towards its start.

#include "Label.h"
#include "Page.h"

#include <AppKit/NSColor.h>
#include <CoreGraphics/CGBitmapContext.h>
#include <Foundation/NSData.h>
#include <Foundation/NSFormat.h>
#include <KorvidAppKit/ZRAngularGradient.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <array>
#include <cmath>
#include <cstring>
#include <numbers>

namespace {

constexpr CGPoint kCentre{kGalleryCardSide / 2, kGalleryCardSide / 2};
/// Outer radius and width of a ring, in points.
struct Ring {
    CGFloat radius;
    CGFloat width;
};
constexpr Ring kHues{164, 44};
constexpr Ring kProgress{92, 24};

constexpr std::size_t kPercent = 72;
constexpr CGFloat kTurn = 2 * std::numbers::pi;
constexpr CGFloat kTop = kTurn / 4;
constexpr CGFloat kHead = kTop - kTurn * kPercent / 100; // clockwise from the top

constexpr CGRect squareAround(CGPoint centre, CGFloat radius)
{
    return {{centre.x - radius, centre.y - radius}, {2 * radius, 2 * radius}};
}

/// The point in the middle of a ring's width, at an angle.
CGPoint pointOn(const Ring& ring, CGFloat angle)
{
    const CGFloat radius = ring.radius - ring.width / 2;
    return {kCentre.x + radius * std::cos(angle), kCentre.y + radius * std::sin(angle)};
}

/// Adds a full ring to the current path, for the even-odd rule.
void addRing(CGContextRef context, const Ring& ring)
{
    CGContextAddEllipseInRect(context, squareAround(kCentre, ring.radius));
    CGContextAddEllipseInRect(context, squareAround(kCentre, ring.radius - ring.width));
}

/// A sweep as wide as the ring, with the context's pixels.
RetainPtr<CGImage> makeSweep(CGContextRef context, const Ring& ring, bool isIncreasing)
{
    const CGFloat pixelsPerPoint = std::abs(CGContextConvertSizeToDeviceSpace(context, {1, 1}).width);
    const CGFloat side = std::round(2 * ring.radius * pixelsPerPoint);
    return adopt(ZRCreateAngularGradientImage(isIncreasing, side, side, 0));
}

using Pixel = std::array<unsigned char, 4>;

/// The colour of each value of a sweep: all hues in order.
std::array<Pixel, 256> makeHues()
{
    std::array<Pixel, 256> hues{};
    for (std::size_t i = 0; i < hues.size(); ++i) {
        const auto color = NSColor::colorWithHue(static_cast<CGFloat>(i) / 255, 0.85, 1, 1);
        const auto byte = [](CGFloat component) {
            return static_cast<unsigned char>(std::lround(component * 255));
        };
        hues[i] = {
            byte(color->redComponent()), byte(color->greenComponent()), byte(color->blueComponent()), 255};
    }
    return hues;
}

/// Maps the values of a sweep to hues.
RetainPtr<CGImage> makeHuePicture(CGImageRef sweep)
{
    static const auto hues = makeHues();
    const std::size_t width = CGImageGetWidth(sweep), height = CGImageGetHeight(sweep);
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    const auto picture = adopt(
        CGBitmapContextCreate(nullptr, width, height, 8, 4 * width, space, kCGImageAlphaPremultipliedLast));
    auto* pixel = static_cast<unsigned char*>(CGBitmapContextGetData(picture));
    const auto data = CGDataProviderCopyData(CGImageGetDataProvider(sweep));
    for (std::size_t row = 0; row < height; ++row) {
        const auto* const values =
            static_cast<const unsigned char*>(data->bytes()) + row * CGImageGetBytesPerRow(sweep);
        for (std::size_t column = 0; column < width; ++column, pixel += 4)
            std::memcpy(pixel, hues[values[column]].data(), 4);
    }
    return adopt(CGBitmapContextCreateImage(picture));
}

/// Draws all hues counterclockwise, from red on the right.
void drawHues(CGContextRef context)
{
    const auto sweep = makeSweep(context, kHues, false);
    const auto picture = makeHuePicture(sweep);
    CGContextSaveGState(context);
    addRing(context, kHues);
    CGContextEOClip(context);
    CGContextDrawImage(context, squareAround(kCentre, kHues.radius), picture);
    CGContextRestoreGState(context);
}

/// Draws a track, and on it the progress clockwise from the top to its head, where it is strongest.
void drawProgress(CGContextRef context)
{
    CGContextSetFillColorWithColor(context, galleryCGColor("zel-switch-bg-gray"));
    addRing(context, kProgress);
    CGContextEOFillPath(context);

    CGContextSetFillColorWithColor(context, galleryCGColor("zel-blue-highlight"));
    const CGRect startCap = squareAround(pointOn(kProgress, kTop), kProgress.width / 2);
    const CGRect headCap = squareAround(pointOn(kProgress, kHead), kProgress.width / 2);
    CGContextSaveGState(context);
    CGContextAddArc(context, kCentre.x, kCentre.y, kProgress.radius, kTop, kHead, 1);
    CGContextAddArc(context, kCentre.x, kCentre.y, kProgress.radius - kProgress.width, kHead, kTop, 0);
    CGContextClosePath(context);
    // A half circle rounds the start of the band.
    const CGPoint start = pointOn(kProgress, kTop);
    CGContextMoveToPoint(context, CGRectGetMidX(startCap), CGRectGetMaxY(startCap));
    CGContextAddArc(context, start.x, start.y, kProgress.width / 2, kTop, kTop + kTurn / 2, 0);
    CGContextClosePath(context);
    CGContextClip(context);
    // Rotated so that its greatest values are at the head.
    const auto sweep = makeSweep(context, kProgress, true);
    CGContextTranslateCTM(context, kCentre.x, kCentre.y);
    CGContextRotateCTM(context, kHead);
    CGContextClipToMask(context, squareAround({}, kProgress.radius), sweep);
    CGContextFillRect(context, squareAround({}, kProgress.radius));
    CGContextRestoreGState(context);
    CGContextFillEllipseInRect(context, headCap);
}

/// Both rings, with the progress in percent in their middle.
class RingsView : public NSView {
public:
    using NSView::NSView;

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawHues(context);
        drawProgress(context);

        const auto percent = NSString::stringWithFormat("%zu %%", kPercent);
        drawLabel(context, percent, kCentre, 44, "zel-white-evenstronger", LabelPlace::Around);
    }

protected:
    ~RingsView() override = default;
};

RetainPtr<NSView> makeAngularGradientPage(const GalleryOptions&)
{
    auto page = makeGalleryPage();
    page->addSubview(
        make<RingsView>(NSMakeRect(kGalleryMargin, kGalleryMargin, kGalleryCardSide, kGalleryCardSide)));
    return page;
}

const GalleryPage page{"angles", 60, "Angles",
    "Sweeps around a centre: a ring of all hues, and a ring of progress that fades towards its start.",
    makeAngularGradientPage};

} // namespace
