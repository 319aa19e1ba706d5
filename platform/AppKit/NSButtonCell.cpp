#include <AppKit/NSButtonCell.h>

#include "ButtonBezel.h"
#include "ControlValue.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSStringAttributes.h>
#include <AppKit/NSView.h>
#include <CoreText/CTLine.h>
#include <Foundation/NSNumber.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr CGFloat kFontSize = 13;
constexpr CGFloat kSideMargin = 14; ///< between a title and the ends of its bezel
constexpr CGFloat kEndMargin = 4.5; ///< above and below
constexpr CGFloat kPlainMargin = 2; ///< around a title without a bezel
constexpr CGFloat kInset = 4;       ///< at either end of a bezel, which a wide title leaves free
constexpr CGFloat kLeastBezel = 2;  ///< in points

struct Title {
    RetainPtr<const CTLine> line;
    CGFloat width;
    CGFloat ascent;
    CGFloat descent;
};

Title layOut(const NSString& title, RetainPtr<NSFont> font, NSColor* color)
{
    auto attributes = make<NSDictionary>(NSDictionary::Map{
        {NSFontAttributeName, std::move(font)},
        {NSForegroundColorAttributeName, color},
    });
    const auto string = make<NSAttributedString>(title, std::move(attributes));
    Title laidOut{adopt(CTLineCreateWithAttributedString(string)), 0, 0, 0};
    laidOut.width = CTLineGetTypographicBounds(laidOut.line, &laidOut.ascent, &laidOut.descent, nullptr);
    return laidOut;
}

/// The frame with its edges on the nearest pixel boundaries.
NSRect pixelAligned(NSRect frame, const NSView* view)
{
    if (!view)
        return frame;
    const NSRect pixels = view->convertRectToBacking(frame);
    const CGFloat minX = std::round(NSMinX(pixels));
    const CGFloat minY = std::round(NSMinY(pixels));
    return view->convertRectFromBacking(
        NSMakeRect(minX, minY, std::round(NSMaxX(pixels)) - minX, std::round(NSMaxY(pixels)) - minY));
}

/// While in scope, y is upward in the current context; `frame` stays where it is.
class UprightFrame {
public:
    explicit UprightFrame(NSRect frame)
        : _context(
            NSGraphicsContext::currentContext() ? NSGraphicsContext::currentContext()->CGContext() : nullptr)
    {
        CGContextSaveGState(_context);
        if (_context && NSGraphicsContext::currentContext()->isFlipped()) {
            CGContextTranslateCTM(_context, 0, 2 * NSMidY(frame));
            CGContextScaleCTM(_context, 1, -1);
        }
    }
    UprightFrame(const UprightFrame&) = delete;
    UprightFrame& operator=(const UprightFrame&) = delete;
    ~UprightFrame() { CGContextRestoreGState(_context); }

    /// Null outside of drawing.
    CGContextRef context() const { return _context; }

private:
    CGContextRef _context;
};

ButtonLook lookOf(const NSButtonCell& cell)
{
    return {
        .isOn = cell.state() == NSControlStateValueOn,
        .isPressed = cell.isHighlighted(),
        .isEnabled = cell.isEnabled(),
        .isDefault = cell.keyEquivalent() == "\r",
    };
}

NSString orEmpty(NSString string)
{
    return string ? std::move(string) : NSString("");
}

} // namespace

NSButtonCell::NSButtonCell()
    : NSButtonCell("")
{
}

NSButtonCell::NSButtonCell(NSString title)
    : _title(orEmpty(std::move(title)))
{
    NSActionCell::setFont(NSFont::systemFontOfSize(kFontSize));
}

NSButtonCell::~NSButtonCell() = default;

// Drawing.

void NSButtonCell::drawWithFrame(NSRect frame, NSView* view)
{
    if (_isBordered) {
        drawBezelWithFrame(frame, view);
        frame = NSInsetRect(frame, kInset, 0);
    }
    drawInteriorWithFrame(frame, view);
}

