#include <KorvidAppKit/ZRShapes.h>

#include "graphics/ZRSavedGState.h"

#include <CoreText/CTFont.h>
#include <CoreText/CTLine.h>
#include <Foundation/NSLog.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr CGFloat kRadius = 12;
/// Margin around the text, both sides together.
constexpr CGFloat kTextMarginX = 12;
constexpr CGFloat kTextMarginY = 10;
constexpr CGFloat kOutlineWidth = 2;
constexpr CGFloat kShadowDown = 5;
constexpr CGFloat kShadowBlur = 4;

RetainPtr<const CTLine> makeLine(const NSString& text, CTFontRef font, CGColorRef color)
{
    if (text.isNull())
        return nullptr;
    const auto attributes = make<NSDictionary>(NSDictionary::Map{
        {kCTFontAttributeName, RetainPtr<NSObject>(const_cast<CTFont*>(font))},
        {kCTForegroundColorAttributeName, box(color)},
    });
    const auto string = make<NSAttributedString>(text, attributes);
    return adopt(CTLineCreateWithAttributedString(string));
}

RetainPtr<CGGradient> makeFade(CGColorSpaceRef space, CGFloat white, CGFloat alpha, CGFloat lastAlpha)
{
    const CGFloat components[]{white, white, white, alpha, white, white, white, lastAlpha};
    constexpr CGFloat kLocations[]{0, 1};
    return adopt(CGGradientCreateWithColorComponents(space, components, kLocations, 2));
}

/// Darkens the half of lower y towards its edge and gives the other one a sheen.
void drawShading(CGContextRef context, CGPathRef outline, CGColorSpaceRef space, CGFloat height)
{
    // The same for all badges, and costly to create.
    static const auto shade = makeFade(space, 0, 0, 0.2);
    static const auto sheen = makeFade(space, 1, 0.1, 0.4);
    const ZRSavedGState saved(context);
    CGContextAddPath(context, outline);
    CGContextClip(context);
    CGContextDrawLinearGradient(context, shade, CGPointZero, CGPointMake(0, -height / 2), 0);
    CGContextDrawLinearGradient(context, sheen, CGPointZero, CGPointMake(0, height / 2), 0);
}

} // namespace

void ZRDrawBadge(
    CGContextRef context, CGColorRef fillColor, const NSString& text, CGFloat fontSize, CGFloat scale)
{
    if (!context)
        return;
    if (!std::isfinite(scale))
        scale = 0;
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    constexpr CGFloat kWhite[]{1, 1, 1, 1};
    const auto white = adopt(CGColorCreate(space, kWhite));
    // Before the state is saved: the caller draws on in this space.
    CGContextSetFillColorSpace(context, space);
    CGContextSetStrokeColorSpace(context, space);

    CGContextSaveGState(context);
    CGContextScaleCTM(context, scale, scale);
    const auto font = adopt(CTFontCreateWithName("Helvetica Bold", fontSize));
    const auto line = makeLine(text, font, white);
    if (!line) {
        // The state stays saved: the caller restores it, as ZRShapes.h says.
        NSLog("ZRDrawBadge() failed");
        return;
    }

    const CGPoint textPosition = CGContextGetTextPosition(context); // not part of the graphics state
    CGContextSetTextPosition(context, 0, 0);
    const CGRect ink = CTLineGetImageBounds(line, context);
    // The given size, also where it is 0 or less and the font has its default size.
    const CGFloat height = (std::isfinite(fontSize) ? fontSize : CTFontGetSize(font)) + kTextMarginY;
    const CGFloat width = std::max(ink.size.width + kTextMarginX, height);
    const auto outline = adopt(
        ZRCreateRoundedRectPath(kZRCornerAll, CGRectMake(-width / 2, -height / 2, width, height), kRadius));

    CGContextSetStrokeColorWithColor(context, white);
    CGContextSetFillColorWithColor(context, fillColor);
    CGContextSetLineWidth(context, kOutlineWidth);
    CGContextSetShadow(context, CGSizeMake(0, -kShadowDown * scale), kShadowBlur * scale);
    CGContextBeginPath(context);
    CGContextAddPath(context, outline);
    CGContextFillPath(context);
    CGContextSetShadow(context, CGSizeZero, 0);
    drawShading(context, outline, space, height);
    CGContextAddPath(context, outline);
    CGContextStrokePath(context);

    // Whole points: glyphs keep the subpixel positions that they have in other text.
    CGContextTranslateCTM(context, -std::round(CGRectGetMidX(ink)), -std::round(CGRectGetMidY(ink)));
    CTLineDraw(line, context);
    CGContextSetTextPosition(context, textPosition.x, textPosition.y);
    CGContextRestoreGState(context);
}
