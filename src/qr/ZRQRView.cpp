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

/// The number truncated toward zero and clamped to the integer's range; 0 for NaN.
NSInteger truncated(CGFloat number)
{
    using Limits = std::numeric_limits<NSInteger>;
    if (std::isnan(number))
        return 0;
    // No double equals the greatest integer: compare with the power of two above it.
    constexpr CGFloat kEnd = 0x1p63;
    if (number >= kEnd)
        return Limits::max();
    return number < -kEnd ? Limits::min() : static_cast<NSInteger>(number);
}

/// The largest square that fits, centred. Bounds that are square themselves keep their origin. Others count
/// as (0, 0, width, height): the symbol scrolls with what else is drawn at fixed coordinates.
CGRect squareIn(CGRect bounds)
{
    const auto [width, height] = bounds.size;
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
    // Compared before truncation: a fraction always differs from the stored whole number.
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
    // Set before and after saving the state: code that draws later in the same pass inherits the spaces.
    ZRSetSRGBColorSpaces(context);

    const NSRect bounds = this->bounds();
    const ZRSavedGState savedState(context);
    // Row 0 of the symbol is the top one: from here on y grows downward.
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
    // Each pass builds its own path; `_path` is for subclasses that need the symbol between passes.
    NSInteger dim = 0;
    const auto path = adopt(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRPathFromText(_string, &dim));
    // Without room for the symbol the rectangle is null; its infinite origin would break the transform.
    if (path && dim >= 1 && !CGRectIsNull(symbolRect)) {
        const CGFloat moduleSize = symbolRect.size.height / static_cast<CGFloat>(dim);
        CGContextTranslateCTM(context, symbolRect.origin.x, symbolRect.origin.y);
        CGContextScaleCTM(context, moduleSize, moduleSize);
        CGContextAddPath(context, path);
        CGContextDrawPath(context, kCGPathFill);
    }
}
