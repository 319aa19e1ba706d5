// Sweeps around a centre: a ring of all hues, and within it a ring of progress that fades towards its start.

#include "Page.h"
#include "Text.h"

#include <AppKit/NSColor.h>
#include <CoreGraphics/CGBitmapContext.h>
#include <Foundation/NSData.h>
#include <Foundation/NSFormat.h>
#include <KorvidAppKit/ZRAngularGradient.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>

namespace {

/// A ring's place, in points.
struct Ring {
    CGPoint centre;
    CGFloat radius; ///< the outer one
    CGFloat width;
};

constexpr std::size_t kPercent = 72;
constexpr CGFloat kTurn = 2 * std::numbers::pi;
constexpr CGFloat kTopAngle = kTurn / 4;
constexpr CGFloat kHeadAngle = kTopAngle - kTurn * kPercent / 100; // clockwise from the top

constexpr CGRect squareAround(CGPoint centre, CGFloat radius)
{
    return {{centre.x - radius, centre.y - radius}, {2 * radius, 2 * radius}};
}

/// The point in the middle of a ring's width, at an angle.
CGPoint pointOn(const Ring& ring, CGFloat angle)
{
    const CGFloat radius = ring.radius - ring.width / 2;
    return {ring.centre.x + radius * std::cos(angle), ring.centre.y + radius * std::sin(angle)};
}

/// Adds a full ring to the current path, for the even-odd rule.
void addRing(CGContextRef context, const Ring& ring)
{
    CGContextAddEllipseInRect(context, squareAround(ring.centre, ring.radius));
    CGContextAddEllipseInRect(context, squareAround(ring.centre, ring.radius - ring.width));
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
void drawHues(CGContextRef context, const Ring& ring)
{
    const auto sweep = makeSweep(context, ring, false);
    const auto picture = makeHuePicture(sweep);
    CGContextSaveGState(context);
    addRing(context, ring);
    CGContextEOClip(context);
    CGContextDrawImage(context, squareAround(ring.centre, ring.radius), picture);
    CGContextRestoreGState(context);
}

/// Draws a track, and on it the progress clockwise from the top to its head, where it is strongest.
void drawProgress(CGContextRef context, const Ring& ring)
{
    CGContextSetFillColorWithColor(context, galleryCGColor("zel-switch-bg-gray"));
    addRing(context, ring);
    CGContextEOFillPath(context);

    CGContextSetFillColorWithColor(context, galleryCGColor("zel-blue-highlight"));
    const CGRect startCap = squareAround(pointOn(ring, kTopAngle), ring.width / 2);
    const CGRect headCap = squareAround(pointOn(ring, kHeadAngle), ring.width / 2);
    CGContextSaveGState(context);
    CGContextAddArc(context, ring.centre.x, ring.centre.y, ring.radius, kTopAngle, kHeadAngle, 1);
    CGContextAddArc(
        context, ring.centre.x, ring.centre.y, ring.radius - ring.width, kHeadAngle, kTopAngle, 0);
    CGContextClosePath(context);
    // A half circle rounds the start of the band.
    const CGPoint start = pointOn(ring, kTopAngle);
    CGContextMoveToPoint(context, CGRectGetMidX(startCap), CGRectGetMaxY(startCap));
    CGContextAddArc(context, start.x, start.y, ring.width / 2, kTopAngle, kTopAngle + kTurn / 2, 0);
    CGContextClosePath(context);
    CGContextClip(context);
    // Rotated so that its greatest values are at the head.
    const auto sweep = makeSweep(context, ring, true);
    CGContextTranslateCTM(context, ring.centre.x, ring.centre.y);
    CGContextRotateCTM(context, kHeadAngle);
    CGContextClipToMask(context, squareAround({}, ring.radius), sweep);
    CGContextFillRect(context, squareAround({}, ring.radius));
    CGContextRestoreGState(context);
    CGContextFillEllipseInRect(context, headCap);
}

/// Both rings, with the progress in percent in their middle. On a wide card they are side by side, else one
/// is within the other.
class RingsView : public NSView {
public:
    using NSView::NSView;

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        const NSRect card = bounds();
        fillGalleryCard(context, card);
        const CGFloat least = std::min(card.size.width, card.size.height);
        const CGPoint middle{std::round(NSMidX(card)), std::round(NSMidY(card))};
        Ring hues{middle, std::round(least * 164 / 376), std::round(least * 44 / 376)};
        Ring progress{middle, std::round(least * 92 / 376), std::round(least * 24 / 376)};
        if (card.size.width >= 1.4 * least) {
            const CGFloat quarter = std::round(card.size.width / 4);
            const CGFloat radius = std::min(std::round(least / 2) - 36, quarter - 24);
            hues = {{quarter, middle.y + 12}, radius, std::round(radius * 0.27)};
            progress = {{card.size.width - quarter, middle.y + 12}, radius, std::round(radius * 0.2)};
            constexpr CGFloat kBaseline = 18;
            drawLabel(context, "all hues, counterclockwise from the right", {quarter, kBaseline},
                kCaptionText, LabelPlace::CentredOnPoint);
            drawLabel(context, "progress, clockwise from the top", {progress.centre.x, kBaseline},
                kCaptionText, LabelPlace::CentredOnPoint);
        }
        drawHues(context, hues);
        drawProgress(context, progress);
        const auto percent = NSString::stringWithFormat("%zu %%", kPercent);
        drawLabel(context, percent, progress.centre, kFigureText, LabelPlace::Around);
    }

protected:
    ~RingsView() override = default;
};

RetainPtr<NSView> makeAngularGradientPage(const GalleryOptions&)
{
    return makeGalleryPage({make<RingsView>(NSZeroRect)}, galleryGrid(1, 1));
}

const GalleryPage anglesPage{"angles", 60, "Angles",
    "Sweeps around a centre: a ring of all hues, and a ring of progress that fades towards its start.",
    makeAngularGradientPage};

} // namespace
