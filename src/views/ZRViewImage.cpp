#include <KorvidAppKit/ZRViewImage.h>

#include <AppKit/NSAppearance.h>
#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSView.h>
#include <CoreGraphics/CGBitmapContext.h>

#include <cmath>

namespace {

/// The pixels that contain a side of that many points; 0 for a number that is none.
double pixelsAround(double length, double scale)
{
    constexpr double kRounding = 1e-6; // of the product: 0.1 x 30 is 3 pixels
    return length > 0 && scale > 0 ? std::ceil(length * scale - kRounding) : 0;
}

void draw(NSView* view, double scale, CGContextRef context)
{
    const NSRect bounds = view->bounds();
    const NSSize frame = view->frame().size;
    const auto height = double(CGBitmapContextGetHeight(context));
    CGContextTranslateCTM(context, 0, height - frame.height * scale);
    CGContextScaleCTM(
        context, scale * frame.width / bounds.size.width, scale * frame.height / bounds.size.height);
    view->displayRectIgnoringOpacity(
        bounds, NSGraphicsContext::graphicsContextWithCGContext(context, false).get());
}

} // namespace

CGImageRef ZRCreateViewImage(NSView* view, double scale, NSAppearance* appearance)
{
    constexpr double kLongestSide = 32767;
    if (!view)
        return nullptr;
    const double width = pixelsAround(view->frame().size.width, scale);
    const double height = pixelsAround(view->frame().size.height, scale);
    if (!(width >= 1 && width <= kLongestSide && height >= 1 && height <= kLongestSide))
        return nullptr;

    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    const auto context = adopt(CGBitmapContextCreate(
        nullptr, std::size_t(width), std::size_t(height), 8, 0, space, kCGImageAlphaPremultipliedLast));
    if (!context)
        return nullptr;
    if (!appearance)
        appearance = NSAppearance::currentDrawingAppearance();
    appearance->performAsCurrentDrawingAppearance([&] { draw(view, scale, context); });
    return CGBitmapContextCreateImage(context);
}
