#include <KorvidAppKit/ZRAngularGradient.h>

#include "imaging/AngleRows.h"
#include "imaging/ImagingQueue.h"

#include <CoreGraphics/CGBitmapContext.h>
#include <KorvidAppKit/ZRBoxBlur.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

/// The longest side of a bitmap context.
constexpr double kLongestSide = 32767;
static_assert(4 * kLongestSide * kLongestSide < SIZE_MAX);

/// Pixels that are worth a thread's while. An image of less than two portions stays on the calling thread.
constexpr std::size_t kPortion = 1 << 18;

/// The whole pixels of a side; 0 where there are none, or more than a bitmap context takes.
std::size_t pixelsOf(double side)
{
    const double whole = std::floor(side);
    return whole >= 1 && whole <= kLongestSide ? static_cast<std::size_t>(whole) : 0; // NaN: 0
}

/// An alpha-only context; over `data`, if there is any, which it then frees. Null where there is no memory.
RetainPtr<CGContext> makeContext(const AngleRule& rule, void* data)
{
    const auto gray = adopt(CGColorSpaceCreateDeviceGray());
    return adopt(CGBitmapContextCreateWithData(
        data, rule.width, rule.height, 8, rule.width, gray, kCGImageAlphaOnly, _ZRReleaseBMData, nullptr));
}

/// A context of the angles of all pixels; null where there is no memory.
RetainPtr<CGContext> makeAngles(const AngleRule& rule)
{
    // Four bytes per pixel, of which the first quarter is used. The oversize is deliberate; never touched, it
    // takes up addresses and no memory.
    void* const data = std::malloc(4 * rule.width * rule.height);
    if (!data)
        return nullptr;
    auto context = makeContext(rule, data);
    if (!context) {
        std::free(data);
        return nullptr;
    }
    auto* const pixels = static_cast<std::uint8_t*>(data);
    const std::size_t portions = std::min(rule.height, rule.width * rule.height / kPortion);
    if (portions < 2) {
        fillAngleRows(pixels, rule, 0, rule.height);
        return context;
    }
    dispatch_apply(portions, imagingQueue(), [&](std::size_t i) {
        fillAngleRows(pixels, rule, rule.height * i / portions, rule.height * (i + 1) / portions);
    });
    return context;
}

/// What the ring is composited with; null where there is no memory.
RetainPtr<CGImage> makeRingMask(const AngleRule& rule, double ringWidth)
{
    const auto context = makeContext(rule, nullptr);
    const auto gray = adopt(CGColorSpaceCreateDeviceGray());
    const CGFloat opaque[] = {0, 1};
    CGContextSetStrokeColorSpace(context, gray);
    CGContextSetFillColorSpace(context, gray);
    CGContextSetFillColor(context, opaque);

    const CGRect bounds =
        CGRectMake(0, 0, static_cast<CGFloat>(rule.width), static_cast<CGFloat>(rule.height));
    CGContextFillRect(context, bounds);
    CGContextSetBlendMode(context, kCGBlendModeSourceOut);
    CGContextFillEllipseInRect(context, CGRectInset(bounds, 1, 1));
    // By sourceIn, opaque paint leaves what it meets: this ellipse is part of the rule and shows nowhere.
    if (std::min(rule.centreColumn(), rule.centreRow()) > ringWidth) {
        CGContextSetBlendMode(context, kCGBlendModeSourceIn);
        CGContextFillEllipseInRect(context, CGRectInset(bounds, ringWidth + 1, ringWidth + 1));
    }
    return adopt(CGBitmapContextCreateImage(context));
}

} // namespace

CGImageRef ZRCreateAngularGradientImage(bool isIncreasing, double width, double height, double ringWidth)
{
    const AngleRule rule{pixelsOf(width), pixelsOf(height), isIncreasing};
    if (rule.width == 0 || rule.height == 0)
        return nullptr;
    const auto angles = makeAngles(rule);
    if (!angles)
        return nullptr;
    if (ringWidth != 0) { // NaN too
        const auto mask = makeRingMask(rule, ringWidth);
        if (!mask)
            return nullptr;
        CGContextSaveGState(angles);
        CGContextSetBlendMode(angles, kCGBlendModeSourceOut);
        CGContextDrawImage(angles,
            CGRectMake(0, 0, static_cast<CGFloat>(rule.width), static_cast<CGFloat>(rule.height)),
            mask.get());
        CGContextRestoreGState(angles);
    }
    return CGBitmapContextCreateImage(angles);
}
