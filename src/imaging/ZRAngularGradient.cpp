#include <KorvidAppKit/ZRAngularGradient.h>

#include "imaging/AngleRows.h"
#include "imaging/ImagingQueue.h"
#include "imaging/MallocMemory.h"

#include <CoreGraphics/CGBitmapContext.h>
#include <KorvidAppKit/ZRBoxBlur.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>

namespace {

/// The longest side of a bitmap context, in pixels.
constexpr double kMaximumContextSide = 32767;
static_assert(4 * kMaximumContextSide * kMaximumContextSide < SIZE_MAX);

/// Pixels that are worth a thread. An image of fewer than two portions is computed on the calling thread.
constexpr std::size_t kPortion = 1 << 18;

/// The whole pixels of a side; 0 if there are none, or more than a bitmap context allows.
std::size_t pixelsOf(double side)
{
    const double whole = std::floor(side);
    return whole >= 1 && whole <= kMaximumContextSide ? static_cast<std::size_t>(whole) : 0; // NaN: 0
}

/// An alpha-only context, which takes ownership of `data` unless that is null. Null if memory runs out.
RetainPtr<CGContext> makeContext(const AngleRule& rule, void* data)
{
    const auto gray = adopt(CGColorSpaceCreateDeviceGray());
    return adopt(CGBitmapContextCreateWithData(
        data, rule.width, rule.height, 8, rule.width, gray, kCGImageAlphaOnly, _ZRReleaseBMData, nullptr));
}

/// A context that holds the angles of all pixels; null if there is no memory for them.
RetainPtr<CGContext> makeAngles(const AngleRule& rule)
{
    // Four bytes per pixel, as for an RGBA bitmap of this size. Only the first quarter is used; the rest is
    // never touched, and takes up address space but no memory.
    MallocMemory<std::uint8_t> memory = makeLargeBytes(4 * rule.width * rule.height);
    if (!memory)
        return nullptr;
    auto context = makeContext(rule, memory.get());
    if (!context)
        return nullptr;
    std::uint8_t* const pixels = memory.release();
    const std::size_t portions = std::min(rule.height, rule.width * rule.height / kPortion);
    if (portions < 2) {
        fillAngleRows(pixels, rule, 0, rule.height);
        return context;
    }
    applyOnImagingQueue(portions, [&](std::size_t i) {
        fillAngleRows(pixels, rule, rule.height * i / portions, rule.height * (i + 1) / portions);
    });
    return context;
}

/// The mask that the ring composites with the angles; null if there is no memory for its pixels.
RetainPtr<CGImage> makeRingMask(const AngleRule& rule, double ringWidth)
{
    const auto context = makeContext(rule, nullptr);
    if (!context)
        return nullptr;
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
    // By sourceIn, opaque paint leaves the mask as it is: this ellipse belongs to the rule but has no effect.
    if (std::min(rule.centreColumn(), rule.centreRow()) > ringWidth) {
        CGContextSetBlendMode(context, kCGBlendModeSourceIn);
        CGContextFillEllipseInRect(context, CGRectInset(bounds, ringWidth + 1, ringWidth + 1));
    }
    return adopt(CGBitmapContextCreateImage(context));
}

/// The image; null if there is no memory for its pixels. Throws std::bad_alloc if there is none for other
/// objects.
RetainPtr<CGImage> makeImage(const AngleRule& rule, double ringWidth)
{
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
    return adopt(CGBitmapContextCreateImage(angles));
}

} // namespace

CGImageRef ZRCreateAngularGradientImage(bool isIncreasing, double width, double height, double ringWidth)
{
    const AngleRule rule{pixelsOf(width), pixelsOf(height), isIncreasing};
    if (rule.width == 0 || rule.height == 0)
        return nullptr;
    try {
        return makeImage(rule, ringWidth).leak();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
