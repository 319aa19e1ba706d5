#include "CoreGraphics/pdf/DisplayListPlayer.h"

#include "CoreGraphics/pdf/PDFBudget.h"
#include "CoreGraphics/pdf/PDFShading.h"

#include <cmath>

bool DisplayListPlayer::beginPattern(
    const PDFCompositing& compositing, const PDFShape& shape, const CGAffineTransform& pageFromPattern)
{
    if (shape.path)
        spend(paintedBox(shape), &shape);
    else
        spend(CGContextGetClipBoundingBox(_context), nullptr);
    if (isExhausted())
        return false;
    CGContextSaveGState(_context);
    setCompositing(compositing);
    setAlpha(compositing.alpha);
    clipTo(shape);
    CGContextConcatCTM(_context, pageFromPattern);
    return true;
}

void DisplayListPlayer::endPattern()
{
    CGContextRestoreGState(_context);
    clipChanged();
}

void DisplayListPlayer::draw(const ShadeItem& item)
{
    if (!beginPattern(item.compositing, item.shape, item.pageFromShading))
        return;
    _workLeft -= item.shading->draw(_context, item.isPattern, _workLeft);
    endPattern();
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
