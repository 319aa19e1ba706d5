#include "CoreGraphics/pdf/DisplayListPlayer.h"

#include "CoreGraphics/pdf/PDFBudget.h"

#include <CoreGraphics/CGBitmapContext.h>

#include <utility>

namespace {

/// A transparent bitmap of the given pixels of the base space of `context`, with the same user space. Null
/// without memory.
RetainPtr<CGContext> makeBitmap(CGContextRef context, CGRect pixels, bool isAlphaOnly)
{
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    auto bitmap = adopt(CGBitmapContextCreate(nullptr, std::size_t(pixels.size.width),
        std::size_t(pixels.size.height), 8, 0, isAlphaOnly ? nullptr : space.get(),
        isAlphaOnly ? kCGImageAlphaOnly : kCGImageAlphaPremultipliedLast));
    CGContextTranslateCTM(bitmap, -pixels.origin.x, -pixels.origin.y);
    CGContextConcatCTM(bitmap, CGContextGetCTM(context));
    return bitmap;
}

/// The bytes of a bitmap, row by row.
std::uint8_t* rowOf(CGContextRef bitmap, std::size_t row)
{
    return static_cast<std::uint8_t*>(CGBitmapContextGetData(bitmap))
        + row * CGBitmapContextGetBytesPerRow(bitmap);
}

/// The weights of ISO 32000-2, 11.3.5.3 in 256ths: 0.3, 0.59 and 0.11.
std::uint8_t luminosity(const std::uint8_t* pixel)
{
    return static_cast<std::uint8_t>((pixel[0] * 77 + pixel[1] * 151 + pixel[2] * 28 + 128) >> 8);
}

} // namespace

void DisplayListPlayer::draw(const GroupItem& item)
{
    spend(item.box, nullptr);
    if (isExhausted() || CGRectIsNull(visible(item.box)))
        return;
    CGContextSaveGState(_context);
    setCompositing(item.compositing);
    setAlpha(item.compositing.alpha);
    CGContextBeginTransparencyLayerWithRect(_context, item.box, nullptr);
    clipChanged();
    const double alpha = std::exchange(_alpha, 1);
    play(*item.list);
    _alpha = alpha;
    CGContextEndTransparencyLayer(_context);
    CGContextRestoreGState(_context);
    clipChanged();
}

void DisplayListPlayer::setAlpha(float alpha)
{
    CGContextSetAlpha(_context, _alpha * alpha);
}

void DisplayListPlayer::setCompositing(const PDFCompositing& compositing)
{
    if (compositing.blendMode != kCGBlendModeNormal)
        CGContextSetBlendMode(_context, compositing.blendMode);
    if (compositing.softMask)
        clipToSoftMask(*compositing.softMask);
}

void DisplayListPlayer::clipToSoftMask(const PDFSoftMask& mask)
{
    const auto baseFromPage = CGContextGetCTM(_context);
    const CGRect clip = CGContextGetClipBoundingBox(_context);
    if (CGRectIsEmpty(clip))
        return;
    const CGRect pixels = CGRectIntegral(CGRectApplyAffineTransform(clip, baseFromPage));
    if (_renderedMask.mask != &mask || !CGRectContainsRect(_renderedMask.pixels, pixels))
        _renderedMask = {&mask, pixels, renderSoftMask(mask, pixels)};
    CGContextConcatCTM(_context, CGAffineTransformInvert(baseFromPage));
    if (_renderedMask.image)
        CGContextClipToMask(_context, _renderedMask.pixels, _renderedMask.image);
    else
        CGContextClipToRect(_context, CGRectZero);
    CGContextConcatCTM(_context, baseFromPage);
}

RetainPtr<CGImage> DisplayListPlayer::renderSoftMask(const PDFSoftMask& mask, CGRect pixels)
{
    const auto bitmap = makeBitmap(_context, pixels, !mask.isLuminosity);
    const auto coverage = mask.isLuminosity ? makeBitmap(_context, pixels, true) : bitmap;
    if (!bitmap || !coverage)
        return nullptr;
    DisplayListPlayer player(bitmap);
    if (mask.isLuminosity) {
        CGContextSaveGState(bitmap);
        CGContextSetRGBFillColor(bitmap, mask.backdrop.r, mask.backdrop.g, mask.backdrop.b, 1);
        CGContextFillRect(bitmap, CGContextGetClipBoundingBox(bitmap));
        CGContextRestoreGState(bitmap);
    }
    player._workLeft = _workLeft - 2 * pixels.size.width * pixels.size.height;
    player.play(*mask.list);
    _workLeft = player._workLeft;

    const auto width = std::size_t(pixels.size.width);
    for (std::size_t row = 0; row < std::size_t(pixels.size.height); ++row) {
        const std::uint8_t* const source = rowOf(bitmap, row);
        std::uint8_t* const target = rowOf(coverage, row);
        for (std::size_t column = 0; column < width; ++column)
            target[column] =
                mask.transfer[mask.isLuminosity ? luminosity(source + 4 * column) : source[column]];
    }
    return adopt(CGBitmapContextCreateImage(coverage));
}
