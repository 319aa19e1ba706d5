#include <KorvidAppKit/ZRQRView.h>

#include <AppKit/NSColor.h>
#include <AppKit/NSGraphicsContext.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRQRCodeGenerator.h>

#include "graphics/ZRSRGBColorSpaces.h"
#include "graphics/ZRSavedGState.h"

#include <cmath>
#include <limits>

namespace {

const NSCodingClass<ZRQRView> qrViewCoding("ZRQRView");

/// The whole part of a number, at most what the integer holds; 0 for NaN.
NSInteger truncated(CGFloat number)
{
    using Limits = std::numeric_limits<NSInteger>;
    if (std::isnan(number))
        return 0;
    // The greatest integer is no double: compare with the power of two above it.
    constexpr CGFloat kEnd = 0x1p63;
    if (number >= kEnd)
        return Limits::max();
    return number < -kEnd ? Limits::min() : static_cast<NSInteger>(number);
}

/// As large a square as fits into the middle of the bounds.
CGRect squareIn(CGRect bounds)
{
    const auto [width, height] = bounds.size;
    // Only bounds that are square themselves keep their origin. So it has been from the start, and drawing
    // code with moved bounds counts on it.
    if (width > height)
        return CGRectMake((width - height) * 0.5, 0, height, height);
    if (height > width)
        return CGRectMake(0, (height - width) * 0.5, width, width);
    return bounds;
}

} // namespace

ZRQRView::ZRQRView() = default;

ZRQRView::ZRQRView(NSRect frame)
    : NSView(frame)
{
}

ZRQRView::ZRQRView(NSCoder* coder)
    : NSView(coder)
{
}

ZRQRView::~ZRQRView() = default;

void ZRQRView::_rebuild()
{
    _path = nullptr;
    _dim = 0;
    if (_string)
        _path = adopt(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRPathFromText(_string, &_dim));
}

void ZRQRView::setString(NSString string)
{
    if (string == _string)
        return;
    _string = std::move(string);
    _rebuild();
    setNeedsDisplay(true);
}

void ZRQRView::setInset(CGFloat inset)
{
    // The stored whole number is compared with the new one as it comes: a fraction always differs.
    if (static_cast<CGFloat>(_inset) == inset)
        return;
    _inset = truncated(inset);
    setNeedsDisplay(true);
}

RetainPtr<NSColor> ZRQRView::bgColor() const
{
    const std::lock_guard guard(_colorMutex);
    return _bgColor;
}

void ZRQRView::setBgColor(RetainPtr<NSColor> color)
{
    // Colours are immutable, so retaining one is as good as a copy.
    const std::lock_guard guard(_colorMutex);
    std::swap(_bgColor, color); // the old colour is released with the parameter, after the lock
}

RetainPtr<NSColor> ZRQRView::fgColor() const
{
    const std::lock_guard guard(_colorMutex);
    return _fgColor;
}

void ZRQRView::setFgColor(RetainPtr<NSColor> color)
{
    const std::lock_guard guard(_colorMutex);
    std::swap(_fgColor, color);
}

void ZRQRView::drawRect(NSRect)
{
    const CGContextRef context = ZRGraphics::sharedContext();
    if (!context)
        return;
    // Set on both sides of the saved state: what draws after this view in the same pass finds them too.
    ZRSetSRGBColorSpaces(context);

    const NSRect bounds = this->bounds();
    const ZRSavedGState savedState(context);
    // Row 0 of the symbol is on top: y runs down from here on.
    CGContextTranslateCTM(context, 0, bounds.size.height);
    CGContextScaleCTM(context, 1, -1);

    const CGRect square = squareIn(bounds);
    const CGRect symbolRect = CGRectInset(square, inset(), inset());

    const RetainPtr<NSColor> ownBackground = bgColor(), ownForeground = fgColor();
    const NSColor* background = ownBackground ? ownBackground.get() : NSColor::whiteColor();
    const NSColor* foreground = ownForeground ? ownForeground.get() : NSColor::blackColor();
    ZRSetSRGBColorSpaces(context);

    CGContextSetFillColorWithColor(context, background->CGColor());
    CGContextSetBlendMode(context, kCGBlendModeClear);
    CGContextFillRect(context, bounds);
    CGContextSetBlendMode(context, kCGBlendModeCopy);
    CGContextFillRect(context, square);

    CGContextSetFillColorWithColor(context, foreground->CGColor());
    // Each pass draws a path of its own; the kept one is for whoever asks about the symbol between passes.
    NSInteger dim = 0;
    const auto path = adopt(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRPathFromText(_string, &dim));
    // No room for the symbol is the null rectangle, whose origin no transform survives.
    if (path && dim >= 1 && !CGRectIsNull(symbolRect)) {
        const CGFloat moduleSize = symbolRect.size.height / static_cast<CGFloat>(dim);
        CGContextTranslateCTM(context, symbolRect.origin.x, symbolRect.origin.y);
        CGContextScaleCTM(context, moduleSize, moduleSize);
        CGContextAddPath(context, path);
        CGContextDrawPath(context, kCGPathFill);
    }
}
