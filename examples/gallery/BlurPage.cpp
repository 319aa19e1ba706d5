// A picture, the page's own or the user's, sharp and blurred with boxes of three sizes.

#include "Page.h"

#include <CoreGraphics/CGBitmapContext.h>
#include <KorvidAppKit/ZRBoxBlur.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace {

constexpr CGFloat kGap = 16;
constexpr CGFloat kSquare = (kGalleryCardSide - kGap) / 2;
/// Pixels per point, for sharp pictures at scale 2 too.
constexpr CGFloat kScale = 2;
/// Sides of the boxes in pixels; a side of 1 leaves the picture unchanged.
constexpr int kBoxes[] = {1, 5, 15, 51};

RetainPtr<CGContext> makeContext(CGFloat width, CGFloat height)
{
    return adopt(
        CGBitmapContextCreate(nullptr, static_cast<std::size_t>(width), static_cast<std::size_t>(height), 8,
            0, ZRGraphics::sharedGraphics()->csSRGB(), kCGImageAlphaPremultipliedLast));
}

/// Shapes of many sizes; the larger boxes blur the smallest ones away.
RetainPtr<CGImage> makeShapes()
{
    const auto context = makeContext(kSquare * kScale, kSquare * kScale);
    CGContextRef shapes = context.get();
    CGContextScaleCTM(shapes, kScale, kScale);
    const auto setColor = [&](const char* name) {
        CGContextSetFillColorWithColor(shapes, paletteColor(name));
    };
    setColor("zel-button-bg");
    CGContextFillRect(shapes, CGRectMake(0, 0, kSquare, kSquare));
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

/// The image, scaled to fit into a square.
RetainPtr<CGImage> makeFitting(CGImageRef image)
{
    const auto width = static_cast<CGFloat>(CGImageGetWidth(image));
    const auto height = static_cast<CGFloat>(CGImageGetHeight(image));
    const CGFloat scale = kSquare * kScale / std::max(width, height);
    const CGRect rect =
        CGRectMake(0, 0, std::max(1.0, std::round(width * scale)), std::max(1.0, std::round(height * scale)));
    const auto context = makeContext(rect.size.width, rect.size.height);
    CGContextSetInterpolationQuality(context, kCGInterpolationHigh);
    CGContextDrawImage(context, rect, image);
    return adopt(CGBitmapContextCreateImage(context));
}

/// A picture, centred in a square with round corners.
class PictureView : public NSView {
public:
    PictureView(NSRect frame, CGImageRef sharp, int boxDim)
        : NSView(frame)
        , _image(adopt(ZRCreateBoxBlurredImage(sharp, boxDim)))
    {
        const std::string side = std::to_string(boxDim);
        setToolTip(
            NSString(boxDim == 1 ? "sharp" : "blurred by a box of " + side + " × " + side + " pixels"));
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        clipToGalleryCard(context, bounds());
        CGContextSetFillColorWithColor(context, galleryCGColor("zel-button-bg"));
        CGContextFillRect(context, bounds());
        const CGFloat width = static_cast<CGFloat>(CGImageGetWidth(_image)) / kScale;
        const CGFloat height = static_cast<CGFloat>(CGImageGetHeight(_image)) / kScale;
        // Pixel-aligned at both scales.
        const CGRect rect =
            CGRectMake(std::floor((kSquare - width) / 2), std::floor((kSquare - height) / 2), width, height);
        CGContextDrawImage(context, rect, _image);
    }

protected:
    ~PictureView() override = default;

private:
    RetainPtr<CGImage> _image;
};

RetainPtr<NSView> makeBlurPage(const GalleryOptions& options)
{
    const auto sharp = options.image ? makeFitting(options.image) : makeShapes();
    auto page = makeGalleryPage();
    constexpr CGFloat kStride = kSquare + kGap;
    constexpr NSPoint kOrigins[] = {{0, kStride}, {kStride, kStride}, {0, 0}, {kStride, 0}};
    for (std::size_t i = 0; i < std::size(kBoxes); ++i) {
        const NSRect frame =
            NSMakeRect(kGalleryMargin + kOrigins[i].x, kGalleryMargin + kOrigins[i].y, kSquare, kSquare);
        page->addSubview(make<PictureView>(frame, sharp, kBoxes[i]));
    }
    return page;
}

const GalleryPage page{"blur", 50, "Blur",
    "A picture, and the same blurred by boxes of three sizes: each pixel is the mean of the box around it. "
    "Blur a picture of your own with --image FILE.png.",
    makeBlurPage};

} // namespace
