#include "CoreGraphics/pdf/DisplayListPlayer.h"

#include "CoreGraphics/pdf/PDFBudget.h"
#include "CoreGraphics/pdf/PDFShading.h"

#include <cmath>

void DisplayListPlayer::draw(const ShadeItem& item)
{
    const bool fillsClip = !item.shape.path;
    spend(fillsClip ? CGContextGetClipBoundingBox(_context) : paintedBox(item.shape),
        fillsClip ? nullptr : &item.shape);
    if (isExhausted())
        return;
    CGContextSaveGState(_context);
    setCompositing(item.compositing);
    setAlpha(item.compositing.alpha);
    clipTo(item.shape);
    CGContextConcatCTM(_context, item.pageFromShading);
    _workLeft -= item.shading->draw(_context, item.isPattern, _workLeft);
    CGContextRestoreGState(_context);
    clipChanged();
}

void DisplayListPlayer::draw(const ImageItem& item)
{
    constexpr CGRect kUnitSquare{{0, 0}, {1, 1}};
    const double width = double(CGImageGetWidth(item.image));
    const double height = double(CGImageGetHeight(item.image));
    spend(CGRectApplyAffineTransform(kUnitSquare, item.pageFromUnitSquare), nullptr);
    _workLeft -= kPDFLimits.workPerImagePixel * width * height;
    if (isExhausted())
        return;
    CGContextSaveGState(_context);
    setCompositing(item.compositing);
    CGContextConcatCTM(_context, item.pageFromUnitSquare);
    // Enlarged pixels stay squares, unless the file asks for smooth ones; shrunk ones are averaged.
    const auto deviceFromImage = CGContextGetUserSpaceToDeviceSpaceTransform(_context);
    const bool shrinks = std::hypot(deviceFromImage.a, deviceFromImage.b) < width
        || std::hypot(deviceFromImage.c, deviceFromImage.d) < height;
    const bool isSmooth = item.interpolates || shrinks;
    CGContextSetInterpolationQuality(_context, isSmooth ? kCGInterpolationHigh : kCGInterpolationNone);
    if (item.isStencil)
        CGContextSetRGBFillColor(_context, item.color.r, item.color.g, item.color.b, item.compositing.alpha);
    else
        setAlpha(item.compositing.alpha);
    CGContextDrawImage(_context, kUnitSquare, item.image);
    CGContextRestoreGState(_context);
    clipChanged();
}