void NSButtonCell::drawBezelWithFrame(NSRect frame, NSView* view)
{
    frame = pixelAligned(frame, view);
    if (!(frame.size.width >= kLeastBezel && frame.size.height >= kLeastBezel))
        return;
    const UprightFrame upright(frame);
    drawButtonBezel(upright.context(), frame, lookOf(*this));
}

void NSButtonCell::drawInteriorWithFrame(NSRect frame, NSView* view)
{
    const NSString title = shownTitle();
    if (title.length() == 0)
        return;
    frame = pixelAligned(frame, view);
    const UprightFrame upright(frame);
    const CGContextRef context = upright.context();
    const Title laidOut = layOut(title, font(), buttonTitleColor(lookOf(*this)));
    CGContextClipToRect(context, frame);
    CGContextSetTextMatrix(context, CGAffineTransformIdentity);
    const CGFloat x = NSMinX(frame) + std::max<CGFloat>(frame.size.width - laidOut.width, 0) / 2;
    const CGFloat baseline = NSMidY(frame) - (laidOut.ascent - laidOut.descent) / 2;
    // On a pixel boundary, where horizontal stems are crisp.
    const NSRect aligned = pixelAligned(NSMakeRect(x, baseline, 0, 0), view);
    CGContextSetTextPosition(context, x, aligned.origin.y);
    CTLineDraw(laidOut.line, context);
}

NSSize NSButtonCell::cellSize() const
{
    NSSize size = NSZeroSize;
    for (const NSString& title : {_title, _buttonType == NSButtonTypeToggle ? _alternateTitle : _title}) {
        const Title laidOut = layOut(title, font(), NSColor::whiteColor());
        size.width = std::max(size.width, std::ceil(laidOut.width));
    }
    size.height = std::ceil(CTFontGetAscent(font()) + CTFontGetDescent(font()));
    size.width += 2 * (_isBordered ? kSideMargin : kPlainMargin);
    size.height += 2 * (_isBordered ? kEndMargin : kPlainMargin);
    return size;
}

// Properties.

NSString NSButtonCell::shownTitle() const
{
    const bool isAlternate =
        _buttonType == NSButtonTypeToggle && state() == NSControlStateValueOn && _alternateTitle.length() > 0;
    return isAlternate ? _alternateTitle : _title;
}

void NSButtonCell::setTitle(NSString title)
{
    title = orEmpty(std::move(title));
    if (title == _title)
        return;
    _title = std::move(title);
    contentsDidChange();
    NSAccessibilityPostNotification(controlView(), NSAccessibilityTitleChangedNotification);
}

void NSButtonCell::setAlternateTitle(NSString title)
{
    title = orEmpty(std::move(title));
    if (title == _alternateTitle)
        return;
    _alternateTitle = std::move(title);
    contentsDidChange();
}

void NSButtonCell::setButtonType(NSButtonType type)
{
    const bool isKnown = type == NSButtonTypePushOnPushOff || type == NSButtonTypeToggle;
    type = isKnown ? type : NSButtonTypeMomentaryPushIn;
    if (type == _buttonType)
        return;
    _buttonType = type;
    contentsDidChange();
}

void NSButtonCell::setBordered(bool bordered)
{
    if (bordered == _isBordered)
        return;
    _isBordered = bordered;
    contentsDidChange();
}

void NSButtonCell::setKeyEquivalent(NSString key)
{
    key = orEmpty(std::move(key));
    if (key == _keyEquivalent)
        return;
    _keyEquivalent = std::move(key);
    if (NSView* const view = controlView())
        view->setNeedsDisplay(true);
}

// State.

void NSButtonCell::setState(NSControlStateValue state)
{
    NSActionCell::setState(state);
    NSActionCell::setObjectValue(NSNumber::numberWithInteger(this->state()));
}

NSControlStateValue NSButtonCell::nextState() const
{
    return _buttonType == NSButtonTypeMomentaryPushIn ? state() : NSActionCell::nextState();
}

void NSButtonCell::setObjectValue(RetainPtr<NSObject> value)
{
    setState(integerOfValue(value) != 0 ? NSControlStateValueOn : NSControlStateValueOff);
}
