#include <KorvidAppKit/ZRPDF.h>

#include <CoreGraphics/CGBitmapContext.h>
#include <Foundation/NSLog.h>
#include <KorvidAppKit/ZRGraphics.h>

#include "graphics/ZRSavedGState.h"

#include <algorithm>
#include <cmath>

namespace {

/// Where a page lies in a rectangle, from the rectangle's origin.
struct Placement {
    CGFloat scale;
    CGFloat x;
    CGFloat y;
};

CGFloat pageScale(CGSize page, CGSize room, int fillMode)
{
    const CGFloat x = room.width / page.width, y = room.height / page.height;
    switch (fillMode) {
    case ZRPDFFillModeFit:
        return std::min(x, y);
    case ZRPDFFillModeFill:
        return std::max(x, y);
    default:
        return 1;
    }
}

Placement placementOf(CGPDFPageRef page, CGSize room, int fillMode)
{
    const CGRect crop = CGRectIntegral(CGPDFPageGetBoxRect(page, kCGPDFCropBox));
    const CGFloat scale = pageScale(crop.size, room, fillMode);
    const CGSize size = CGRectApplyAffineTransform(crop, CGAffineTransformMakeScale(scale, scale)).size;
    return {scale, (room.width - size.width) * 0.5, (room.height - size.height) * 0.5};
}

bool isFinite(const CGAffineTransform& m)
{
    // A sum with an infinity or NaN in it is not finite.
    return std::isfinite(m.a + m.b + m.c + m.d + m.tx + m.ty);
}

/// The origin of the page's crop box is deliberately not subtracted: an icon may be drawn beside its place.
void drawPage(CGContextRef context, CGPDFPageRef page, const Placement& placement)
{
    CGContextTranslateCTM(context, placement.x, placement.y);
    CGContextScaleCTM(context, placement.scale, placement.scale);
    if (!isFinite(CGContextGetCTM(context)))
        return; // an infinite rectangle, or the null one: a page has no place in it
    CGContextDrawPDFPage(context, page);
}

/// Turns upside down what is drawn from here on between y = 0 and `height`.
void flip(CGContextRef context, CGFloat height)
{
    CGContextTranslateCTM(context, 0, height);
    CGContextScaleCTM(context, 1, -1);
}

void setColorSpaces(CGContextRef context, CGColorSpaceRef space)
{
    CGContextSetFillColorSpace(context, space);
    CGContextSetStrokeColorSpace(context, space);
}

/// An empty mask of so many pixels, fractions cut off. Null where that leaves none, and for NaN.
RetainPtr<CGContext> makeMask(CGFloat width, CGFloat height)
{
    if (!(width >= 1 && height >= 1))
        return nullptr;
    constexpr CGFloat kTooMany = 0x1p31; // more than any context has
    const auto columns = static_cast<std::size_t>(std::min(width, kTooMany));
    const auto rows = static_cast<std::size_t>(std::min(height, kTooMany));
    const auto gray = adopt(CGColorSpaceCreateDeviceGray());
    return adopt(CGBitmapContextCreate(nullptr, columns, rows, 8, columns, gray, kCGImageAlphaOnly));
}

/// Fills a rectangle with the colour through a mask that is stretched over `maskRect`.
void fillThroughMask(CGContextRef context, CGContextRef mask, CGRect maskRect, CGColorRef color, CGRect rect)
{
    const auto image = adopt(CGBitmapContextCreateImage(mask));
    if (!image)
        return;
    CGContextSetFillColorWithColor(context, color);
    CGContextClipToMask(context, maskRect, image);
    CGContextFillRect(context, rect);
}

} // namespace

