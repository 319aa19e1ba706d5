#include "CoreGraphics/context/CGContextInternal.h"

#include "CoreGraphics/CGImageInternal.h"
#include "CoreGraphics/CGLog.h"

#include <array>

namespace {

/// In pixels. cairo draws a pattern of an image onto at most 32,759 of them at once.
constexpr int kMaxAreaSide = 16384;

ImageFilter filterFor(const CGImage& image, CGInterpolationQuality quality)
{
    if (!image.shouldInterpolate || quality == kCGInterpolationNone)
        return ImageFilter::Nearest;
    return quality == kCGInterpolationLow ? ImageFilter::Bilinear : ImageFilter::Average;
}

/// A paint for pixels of `area` of the image stretched over a rectangle of user space, its first row along
/// the edge of greatest y. The paint continues beyond the rectangle; the shape that it fills gives the edges.
/// nullopt when the image cannot be drawn there.
std::optional<Paint> makeImagePaint(
    const CGImage& image, CGRect rect, const PixelRect& area, CGContextRef context)
{
    const CGImage* drawable = image.drawable();
    if (!drawable) {
        CGLogMisuse("CGContext", "an image is not drawn: there is no memory");
        return std::nullopt;
    }
    const GraphicsState& state = context->state();
    const CGAffineTransform userFromImage{CGRectGetWidth(rect) / CGFloat(image.width), 0, 0,
        -CGRectGetHeight(rect) / CGFloat(image.height), CGRectGetMinX(rect), CGRectGetMaxY(rect)};
    return context->images.makePaint(*drawable, CGAffineTransformConcat(userFromImage, state.baseFromUser),
        filterFor(image, state.interpolation), area, context->space());
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

/// Splits a rectangle of pixels across its longer side.
std::array<PixelRect, 2> halves(const PixelRect& pixels)
{
    std::array<PixelRect, 2> parts{pixels, pixels};
    if (pixels.width() > pixels.height())
        parts[0].right = parts[1].left = pixels.left + pixels.width() / 2;
    else
        parts[0].bottom = parts[1].top = pixels.top + pixels.height() / 2;
    return parts;
}

bool isDrawnAtOnce(const PixelRect& area)
{
    return std::max(area.width(), area.height()) <= kMaxAreaSide;
}

/// Adds an image's alpha within a rectangle of user space.
void drawMask(CGContextRef context, CGRect rect, const CGImage& image, MaskBuffer& mask)
{
    if (!isDrawnAtOnce(mask.area())) {
        for (const PixelRect& half : halves(mask.area())) {
            Scratch memory;
            MaskBuffer part(memory, half);
            drawMask(context, rect, image, part);
            mask.copy(part.view());
        }
        return;
    }
    const Shape shape = context->rectShape(rect);
    if (const auto paint = makeImagePaint(image, rect, mask.area(), context))
        mask.draw(shape, paint->source());
}

void drawImage(CGContextRef context, CGRect rect, CGImageRef image)
{
    GraphicsState& state = context->state();
    const Shape shape = context->rectShape(rect);
    const PixelRect area = shape.pixels(context->paintedPixels());
    if (area.isEmpty())
        return;
    if (!isDrawnAtOnce(state.clip.bounds()) && !isDrawnAtOnce(area)) {
        const Clip clip = state.clip;
        for (const PixelRect& half : halves(clip.bounds())) {
            state.clip = clip;
            state.clip.intersect(half);
            drawImage(context, rect, image);
        }
        state.clip = clip;
        return;
    }
    const auto pixels = makeImagePaint(*image, rect, area, context);
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
        mask.draw(shape, pixels->source());
        return context->paint(mask.view(), Paint(state.fill.color, state.alpha));
    }
    const CGFloat alpha = isAlpha ? state.alpha * state.fill.color.clamped().alpha : state.alpha;
    if (alpha < 1)
        context->paint(shape, context->images.makeFaded(*pixels, alpha, area, context->space()));
    else
        context->paint(shape, *pixels);
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
    state.clip.multiply(shape.pixels(state.clip.bounds()),
        [&](MaskBuffer& buffer) { drawMask(context, rect, *mask, buffer); });
}
