#include "CoreGraphics/context/CGContextInternal.h"

#include "CoreGraphics/CGImageInternal.h"
#include "CoreGraphics/CGLog.h"

namespace {

ImageFilter filterFor(const CGImage& image, CGInterpolationQuality quality)
{
    if (!image.shouldInterpolate || quality == kCGInterpolationNone)
        return ImageFilter::Nearest;
    return quality == kCGInterpolationLow ? ImageFilter::Linear : ImageFilter::Mean;
}

/// The pixels in `area` of the image stretched over a rectangle of user space, its first row along the edge
/// of greatest y. They continue beyond the rectangle; the shape that is filled with them gives the edges.
/// Borrowed, and valid until the next call; null when the image cannot be drawn there.
PixelSource* sampleImage(const CGImage& image, CGRect rect, const PixelRect& area, CGContextRef context)
{
    const CGImage* drawable = image.drawable();
    if (!drawable) {
        CGLogMisuse("CGContext", "an image is not drawn: there is no memory");
        return nullptr;
    }
    const GraphicsState& state = context->state();
    const CGAffineTransform userFromImage{CGRectGetWidth(rect) / CGFloat(image.width), 0, 0,
        -CGRectGetHeight(rect) / CGFloat(image.height), CGRectGetMinX(rect), CGRectGetMaxY(rect)};
    const auto imageFromBase = inverse(CGAffineTransformConcat(userFromImage, state.baseFromUser));
    if (!imageFromBase || area.isEmpty())
        return nullptr;
    const CGAffineTransform imageFromPixel = CGAffineTransformConcat(context->space().flip(), *imageFromBase);
    const ImageFilter filter = filterFor(image, state.interpolation);
    return context->image.begin(*drawable, imageFromPixel, filter, area) ? &context->image : nullptr;
}

/// An image of the same samples as an alpha-only image; null when it cannot be a mask.
RetainPtr<const CGImage> makeMask(CGImageRef image)
{
    switch (image->format) {
    case CGPixelFormat::Alpha:
    case CGPixelFormat::Mask:
        return image;
    case CGPixelFormat::Gray: {
        CGImageProperties properties = *image;
        properties.format = CGPixelFormat::Alpha;
        return adopt<const CGImage>(new CGImage(properties));
    }
    default:
        return nullptr;
    }
}

void drawImage(CGContextRef context, CGRect rect, CGImageRef image)
{
    const GraphicsState& state = context->state();
    const Shape shape = context->rectShape(rect);
    const PixelRect area = shape.pixels(context->paintedPixels());
    if (area.isEmpty())
        return;
    PixelSource* const pixels = sampleImage(*image, rect, area, context);
    if (!pixels)
        return;

    const bool isAlpha = image->format == CGPixelFormat::Alpha;
    const bool isInFillColor = isAlpha || image->format == CGPixelFormat::Mask;
    if (isInFillColor && state.fill.paintsNothing)
        return;
    // In an alpha-only context an alpha-only image is the source: the blend mode applies to the whole
    // rectangle.
    const bool isPicture = !isInFillColor || (isAlpha && context->bitmap.alphaInfo() == kCGImageAlphaOnly);
    if (!isPicture) {
        MaskBuffer mask(context->maskMemory, area);
        mask.draw(shape, *pixels);
        return context->paint(mask.view(), Paint(state.fill.color, state.alpha));
    }
    const CGFloat alpha = isAlpha ? state.alpha * state.fill.color.clamped().alpha : state.alpha;
    if (alpha >= 1)
        return context->paint(shape, Paint(*pixels));
    FadedPixels faded(*pixels, std::uint8_t(std::lround(alpha * 255)), context->fadedRow);
    context->paint(shape, Paint(faded));
}

} // namespace

void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image)
{
    if (context && image)
        drawImage(context, rect, image);
}

void CGContextClipToMask(CGContextRef context, CGRect rect, CGImageRef image)
{
    if (!context)
        return;
    GraphicsState& state = context->state();
    const Shape shape = context->rectShape(rect);
    if (!image)
        return state.clip.intersect(shape);
    const auto mask = makeMask(image);
    if (!mask)
        return CGLogMisuse(__func__, "nothing changes: the image is neither gray nor a mask");

    // The mask is rasterized at once, so that later changes of the CTM do not move it.
    state.clip.multiply(shape.pixels(state.clip.bounds()), [&](MaskBuffer& buffer) {
        if (PixelSource* const pixels = sampleImage(*mask, rect, buffer.area(), context))
            buffer.draw(shape, *pixels);
    });
}
