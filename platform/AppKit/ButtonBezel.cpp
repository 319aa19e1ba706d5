#include "ButtonBezel.h"

#include <AppKit/NSColor.h>
#include <CoreGraphics/CGGradient.h>

#include <algorithm>
#include <array>

namespace {

constexpr CGFloat kCornerRadius = 5;
constexpr CGFloat kLineWidth = 1;
constexpr CGFloat kDisabledAlpha = 0.4;

/// A colour in sRGB, as 0xRRGGBB.
using Hex = std::uint32_t;

constexpr CGFloat component(Hex color, int shift)
{
    return ((color >> shift) & 0xFF) / 255.0;
}

/// From the top of a bezel to its bottom.
struct Face {
    Hex top;
    Hex bottom;
};
constexpr Face kFaces[] = {
    {0x5A5B5F, 0x48494C}, // off
    {0x343538, 0x3C3D40}, // off, pressed
    {0x058A8A, 0x007474}, // on
    {0x005C5C, 0x006666}, // on, pressed
};
constexpr Hex kEdge = 0x161718;
constexpr Hex kDefaultEdge = 0x00AAAA;

/// A gradient for each face. They are never destroyed.
CGGradientRef gradientOf(std::size_t face)
{
    static const auto gradients = [] {
        std::array<CGGradientRef, std::size(kFaces)> made{};
        const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
        for (std::size_t i = 0; i < made.size(); ++i) {
            const auto& [top, bottom] = kFaces[i];
            const CGFloat components[] = {component(top, 16), component(top, 8), component(top, 0), 1,
                component(bottom, 16), component(bottom, 8), component(bottom, 0), 1};
            made[i] = CGGradientCreateWithColorComponents(space, components, nullptr, 2);
        }
        return made;
    }();
    return gradients[face];
}

/// Adds a rectangle with round corners, inset by a distance, to the current path; nothing if it is empty.
void addOutline(CGContextRef context, NSRect rect, CGFloat inset)
{
    const NSRect inside = NSInsetRect(rect, inset, inset);
    if (NSIsEmptyRect(inside))
        return;
    const CGFloat radius = std::max<CGFloat>(kCornerRadius - inset, 0);
    CGContextAddPath(context, adopt(CGPathCreateWithRoundedRect(inside, radius, radius, nullptr)).get());
}

/// Strokes the line of a point whose outer edge is `inset` inside of the bezel's.
void strokeLine(CGContextRef context, NSRect rect, CGFloat inset)
{
    addOutline(context, rect, inset + kLineWidth / 2);
    CGContextStrokePath(context);
}

} // namespace

void drawButtonBezel(CGContextRef context, NSRect rect, const ButtonLook& look)
{
    CGContextSaveGState(context);
    if (!look.isEnabled)
        CGContextSetAlpha(context, kDisabledAlpha);
    CGContextSetLineWidth(context, kLineWidth);

    CGContextSaveGState(context);
    addOutline(context, rect, kLineWidth / 2);
    CGContextClip(context);
    const CGPoint top{NSMidX(rect), NSMaxY(rect)};
    const CGPoint bottom{NSMidX(rect), NSMinY(rect)};
    const bool isPressed = look.isPressed && look.isEnabled;
    CGContextDrawLinearGradient(context, gradientOf(look.isOn * 2U + isPressed), top, bottom, 0);
    CGContextRestoreGState(context);

    if (!isPressed) {
        // Light from above falls on the rim.
        CGContextSaveGState(context);
        CGContextClipToRect(context,
            NSMakeRect(NSMinX(rect), NSMaxY(rect) - 2 * kLineWidth, rect.size.width, 2 * kLineWidth));
        CGContextSetRGBStrokeColor(context, 1, 1, 1, 0.14);
        strokeLine(context, rect, kLineWidth);
        CGContextRestoreGState(context);
    }
    const Hex edge = look.isDefault ? kDefaultEdge : kEdge;
    CGContextSetRGBStrokeColor(context, component(edge, 16), component(edge, 8), component(edge, 0), 1);
    strokeLine(context, rect, 0);
    CGContextRestoreGState(context);
}

void drawButtonFocusRing(CGContextRef context, NSRect rect)
{
    CGContextSaveGState(context);
    CGContextSetLineWidth(context, kLineWidth);
    CGContextSetRGBStrokeColor(context, 1, 1, 1, 1);
    strokeLine(context, rect, 0);
    CGContextSetRGBStrokeColor(context, 0, 0, 0, 1);
    strokeLine(context, rect, kLineWidth);
    CGContextRestoreGState(context);
}

NSColor* buttonTitleColor(const ButtonLook& look)
{
    static const auto normal = NSColor::colorWithSRGBRed(0.93, 0.93, 0.93, 1);
    static const auto pressed = NSColor::colorWithSRGBRed(0.8, 0.8, 0.8, 1);
    static const auto disabled = NSColor::colorWithSRGBRed(1, 1, 1, kDisabledAlpha);
    if (!look.isEnabled)
        return disabled.get();
    if (look.isPressed)
        return pressed.get();
    return look.isOn ? NSColor::whiteColor() : normal.get();
}
