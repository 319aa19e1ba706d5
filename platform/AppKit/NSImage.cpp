#include <AppKit/NSImage.h>

#include "Compositing.h"
#include "CoreGraphics/FiniteGeometry.h"
#include "Host.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSColorSpace.h>
#include <AppKit/NSGraphicsContext.h>
#include <CoreGraphics/CGBitmapContext.h>

#include <algorithm>
#include <cmath>

namespace {

/// One point for each pixel.
NSSize sizeInPixels(CGImageRef image)
{
    return {static_cast<CGFloat>(CGImageGetWidth(image)), static_cast<CGFloat>(CGImageGetHeight(image))};
}

/// Pixels for each point on the screen; 1 without an application.
CGFloat screenScale()
{
    return NSApp ? Host::shared().backingScaleFactor() : 1;
}

std::size_t pixelCount(CGFloat length)
{
    constexpr CGFloat most = 1e6; // more than any bitmap has
    return static_cast<std::size_t>(std::clamp<CGFloat>(std::ceil(length), 1, most));
}

} // namespace

NSImage::NSImage(NSSize size)
    : _size(positiveOrZero(size))
{
}

NSImage::NSImage(RetainPtr<::CGImage> image, NSSize size)
    : _image(std::move(image))
    , _size(positiveOrZero(NSEqualSizes(size, NSZeroSize) ? sizeInPixels(_image) : size))
{
}

NSImage::~NSImage() = default;

void NSImage::setSize(NSSize size)
{
    _size = positiveOrZero(size);
}

RetainPtr<NSImage> NSImage::copy() const
{
    auto image = make<NSImage>(_size);
    image->_image = _image;
    return image;
}

CGImageRef NSImage::CGImageForProposedRect(NSRect*, NSGraphicsContext*) const
{
    return _image.get();
}

// Drawing the picture.

void NSImage::drawInRect(NSRect rect) const
{
    drawInRect(rect, NSZeroRect, NSCompositingOperationSourceOver, 1, true);
}

void NSImage::drawInRect(NSRect rect, NSRect fromRect, NSCompositingOperation operation, CGFloat fraction,
    bool respectFlipped) const
{
    const NSGraphicsContext* const current = NSGraphicsContext::currentContext();
    if (!current || !_image || NSIsEmptyRect(rect))
        return;
    const auto mode = blendModeOf(operation);
    if (!mode)
        return;

    const CGContextRef context = current->CGContext();
    CGContextSaveGState(context);
    CGContextSetBlendMode(context, *mode);
    if (fraction != 1)
        CGContextSetAlpha(context, fraction);
    if (respectFlipped && current->isFlipped()) {
        CGContextTranslateCTM(context, 0, 2 * NSMidY(rect));
        CGContextScaleCTM(context, 1, -1);
    }
    if (!NSEqualRects(fromRect, NSZeroRect)) {
        CGContextClipToRect(context, rect);
        const CGFloat scaleX = rect.size.width / fromRect.size.width;
        const CGFloat scaleY = rect.size.height / fromRect.size.height;
        rect = NSMakeRect(NSMinX(rect) - NSMinX(fromRect) * scaleX, NSMinY(rect) - NSMinY(fromRect) * scaleY,
            _size.width * scaleX, _size.height * scaleY);
    }
    CGContextDrawImage(context, rect, _image);
    CGContextRestoreGState(context);
}

// Drawing on the picture.

/// A context with the present pixels, whose user space is in points; null if there is none of that size.
RetainPtr<CGContext> NSImage::makeContext() const
{
    if (!(_size.width > 0 && _size.height > 0))
        return nullptr;
    const std::size_t width = _image ? CGImageGetWidth(_image) : pixelCount(_size.width * screenScale());
    const std::size_t height = _image ? CGImageGetHeight(_image) : pixelCount(_size.height * screenScale());
    auto context = adopt(CGBitmapContextCreate(nullptr, width, height, 8, 0,
        NSColorSpace::sRGBColorSpace()->CGColorSpace(), kCGImageAlphaPremultipliedLast));
    if (!context)
        return nullptr;
    CGContextScaleCTM(
        context, static_cast<CGFloat>(width) / _size.width, static_cast<CGFloat>(height) / _size.height);
    CGContextDrawImage(context, {CGPointZero, _size}, _image);
    return context;
}

void NSImage::lockFocus()
{
    NSGraphicsContext::saveGraphicsState();
    if (_lockCount++ == 0)
        _focus = makeContext();
    // What nothing can show is drawn on one pixel.
    const auto context = _focus
        ? _focus
        : adopt(CGBitmapContextCreate(nullptr, 1, 1, 8, 0, NSColorSpace::sRGBColorSpace()->CGColorSpace(),
            kCGImageAlphaPremultipliedLast));
    NSGraphicsContext::setCurrentContext(NSGraphicsContext::graphicsContextWithCGContext(context, false));
}

void NSImage::unlockFocus()
{
    if (_lockCount == 0)
        return;
    if (_focus)
        _image = adopt(CGBitmapContextCreateImage(_focus));
    if (--_lockCount == 0)
        _focus = nullptr;
    NSGraphicsContext::restoreGraphicsState();
}
