#include "CoreGraphics/context/CGContextInternal.h"

#include "CoreGraphics/CGImageInternal.h"
#include "CoreGraphics/CGLog.h"
#include "CoreGraphics/cairo/CairoShape.h"

namespace {

/// The longest side of pixels that cairo takes.
constexpr std::size_t kLongestSide = 32767;

cairo_filter_t filterFor(const CGImage& image, CGInterpolationQuality quality)
{
    if (!image.shouldInterpolate || quality == kCGInterpolationNone)
        return CAIRO_FILTER_NEAREST;
    return quality == kCGInterpolationLow ? CAIRO_FILTER_BILINEAR : CAIRO_FILTER_GOOD;
}

cairo_format_t formatOf(const CGImage& drawable)
{
    switch (drawable.format) {
    case CGPixelFormat::Alpha:
        return CAIRO_FORMAT_A8;
    case CGPixelFormat::RGBX:
        return CAIRO_FORMAT_RGB24;
    default:
        return CAIRO_FORMAT_ARGB32;
    }
}

/// The pixels of an image that is drawable; lent, until another image's are asked for.
cairo_surface_t* surfaceOf(const CGImage& drawable, CGContextRef context)
{
    ImageSurface& last = context->lastImage;
    if (last.serial != drawable.serial()) {
        // cairo only reads them.
        last.surface.reset(cairo_image_surface_create_for_data(const_cast<unsigned char*>(drawable.bytes()),
            formatOf(drawable), int(drawable.width), int(drawable.height), int(drawable.bytesPerRow)));
        last.serial = drawable.serial();
    }
    return last.surface.get();
}

/// The image stretched over a rectangle of user space, its first row along the edge of greatest y. Beyond its
/// edges it goes on in the colours of its border: the shape it is painted into has the edges, not the image.
/// Null when the image cannot be drawn there.
CairoPtr<cairo_pattern_t> makeImagePattern(const CGImage& image, CGRect rect, CGContextRef context)
{
    const GraphicsState& state = context->state();
    const CGImage* drawable = image.drawable();
    if (!drawable || image.width > kLongestSide || image.height > kLongestSide) {
        CGLogMisuse("CGContext", "an image is not drawn: it is too large");
        return nullptr;
    }
    const CGAffineTransform userFromImage{CGRectGetWidth(rect) / CGFloat(image.width), 0, 0,
        -CGRectGetHeight(rect) / CGFloat(image.height), CGRectGetMinX(rect), CGRectGetMaxY(rect)};
    const CGAffineTransform baseFromImage = CGAffineTransformConcat(userFromImage, state.baseFromUser);
    const CGAffineTransform imageFromBase = CGAffineTransformInvert(baseFromImage);
    if (!isInvertible(baseFromImage) || !isInvertible(imageFromBase))
        return nullptr;

    CairoPtr<cairo_pattern_t> pattern(cairo_pattern_create_for_surface(surfaceOf(*drawable, context)));
    const CGAffineTransform& t = imageFromBase;
    const cairo_matrix_t matrix{t.a, t.b, t.c, t.d, t.tx, t.ty};
    cairo_pattern_set_matrix(pattern.get(), &matrix);
    cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
    cairo_pattern_set_filter(pattern.get(), filterFor(image, state.interpolation));
    return pattern;
}

/// The pixels of a paint with less alpha, as far as they are needed.
Paint makeFaded(const Paint& paint, CGFloat alpha, const PixelRect& area, CGContextRef context)
{
    const Scratch::Pixels faded = context->imageMemory.make(CAIRO_FORMAT_ARGB32, area);
    const auto cairo = makeBaseSpaceCairo(faded.surface.get(), area, context->height());
    paint.setSource(cairo.get());
    cairo_set_operator(cairo.get(), CAIRO_OPERATOR_SOURCE);
    cairo_paint(cairo.get());
    // Not at once: with an alpha, what was there before would shine through.
    cairo_set_source_rgba(cairo.get(), 0, 0, 0, alpha);
    cairo_set_operator(cairo.get(), CAIRO_OPERATOR_DEST_IN);
    cairo_paint(cairo.get());
    cairo_surface_flush(faded.surface.get());
    return Paint(makePixelPattern(faded.surface.get(), area, context->height()));
}

/// An image of the same samples in which high values let paint through; null when it cannot be a mask.
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

} // namespace

void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image)
{
    if (!context || !image)
        return;
    const GraphicsState& state = context->state();
    const Shape shape = context->rectShape(rect);
    const PixelRect area = shape.pixels(context->paintedPixels(), context->height());
    if (area.isEmpty())
        return;
    auto pattern = makeImagePattern(*image, rect, context);
    if (!pattern)
        return;

    const Paint pixels(std::move(pattern));
    const bool isAlpha = image->format == CGPixelFormat::Alpha;
    const bool isInFillColor = isAlpha || image->format == CGPixelFormat::Mask;
    if (isInFillColor && state.fill.paintsNothing)
        return;
    // Among alphas alone, alphas are a picture like any other: all of the rectangle takes part in the blend.
    const bool isPicture = !isInFillColor || (isAlpha && context->bitmap.alphaInfo() == kCGImageAlphaOnly);
    if (!isPicture) {
        Coverage coverage(context->imageMemory, area);
        coverage.draw(shape, pixels, context->height());
        return context->paint(coverage.view(), Paint(state.fill.color, state.alpha));
    }
    const CGFloat alpha = isAlpha ? state.alpha * state.fill.color.clamped().alpha : state.alpha;
    if (alpha < 1)
        context->paint(shape, makeFaded(pixels, alpha, area, context));
    else
        context->paint(shape, pixels);
}

void CGContextClipToMask(CGContextRef context, CGRect rect, CGImageRef image)
{
    if (!context)
        return;
    GraphicsState& state = context->state();
    const Shape shape = context->rectShape(rect);
    if (!image)
        return state.clip.intersect(shape, context->height());
    const auto mask = makeMask(image);
    if (!mask)
        return CGLogMisuse(__func__, "nothing changes: the image is neither gray nor a mask");

    // The mask is resolved to pixels now: it stays where it was set, whatever happens to the CTM.
    state.clip.multiply(shape.pixels(state.clip.bounds(), context->height()), [&](Coverage& coverage) {
        if (auto pattern = makeImagePattern(*mask, rect, context))
            coverage.draw(shape, Paint(std::move(pattern)), context->height());
    });
}
