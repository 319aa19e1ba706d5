#include <KorvidAppKit/ZRSwitchControl.h>

#include <AppKit/NSColor.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSStringAttributes.h>
#include <CoreGraphics/CGBitmapContext.h>
#include <CoreText/CTLine.h>
#include <Foundation/CFDate.h>
#include <Foundation/NSBundle.h>
#include <Foundation/NSLog.h>
#include <Foundation/NSNumber.h>
#include <Foundation/NSTimer.h>
#include <KorvidAppKit/ZRGraphics.h>

#include "graphics/ZRSRGBColorSpaces.h"
#include "graphics/ZRSavedGState.h"
#include "views/ZRFocusRing.h"
#include "views/ZRWholePixels.h"

#include <algorithm>
#include <cmath>

namespace {

const NSCodingClass<ZRSwitchControl> switchCoding("ZRSwitchControl");

constexpr double kInterval = 1.0 / 60;    ///< seconds between two steps of the animation
constexpr double kMaximumIntervals = 10;  ///< that a step makes up for after a stall
constexpr double kPositionsPerSecond = 5; ///< from one end to the other in 0.2 seconds
constexpr double kClickSlip = 4;          ///< points that the pointer may move in a click
constexpr double kDefaultFontSize = 11;
constexpr double kDisabledAlpha = 0.35;

/// Clears a word out of what is drawn, on a baseline below the middle and centred on `centre`.
void clearWord(
    CGContextRef context, const NSString& key, NSDictionary* attributes, NSPoint centre, double fontSize)
{
    const auto text =
        make<NSAttributedString>(NSBundle::mainBundle()->localizedStringForKey(key, "", nullptr), attributes);
    const auto line = adopt(CTLineCreateWithAttributedString(text));
    const double width = CTLineGetTypographicBounds(line, nullptr, nullptr, nullptr);

    const ZRSavedGState savedState(context);
    CGContextSetShouldSubpixelQuantizeFonts(context, false);
    CGContextSetShouldSmoothFonts(context, false);
    CGContextSetTextMatrix(context, CGAffineTransformIdentity);
    CGContextTranslateCTM(context, centre.x - width / 2, centre.y - fontSize * 0.36);
    CGContextSetBlendMode(context, kCGBlendModeClear);
    CTLineDraw(line, context);
}

} // namespace

ZRSwitchControl::ZRSwitchControl()
    : _focusRing(std::make_unique<ZRFocusRing>())
{
}

ZRSwitchControl::ZRSwitchControl(NSRect frame)
    : NSControl(frame)
    , _focusRing(std::make_unique<ZRFocusRing>())
{
}

ZRSwitchControl::ZRSwitchControl(NSCoder* coder)
    : NSControl(coder)
    , _focusRing(std::make_unique<ZRFocusRing>())
{
}

ZRSwitchControl::~ZRSwitchControl()
{
    if (_animTimer)
        _animTimer->invalidate();
}

double ZRSwitchControl::fontSize() const
{
    if (!(_viewHeightFontSizeCoefficient > 0))
        return kDefaultFontSize;
    return std::max(bounds().size.height * _viewHeightFontSizeCoefficient, _viewHeightFontSizeMinimum);
}

void ZRSwitchControl::drawRect(NSRect dirtyRect)
{
    const CGContextRef context = ZRGraphics::sharedContext();
    if (!context)
        return;
    const NSRect bounds = this->bounds();
    const NSSize pixels = convertRectToBacking(bounds).size;
    NSControl::drawRect(dirtyRect);
    const double size = fontSize();
    auto font = NSFont::boldSystemFontOfSize(size);
    if (!font) {
        NSLog("Font could not be loaded.");
        return;
    }
    if (!(pixels.width >= 1 && pixels.height >= 1))
        return;

    // New, and thereby transparent, at each pass: what the words clear never reaches what lies behind.
    const auto bitmap = adopt(CGBitmapContextCreate(nullptr, ZRWholePixels(pixels.width),
        ZRWholePixels(pixels.height), 8, ZRWholePixels(pixels.width * 4),
        ZRGraphics::sharedGraphics()->csSRGB(), kCGImageAlphaPremultipliedLast));
    if (!bitmap)
        return;
    ZRSetSRGBColorSpaces(bitmap);
    CGContextScaleCTM(bitmap, pixels.width / bounds.size.width, pixels.height / bounds.size.height);
    drawParts(bitmap, std::move(font), size);

    {
        const ZRSavedGState savedState(context);
        CGContextSetAlpha(context, isEnabled() ? 1 : kDisabledAlpha);
        const auto image = adopt(CGBitmapContextCreateImage(bitmap));
        CGContextDrawImage(context, bounds, image);
    }
    _focusRing->draw(context, *this, bounds, std::min(bounds.size.width, bounds.size.height) / 2);
}

