#include "PointerTracker.h"
#include "ViewPainter.h"

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSColorSpace.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <CoreGraphics/CGBitmapContext.h>

#include <cmath>

namespace {

/// An RGBA bitmap context of the size and with the transform of another.
RetainPtr<CGContext> makeRGBAContext(CGContextRef like)
{
    auto context =
        adopt(CGBitmapContextCreate(nullptr, CGBitmapContextGetWidth(like), CGBitmapContextGetHeight(like), 8,
            0, NSColorSpace::sRGBColorSpace()->CGColorSpace(), kCGImageAlphaPremultipliedLast));
    CGContextConcatCTM(context, CGContextGetCTM(like));
    return context;
}

/// Draws all that a bitmap context holds in another of the same size, pixel by pixel.
void drawPixels(CGContextRef pixels, CGContextRef target)
{
    const auto image = adopt(CGBitmapContextCreateImage(pixels));
    CGContextSaveGState(target);
    CGContextConcatCTM(target, CGAffineTransformInvert(CGContextGetCTM(target)));
    CGContextDrawImage(target,
        CGRectMake(0, 0, static_cast<CGFloat>(CGBitmapContextGetWidth(target)),
            static_cast<CGFloat>(CGBitmapContextGetHeight(target))),
        image);
    CGContextRestoreGState(target);
}

} // namespace

void NSView::drawRect(NSRect) { }

void NSView::setNeedsDisplay(bool needsDisplay)
{
    if (needsDisplay)
        setNeedsDisplayInRect(_bounds);
    _needsDisplay = needsDisplay;
}

void NSView::setNeedsDisplayInRect(NSRect rect)
{
    rect = NSIntersectionRect(CGRectStandardize(rect), _bounds);
    if (NSIsEmptyRect(rect))
        return;
    _needsDisplay = true;
    if (!_window)
        return;
    for (const NSView* view = this; view; view = view->_superview) {
        rect = NSIntersectionRect(rect, view->_bounds);
        if (view->_isHidden || NSIsEmptyRect(rect))
            return;
        rect = CGRectApplyAffineTransform(rect, view->superviewFromView());
    }
    _window->setNeedsDisplayInRect(rect);
}

/// Schedules a repaint of a place where this view is or was, and lets the pointer enter what is there now.
void NSView::setNeedsDisplayInSuperview(NSRect frame)
{
    if (!_window)
        return;
    _window->_pointer->viewsDidChange();
    if (_superview)
        _superview->setNeedsDisplayInRect(frame);
    else
        _window->setNeedsDisplayInRect(frame);
}

void NSView::displayIfNeeded()
{
    if (_window)
        _window->displayIfNeeded();
}

void NSView::displayRectIgnoringOpacity(NSRect rect, NSGraphicsContext* context)
{
    rect = CGRectStandardize(rect);
    const NSRect visible = NSIntersectionRect(rect, _bounds);
    if (!context || NSIsEmptyRect(visible))
        return;

    layoutSubtreeIfNeeded();
    const CGContextRef target = context->CGContext();
    if (CGBitmapContextGetAlphaInfo(target) != kCGImageAlphaPremultipliedLast) {
        // Without colours or alpha the pixels cannot hold a view's layer.
        const auto pixels = makeRGBAContext(target);
        displayRectIgnoringOpacity(
            rect, NSGraphicsContext::graphicsContextWithCGContext(pixels, false).get());
        return drawPixels(pixels, target);
    }

    const RetainPtr<NSView> keep = this;
    const CGAffineTransform userFromView = isFlipped()
        ? CGAffineTransformMake(1, 0, 0, -1, -NSMinX(rect), NSMaxY(rect))
        : CGAffineTransformMakeTranslation(-NSMinX(rect), -NSMinY(rect));
    SavedPixels::Memory layerMemory, backdropMemory;
    ViewPainter painter(target, layerMemory);
    const CGRect pixels = painter.pixelsAround(CGRectApplyAffineTransform(visible, userFromView));
    const SavedPixels backdrop(target, pixels, backdropMemory);
    painter.draw(*this, userFromView, pixels, [&] { backdrop.restore(); });
}

RetainPtr<NSBitmapImageRep> NSView::bitmapImageRepForCachingDisplayInRect(NSRect rect) const
{
    rect = CGRectStandardize(rect);
    const CGFloat scale = _window ? _window->backingScaleFactor() : 1;
    const CGFloat width = std::ceil(rect.size.width * scale);
    const CGFloat height = std::ceil(rect.size.height * scale);
    constexpr CGFloat longest = 1 << 26; // pixels of the largest bitmap
    if (!(width > 0 && height > 0 && width <= longest && height <= longest))
        return nullptr;
    return NSBitmapImageRep::initWithBitmapDataPlanes(nullptr, static_cast<NSInteger>(width),
        static_cast<NSInteger>(height), 8, 4, true, false, NSDeviceRGBColorSpace, 0, 0);
}

void NSView::cacheDisplayInRect(NSRect rect, NSBitmapImageRep* bitmap)
{
    rect = CGRectStandardize(rect);
    const auto context = NSGraphicsContext::graphicsContextWithBitmapImageRep(bitmap);
    if (!context || NSIsEmptyRect(rect))
        return;
    CGContextScaleCTM(context->CGContext(), static_cast<CGFloat>(bitmap->pixelsWide()) / rect.size.width,
        static_cast<CGFloat>(bitmap->pixelsHigh()) / rect.size.height);
    displayRectIgnoringOpacity(rect, context);
}
