#include "CoreGraphics/context/CGContextInternal.h"

#include "CoreGraphics/CGImageInternal.h"
#include "CoreGraphics/CGLog.h"
#include "CoreGraphics/cairo/CairoShape.h"
#include "CoreGraphics/raster/ImageSampler.h"

#include <array>

namespace {

/// Pixels. Beyond these cairo fails to draw an image, or draws it somewhere else.
constexpr std::size_t kLongestSide = 16384;
constexpr double kFarthestOffset = 16384;
/// Pixels of the image to one drawn pixel. cairo averages no more of them.
constexpr double kMostShrinking = 16;
/// Pixels. cairo does not draw images onto more than 32,759 of them at once.
constexpr int kLongestArea = 16384;
/// Pixels of the image by which cairo may be wrong: two steps of 255 between black and white.
constexpr double kTolerance = 1.0 / 128;

ImageFilter filterFor(const CGImage& image, CGInterpolationQuality quality)
{
    if (!image.shouldInterpolate || quality == kCGInterpolationNone)
        return ImageFilter::Nearest;
    return quality == kCGInterpolationLow ? ImageFilter::Bilinear : ImageFilter::Average;
}

cairo_filter_t cairoFilter(ImageFilter filter)
{
    static constexpr cairo_filter_t kFilters[] = {
        CAIRO_FILTER_NEAREST, CAIRO_FILTER_BILINEAR, CAIRO_FILTER_GOOD};
    return kFilters[std::size_t(filter)];
}

/// True when cairo draws the image in the right place everywhere in `area`: it rounds the transform to 16
/// binary places, so that errors grow with the distance from the origin.
bool isExactInCairo(const CGImage& drawable, const CGAffineTransform& imageFromPixel, const PixelRect& area)
{
    const CGAffineTransform& t = imageFromPixel;
    const auto error = [](double factor) { return std::abs(factor - std::round(factor * 65536) / 65536); };
    const double x = std::max(std::abs(area.left), std::abs(area.right));
    const double y = std::max(std::abs(area.top), std::abs(area.bottom));
    return std::max(drawable.width, drawable.height) <= kLongestSide
        && std::max(std::hypot(t.a, t.c), std::hypot(t.b, t.d)) <= kMostShrinking
        && std::max(std::abs(t.tx), std::abs(t.ty)) <= kFarthestOffset
        && std::max(error(t.a) * x + error(t.c) * y, error(t.b) * x + error(t.d) * y) <= kTolerance;
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

/// The image as cairo scales it.
CairoPtr<cairo_pattern_t> makeScaledPattern(
    const CGImage& drawable, const CGAffineTransform& imageFromBase, ImageFilter filter, CGContextRef context)
{
    CairoPtr<cairo_pattern_t> pattern(cairo_pattern_create_for_surface(surfaceOf(drawable, context)));
    const CGAffineTransform& t = imageFromBase;
    const cairo_matrix_t matrix{t.a, t.b, t.c, t.d, t.tx, t.ty};
    cairo_pattern_set_matrix(pattern.get(), &matrix);
    cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
    cairo_pattern_set_filter(pattern.get(), cairoFilter(filter));
    return pattern;
}

/// The image scaled by ImageSampler to the pixels of an area.
CairoPtr<cairo_pattern_t> makeSampledPattern(
    ImageSampler sampler, const CGImage& drawable, const PixelRect& area, CGContextRef context)
{
    const Scratch::Pixels pixels = context->sampledMemory.make(formatOf(drawable), area);
    unsigned char* bytes = pixels.data;
    for (int y = area.top; y < area.bottom; ++y, bytes += pixels.bytesPerRow)
        sampler.fill(area.left, y, area.width(), bytes);
    cairo_surface_mark_dirty(pixels.surface.get());
    return makePixelPattern(pixels.surface.get(), area, context->height());
}

/// The image stretched over a rectangle of user space, its first row along the edge of greatest y, for
/// painting pixels of `area`. Beyond its edges it continues in the colours of its border: the shape it is
/// painted into has the edges, not the image. Null when the image cannot be drawn there.
CairoPtr<cairo_pattern_t> makeImagePattern(
    const CGImage& image, CGRect rect, const PixelRect& area, CGContextRef context)
{
    const GraphicsState& state = context->state();
    const CGImage* drawable = image.drawable();
    if (!drawable) {
        CGLogMisuse("CGContext", "an image is not drawn: there is no memory");
        return nullptr;
    }
    const CGAffineTransform userFromImage{CGRectGetWidth(rect) / CGFloat(image.width), 0, 0,
        -CGRectGetHeight(rect) / CGFloat(image.height), CGRectGetMinX(rect), CGRectGetMaxY(rect)};
    const CGAffineTransform baseFromImage = CGAffineTransformConcat(userFromImage, state.baseFromUser);
    const auto imageFromBase = CGAffineTransformInverse(baseFromImage);
    if (!imageFromBase || !isInvertible(baseFromImage) || !isInvertible(*imageFromBase))
        return nullptr;

    const ImageFilter filter = filterFor(image, state.interpolation);
    const CGAffineTransform baseFromPixel{1, 0, 0, -1, 0, CGFloat(context->height())};
    const CGAffineTransform imageFromPixel = CGAffineTransformConcat(baseFromPixel, *imageFromBase);
    if (isExactInCairo(*drawable, imageFromPixel, area))
        return makeScaledPattern(*drawable, *imageFromBase, filter, context);
    return makeSampledPattern(ImageSampler(*drawable, imageFromPixel, filter), *drawable, area, context);
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

/// Splits pixels along the longer side.
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
    return std::max(area.width(), area.height()) <= kLongestArea;
}

/// Adds an image's alpha within a rectangle of user space.
void drawMask(CGContextRef context, CGRect rect, const CGImage& mask, Coverage& coverage)
{
    if (!isDrawnAtOnce(coverage.area())) {
        for (const PixelRect& half : halves(coverage.area())) {
            Scratch memory;
            Coverage part(memory, half);
            drawMask(context, rect, mask, part);
            coverage.copy(part.view());
        }
        return;
    }
    const Shape shape = context->rectShape(rect);
    if (auto pattern = makeImagePattern(mask, rect, coverage.area(), context))
        coverage.draw(shape, Paint(std::move(pattern)), context->height());
}

void drawImage(CGContextRef context, CGRect rect, CGImageRef image)
{
    GraphicsState& state = context->state();
    const Shape shape = context->rectShape(rect);
    const PixelRect area = shape.pixels(context->paintedPixels(), context->height());
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
    auto pattern = makeImagePattern(*image, rect, area, context);
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
        return state.clip.intersect(shape, context->height());
    const auto mask = makeMask(image);
    if (!mask)
        return CGLogMisuse(__func__, "nothing changes: the image is neither gray nor a mask");

    // The mask is resolved to pixels now: it stays where it was set, whatever happens to the CTM.
    state.clip.multiply(shape.pixels(state.clip.bounds(), context->height()),
        [&](Coverage& coverage) { drawMask(context, rect, *mask, coverage); });
}