void ZRPDF::drawPageNumber(NSInteger number, CGRect rect, CGColorRef color, CGColorSpaceRef colorSpace,
    CGContextRef context, int fillMode) const
{
    if (!context)
        context = ZRGraphics::sharedContext();
    const auto space =
        colorSpace ? RetainPtr(colorSpace) : adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    if (!context)
        return NSLog("Tried to draw ZRPDF page with no context");
    if (!space)
        return NSLog("Tried to draw ZRPDF page with no colorspace");

    if (number == 0)
        number = 1;
    if (number > static_cast<NSInteger>(numberOfPages()))
        return NSLog("PDF error for %@", this);
    const CGPDFPageRef page = _pageWithNumber(number);
    if (!page)
        return;

    const ZRSavedGState savedState(context);
    setColorSpaces(context, space);
    if (color)
        return drawTinted(number, rect, color, context);
    CGContextTranslateCTM(context, rect.origin.x, rect.origin.y);
    drawPage(context, page, placementOf(page, rect.size, fillMode));
}

void ZRPDF::drawTinted(NSInteger number, CGRect rect, CGColorRef color, CGContextRef context) const
{
    // The horizontal scale serves for both axes.
    const CGFloat scale = CGContextGetUserSpaceToDeviceSpaceTransform(context).a;
    const CGFloat width = std::round(scale * rect.size.width), height = std::round(scale * rect.size.height);
    const auto mask = makeMask(width, height);
    if (!mask)
        return;
    // Always fitted: a tinted icon shows all of its shape.
    const auto gray = adopt(CGColorSpaceCreateDeviceGray());
    drawPageNumber(number, CGRectMake(0, 0, width, height), nullptr, gray, mask, ZRPDFFillModeFit);

    const CGRect area{CGPointZero, rect.size};
    CGContextTranslateCTM(context, rect.origin.x, rect.origin.y);
    fillThroughMask(context, mask, area, color, area);
}

void ZRPDF::drawPageNumber(NSInteger number, CGRect rect, CGColorRef color, CGContextRef context,
    CGFloat scaleFactor, int fillMode, bool flipped) const
{
    if (!context)
        context = ZRGraphics::sharedContext();
    if (!context)
        return NSLog("ERR: null cxt in %@", this);

    // Set before the state is saved: the caller's context keeps the spaces, for what it draws next.
    const auto rgb = adopt(CGColorSpaceCreateDeviceRGB());
    setColorSpaces(context, rgb);
    const ZRSavedGState savedState(context);
    if (CGPDFDocumentGetNumberOfPages(_pdfDoc) == 0)
        return NSLog("PDF error for %@", this);
    const CGPDFPageRef page = _pageWithNumber(number);
    if (!page)
        return;

    const Placement placement = placementOf(page, rect.size, fillMode);
    if (!color) {
        CGContextTranslateCTM(context, rect.origin.x, rect.origin.y);
        if (flipped)
            flip(context, rect.size.height);
        drawPage(context, page, placement);
        return;
    }

    const CGFloat enlargement = scaleFactor > 1 ? scaleFactor : 1;
    const CGRect enlarged = CGRectMake(rect.origin.x * enlargement, rect.origin.y * enlargement,
        rect.size.width * enlargement, rect.size.height * enlargement);
    const auto mask = makeMask(enlarged.size.width, enlarged.size.height);
    if (!mask)
        return;
    if (flipped)
        flip(mask, enlarged.size.height); // not truncated, unlike the mask
    // Also below 1, where the mask has one pixel per point: the page shrinks within it.
    CGContextScaleCTM(mask, scaleFactor, scaleFactor);
    drawPage(mask, page, placement);
    CGContextFlush(mask);
    // The enlarged rectangle is filled as it stands: with an origin other than (0, 0) it covers the mask in
    // part.
    fillThroughMask(context, mask, rect, color, enlarged);
}

void ZRPDF::drawPageNumber(NSInteger number, CGRect rect, CGColorRef color, CGContextRef context,
    CGFloat scaleFactor, int fillMode) const
{
    drawPageNumber(number, rect, color, context, scaleFactor, fillMode, true);
}
