#include "Icon.h"

#include <CoreGraphics/CGBitmapContext.h>
#include <CoreGraphics/CGColorSpace.h>
#include <CoreGraphics/CGGradient.h>

#include <cmath>

namespace {

RetainPtr<CGGradient> makeGradient(const CGFloat (&components)[12], const CGFloat (&locations)[3])
{
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    return adopt(CGGradientCreateWithColorComponents(space, components, locations, 3));
}

} // namespace

RetainPtr<NSImage> makeGalleryIcon(CGFloat side)
{
    const auto pixels = std::size_t(std::ceil(side * 2));
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    const auto context =
        adopt(CGBitmapContextCreate(nullptr, pixels, pixels, 8, 0, space, kCGImageAlphaPremultipliedLast));
    if (!context)
        return make<NSImage>(NSMakeSize(side, side));
    CGContextScaleCTM(context, CGFloat(pixels), CGFloat(pixels));
    const CGPoint middle = CGPointMake(0.5, 0.5);

    // Transparent on both sides, opaque in between.
    const auto ring = makeGradient({0.2, 0.7, 0.6, 0, 0.2, 0.7, 0.6, 1, 0.2, 0.7, 0.6, 0}, {0, 0.5, 1});
    CGContextDrawRadialGradient(context, ring, middle, 0.34, middle, 0.5, 0);
    const auto ball = makeGradient({1, 1, 1, 1, 0.25, 0.8, 0.7, 1, 0.05, 0.4, 0.4, 1}, {0, 0.4, 1});
    CGContextAddEllipseInRect(context, CGRectMake(0.2, 0.2, 0.6, 0.6));
    CGContextClip(context);
    CGContextDrawRadialGradient(
        context, ball, CGPointMake(0.4, 0.62), 0, middle, 0.42, kCGGradientDrawsAfterEndLocation);
    return make<NSImage>(adopt(CGBitmapContextCreateImage(context)), NSMakeSize(side, side));
}
