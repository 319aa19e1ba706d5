// A picture, the page's own or the user's, sharp and blurred with boxes of three sizes.

#include "Page.h"

#include <CoreGraphics/CGBitmapContext.h>
#include <KorvidAppKit/ZRBoxBlur.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace {

/// Pixels per point, for sharp pictures at scale 2 too.
constexpr CGFloat kPixelsPerPoint = 2;
/// Sides of the boxes in pixels; a side of 1 leaves the picture unchanged.
constexpr int kBoxes[] = {1, 5, 15, 51};

RetainPtr<CGContext> makeContext(CGFloat width, CGFloat height)
{
    return adopt(
        CGBitmapContextCreate(nullptr, static_cast<std::size_t>(width), static_cast<std::size_t>(height), 8,
            0, ZRGraphics::sharedGraphics()->csSRGB(), kCGImageAlphaPremultipliedLast));
}

/// Shapes of many sizes, in the middle of a picture that is `size` large in points; the larger boxes blur the
/// smallest ones away.
RetainPtr<CGImage> makeShapes(NSSize size)
{
    const auto context = makeContext(size.width * kPixelsPerPoint, size.height * kPixelsPerPoint);
    CGContextRef shapes = context.get();
    // The shapes are drawn in a square.
    constexpr CGFloat kSquare = 180;
    const CGFloat side = std::floor(std::min(size.width, size.height));
    CGContextScaleCTM(shapes, kPixelsPerPoint, kPixelsPerPoint);
    const auto setColor = [&](const char* name) {
        CGContextSetFillColorWithColor(shapes, paletteColor(name));
    };
    setColor("zel-button-bg");
    CGContextFillRect(shapes, {CGPointZero, size});
    CGContextTranslateCTM(shapes, std::floor((size.width - side) / 2), std::floor((size.height - side) / 2));
    CGContextScaleCTM(shapes, side / kSquare, side / kSquare);
    setColor("zel-blue-highlight");
    CGContextFillEllipseInRect(shapes, CGRectMake(14, 76, 90, 90));
    setColor("zel-orange-highlight");
    CGContextFillRect(shapes, CGRectMake(76, 58, 62, 62));
    setColor("zel-green-highlight");
    CGContextMoveToPoint(shapes, 120, 164);
    CGContextAddLineToPoint(shapes, 166, 164);
    CGContextAddLineToPoint(shapes, 166, 104);
    CGContextClosePath(shapes);
    CGContextFillPath(shapes);
    setColor("zel-menu-fg-lit");
    for (int i = 0; i < 6; ++i) // stripes, each half as wide as the one before
        CGContextFillRect(shapes, CGRectMake(14 + 12 * i, 14, 8 * std::exp2(-i), 46));
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 6; ++column) {
            const CGRect center = CGRectMake(99 + 12.5 * column, 20 + 11 * row, 0, 0);
            const CGFloat radius = 0.5 * (1 + column);
            CGContextFillEllipseInRect(shapes, CGRectInset(center, -radius, -radius));
        }
    }
    return adopt(CGBitmapContextCreateImage(shapes));
}

/// The image, scaled to fit into a size in points.
RetainPtr<CGImage> makeFitting(CGImageRef image, NSSize size)
{
    const auto width = static_cast<CGFloat>(CGImageGetWidth(image));
    const auto height = static_cast<CGFloat>(CGImageGetHeight(image));
    const CGFloat scale = kPixelsPerPoint * std::min(size.width / width, size.height / height);
    const CGRect rect =
        CGRectMake(0, 0, std::max(1.0, std::round(width * scale)), std::max(1.0, std::round(height * scale)));
    const auto context = makeContext(rect.size.width, rect.size.height);
    CGContextSetInterpolationQuality(context, kCGInterpolationHigh);
    CGContextDrawImage(context, rect, image);
    return adopt(CGBitmapContextCreateImage(context));
}

/// The sharp picture, in the size that was needed last.
class SharpPicture : public NSObject {
public:
    /// `image` is the user's, null for the page's own picture.
    explicit SharpPicture(RetainPtr<CGImage> image)
        : _image(std::move(image))
    {
    }

    CGImageRef forSize(NSSize size)
    {
        if (!_sharp || !NSEqualSizes(size, _size))
            _sharp = _image ? makeFitting(_image, size) : makeShapes(size);
        _size = size;
        return _sharp.get();
    }

protected:
    ~SharpPicture() override = default;

private:
    const RetainPtr<CGImage> _image;
    RetainPtr<CGImage> _sharp; ///< for `_size`
    NSSize _size{};
};

/// A card with the picture blurred, and a caption that says by which box.
class PictureView : public NSView {
public:
    PictureView(RetainPtr<SharpPicture> picture, int boxDim)
        : _picture(std::move(picture))
        , _boxDim(boxDim)
    {
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        const std::string side = std::to_string(_boxDim);
        drawCaption(context, bounds(), NSString(_boxDim == 1 ? "sharp" : side + " × " + side + " pixels"));

        const NSRect area = aboveCaption(bounds());
        if (NSIsEmptyRect(area))
            return;
        if (!_blurred || !NSEqualSizes(_size, area.size)) {
            _blurred = adopt(ZRCreateBoxBlurredImage(_picture->forSize(area.size), _boxDim));
            _size = area.size;
        }
        clipToGalleryCard(context, bounds());
        const CGFloat width = static_cast<CGFloat>(CGImageGetWidth(_blurred)) / kPixelsPerPoint;
        const CGFloat height = static_cast<CGFloat>(CGImageGetHeight(_blurred)) / kPixelsPerPoint;
        // Pixel-aligned at both scales.
        const CGRect rect = CGRectMake(std::floor((area.size.width - width) / 2),
            area.origin.y + std::floor((area.size.height - height) / 2), width, height);
        CGContextDrawImage(context, rect, _blurred);
    }

protected:
    ~PictureView() override = default;

private:
    const RetainPtr<SharpPicture> _picture;
    const int _boxDim;
    RetainPtr<CGImage> _blurred; ///< for `_size`
    NSSize _size{};
};

RetainPtr<NSView> makeBlurPage(const GalleryOptions& options)
{
    const auto picture = make<SharpPicture>(options.image);
    std::vector<RetainPtr<NSView>> cards;
    for (const int box : kBoxes)
        cards.emplace_back(make<PictureView>(picture, box));
    return makeGalleryPage(std::move(cards), galleryGrid(2, std::size(kBoxes)));
}

const GalleryPage blurPage{"blur", 50, "Blur",
    "A picture, and the same blurred by boxes of three sizes: each pixel is the mean of the box around it. "
    "Blur a picture of your own with --image FILE.png.",
    makeBlurPage};

} // namespace