/// Draws track, knob and words, in points.
void ZRSwitchControl::drawParts(CGContextRef context, RetainPtr<NSFont> font, double fontSize) const
{
    ZRGraphics* const graphics = ZRGraphics::sharedGraphics();
    const NSRect bounds = this->bounds();
    const auto [width, height] = bounds.size;

    const CGRect track = CGRectInset(bounds, 2, 2);
    const double trackRadius = std::min(track.size.width, track.size.height) / 2;
    const auto trackPath = adopt(CGPathCreateWithRoundedRect(track, trackRadius, trackRadius, nullptr));
    CGContextSetStrokeColorWithColor(context, graphics->CGColorFromHex("444444"));
    CGContextSetLineWidth(context, 2);
    CGContextAddPath(context, trackPath);
    CGContextStrokePath(context);

    const double knobWidth = std::round(width * 0.585);
    const CGRect knob = CGRectMake(
        bounds.origin.x + horizontalTravel() * _switchPosition, bounds.origin.y, knobWidth, height);
    const double knobRadius = std::min(knobWidth, height) / 2;
    const auto knobPath = adopt(CGPathCreateWithRoundedRect(knob, knobRadius, knobRadius, nullptr));
    CGContextSetFillColorWithColor(context, graphics->CGColorFromHex(isBlue() ? "00aaaa" : "aaaaaa"));
    CGContextAddPath(context, knobPath);
    CGContextFillPath(context);

    // The words are cleared out, in any opaque colour. They do not move with the knob, nor, unlike knob and
    // track, with the origin of the bounds.
    const auto attributes = make<NSDictionary>(NSDictionary::Map{
        {NSFontAttributeName, std::move(font)},
        {NSForegroundColorAttributeName, NSColor::whiteColor()},
        {NSKernAttributeName, NSNumber::numberWithInteger(1)},
    });
    clearWord(context, "OFF", attributes, {height * 0.6, height * 0.5}, fontSize);
    clearWord(context, "ON", attributes, {width - height * 0.6, height * 0.5}, fontSize);
}

void ZRSwitchControl::setOn(bool on, bool animated)
{
    const bool isChange = on != _on;
    _on = on;
    if (animated) {
        // Deliberately the eased position: a knob let go halfway starts with a small jump.
        _animSwitchPosition = switchPosition();
        if (!_animTimer) {
            _lastFire = -1;
            _animTimer = NSTimer::scheduledTimerWithTimeInterval(
                kInterval, this, selector<&ZRSwitchControl::_moveSwitch>, nullptr, true);
        }
    } else {
        // Deliberately leaves a running animation to its course.
        setSwitchPosition(on ? 1 : 0);
    }
    setNeedsDisplay(true);
    if (isChange)
        NSAccessibilityPostNotification(this, NSAccessibilityValueChangedNotification);
}

void ZRSwitchControl::_moveSwitch(NSTimer* timer)
{
    const double now = CFAbsoluteTimeGetCurrent();
    const double elapsed = _lastFire < 0 ? 0 : now - _lastFire;
    const double step = std::min(elapsed, kMaximumIntervals * timer->timeInterval());
    double position = _animSwitchPosition + step * (isOn() ? kPositionsPerSecond : -kPositionsPerSecond);
    if (isOn() ? position >= 1 : !(position > 0)) {
        _animTimer->invalidate();
        _animTimer = nullptr;
        position = isOn() ? 1 : 0;
    }
    _animSwitchPosition = position;
    setSwitchPosition(ZRGraphics::smoothstep(position));
    _lastFire = now;
}

void ZRSwitchControl::setSwitchPosition(double position)
{
    if (position == _switchPosition)
        return;
    _switchPosition = position;
    setNeedsDisplay(true);
}

void ZRSwitchControl::mouseDown(NSEvent* event)
{
    _focusRing->mouseDown(*this);
    _countsAsDrag = false;
    _clicked = convertPointFromView(event->locationInWindow(), nullptr);
    _switchPositionWhenClicked = switchPosition();
}

void ZRSwitchControl::mouseDragged(NSEvent* event)
{
    const double moved = convertPointFromView(event->locationInWindow(), nullptr).x - _clicked.x;
    if (std::fabs(moved) > kClickSlip)
        _countsAsDrag = true;
    const double position = moved / horizontalTravel() + _switchPositionWhenClicked;
    setSwitchPosition(position < 0 ? 0 : position > 1 ? 1 : position);
}

void ZRSwitchControl::mouseUp(NSEvent*)
{
    operate(_countsAsDrag ? switchPosition() >= 0.5 : !isOn());
}

/// Sets the state that the user has chosen, and sends the action.
void ZRSwitchControl::operate(bool on)
{
    setOn(on, true);
    const RetainPtr<NSObject> target = this->target();
    if (target && action() && !sendAction(action(), target))
        NSLog("Unable to send action");
}

// The keyboard.

void ZRSwitchControl::performClick(NSObject*)
{
    if (isEnabled())
        operate(!isOn());
}

void ZRSwitchControl::keyDown(NSEvent* event)
{
    constexpr NSEventModifierFlags kModifiers =
        NSEventModifierFlagControl | NSEventModifierFlagOption | NSEventModifierFlagCommand;
    const bool isSpace =
        event->charactersIgnoringModifiers() == " " && !(event->modifierFlags() & kModifiers);
    if (!isSpace || !isEnabled())
        return NSControl::keyDown(event);
    _focusRing->keyDown(*this);
    if (!event->isARepeat())
        performClick();
}

bool ZRSwitchControl::becomeFirstResponder()
{
    _focusRing->becomeFirstResponder(*this);
    return true;
}

bool ZRSwitchControl::resignFirstResponder()
{
    _focusRing->resignFirstResponder(*this);
    return true;
}

// Assistive technology.

NSAccessibilityRole ZRSwitchControl::accessibilityRole() const
{
    return NSAccessibilityCheckBoxRole;
}

RetainPtr<NSObject> ZRSwitchControl::accessibilityValue() const
{
    return NSNumber::numberWithBool(isOn());
}
