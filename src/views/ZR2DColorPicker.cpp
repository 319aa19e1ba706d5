#include <KorvidAppKit/ZR2DColorPicker.h>

#include <AppKit/NSColor.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <CoreGraphics/CGBitmapContext.h>
#include <Foundation/NSBundle.h>
#include <Foundation/NSFormat.h>
#include <Foundation/NSLog.h>
#include <Foundation/NSUserDefaults.h>
#include <KorvidAppKit/ZRGraphics.h>

#include "graphics/ZRSRGBColorSpaces.h"
#include "graphics/ZRSavedGState.h"
#include "views/ZRColorField.h"
#include "views/ZRFocusRing.h"
#include "views/ZRWholePixels.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

const NSCodingClass<ZR2DColorPicker> pickerCoding("ZR2DColorPicker");

constexpr ZR2DColorPickerAxes kHSBBit = 0x10;
constexpr ZR2DColorPickerAxes kRGBBit = 0x20;
constexpr ZR2DColorPickerAxes kStoredBits = (1U << 17) - 1;

void logFailure()
{
    NSLog("Failure in ZR2DColorPicker");
}

RetainPtr<NSColor> hsbColor(double hue, double saturation, double brightness)
{
    return NSColor::colorWithDeviceHue(hue, saturation, brightness, 1);
}

RetainPtr<NSColor> rgbColor(double red, double green, double blue)
{
    return NSColor::colorWithDeviceRed(red, green, blue, 1);
}

/// Where `position` lies in a side of the field: 0 at its start, 1 at its end and beyond.
double componentAlong(CGFloat position, CGFloat start, CGFloat length)
{
    return ZRClampedToUnit((position - start) / length);
}

/// A component in whole hundredths, 0 to 100. One that is not finite is 0.
int percent(double component)
{
    return std::isfinite(component) ? int(std::round(std::clamp(component, 0.0, 1.0) * 100)) : 0;
}

/// The component a number of hundredths further, from the nearest whole hundredth and within the field.
double stepped(double component, int hundredths)
{
    return hundredths == 0 ? std::clamp(std::isfinite(component) ? component : 0, 0.0, 1.0)
                           : std::clamp(percent(component) + hundredths, 0, 100) / 100.0;
}

/// How far a key moves the knob, in hundredths of the field.
struct KeyStep {
    int x = 0;
    int y = 0;
};

/// Nothing for keys that do not move it.
std::optional<KeyStep> stepFor(const NSEvent& event)
{
    constexpr NSEventModifierFlags kOtherModifiers =
        NSEventModifierFlagControl | NSEventModifierFlagOption | NSEventModifierFlagCommand;
    const std::u16string_view key = event.charactersIgnoringModifiers().view();
    if (key.size() != 1 || (event.modifierFlags() & kOtherModifiers))
        return std::nullopt;
    const int step = event.modifierFlags() & NSEventModifierFlagShift ? 10 : 1;
    switch (key.front()) {
    case NSLeftArrowFunctionKey:
        return KeyStep{-step, 0};
    case NSRightArrowFunctionKey:
        return KeyStep{step, 0};
    case NSUpArrowFunctionKey:
        return KeyStep{0, step};
    case NSDownArrowFunctionKey:
        return KeyStep{0, -step};
    default:
        return std::nullopt;
    }
}

NSString localized(const NSString& key)
{
    return NSBundle::mainBundle()->localizedStringForKey(key, "", nullptr);
}

} // namespace

ZR2DColorPicker::ZR2DColorPicker()
    : _focusRing(std::make_unique<ZRFocusRing>())
{
    _performInit();
}

ZR2DColorPicker::ZR2DColorPicker(NSRect frame)
    : NSView(frame)
    , _focusRing(std::make_unique<ZRFocusRing>())
{
    _performInit();
}

ZR2DColorPicker::ZR2DColorPicker(NSCoder* coder)
    : NSView(coder)
    , _focusRing(std::make_unique<ZRFocusRing>())
{
    _performInit();
}

ZR2DColorPicker::~ZR2DColorPicker() = default;

void ZR2DColorPicker::_invalidateImg()
{
    _pickerImg = nullptr;
}

void ZR2DColorPicker::_performInit()
{
    _pickerSize = 8;
    _axes = kZR2DColorPickerAxesHueSaturation;
    _thirdComponent = 0.5;
    _comps = {0.5, 0.5};
}

NSRect ZR2DColorPicker::_pickerBds() const
{
    const CGFloat margin = _pickerSize * 0.5 + 2; // half the knob and two points
    return CGRectIntegral(CGRectInset(bounds(), margin, margin));
}

void ZR2DColorPicker::drawRect(NSRect)
{
    const CGContextRef context = ZRGraphics::sharedContext();
    if (!context)
        return logFailure();
    // Before the state is saved: sRGB stays set for what is drawn next in the same pass.
    ZRSetSRGBColorSpaces(context);

    const ZRSavedGState savedState(context);
    const NSRect field = _pickerBds();
    if (!ensureFieldImage(field))
        return logFailure();
    CGContextDrawImage(context, field, _pickerImg);
    {
        const ZRSavedGState savedFrameState(context);
        const CGColorRef black = ZRGraphics::sharedGraphics()->CGColorFromHex("000000ff");
        CGContextSetLineWidth(context, 1);
        CGContextSetStrokeColorWithColor(context, black);
        CGContextSetFillColorWithColor(context, black);
        CGContextStrokeRect(context, CGRectInset(field, -0.5, -0.5));
    }
    constexpr CGFloat kRingRadius = 3;
    _focusRing->draw(context, *this, bounds(), kRingRadius);
    drawKnob(context, field);
}

/// Builds the field's image unless it is cached. False if there cannot be one.
bool ZR2DColorPicker::ensureFieldImage(NSRect field)
{
    if (_pickerImg)
        return true;
    const std::size_t width = ZRWholePixels(field.size.width);
    const std::size_t height = ZRWholePixels(field.size.height);
    const auto bitmap = adopt(CGBitmapContextCreate(nullptr, width, height, 8, 4 * width,
        ZRGraphics::sharedGraphics()->csSRGB(), kCGImageAlphaPremultipliedLast));
    if (!bitmap)
        return false;
    ZRFillColorField(
        static_cast<unsigned char*>(CGBitmapContextGetData(bitmap)), width, height, _axes, _thirdComponent);
    _pickerImg = adopt(CGBitmapContextCreateImage(bitmap));
    return _pickerImg != nullptr;
}

void ZR2DColorPicker::drawKnob(CGContextRef context, NSRect field) const
{
    ZRGraphics* const graphics = ZRGraphics::sharedGraphics();
    const CGColorRef shadow = graphics->CGColorFromHex("00000099");
    const ZRSavedGState savedState(context);
    CGContextSetLineWidth(context, 2);
    CGFloat fill[4] = {};
    color()->colorUsingColorSpace(NSColorSpace::sRGBColorSpace())->getComponents(fill);
    CGContextSetFillColor(context, fill);

    const NSPoint center = {
        field.origin.x + _comps.compX * field.size.width, field.origin.y + _comps.compY * field.size.height};
    const auto knob = adopt(CGPathCreateMutable());
    CGPathAddEllipseInRect(knob, nullptr,
        CGRectMake(center.x - _pickerSize * 0.5, center.y - _pickerSize * 0.5, _pickerSize, _pickerSize));
    {
        const ZRSavedGState savedRingState(context);
        CGContextTranslateCTM(context, 0, -1);
        CGContextAddPath(context, knob);
        CGContextSetStrokeColorWithColor(context, shadow);
        CGContextDrawPath(context, kCGPathStroke);
    }
    const ZRSavedGState savedBodyState(context);
    CGContextAddPath(context, knob);
    CGContextSetShadowWithColor(context, CGSizeZero, 3, shadow);
    CGContextSetStrokeColorWithColor(context, graphics->CGColorFromHex("ffffffff"));
    CGContextDrawPath(context, kCGPathFillStroke);
}

RetainPtr<NSColor> ZR2DColorPicker::colorForComps(ZR2Components comps) const
{
    const auto [x, y] = comps;
    switch (_axes) {
    case kZR2DColorPickerAxesHueSaturation:
        return hsbColor(x, y, _thirdComponent);
    case kZR2DColorPickerAxesHueBrightness:
        return hsbColor(x, _thirdComponent, y);
    case kZR2DColorPickerAxesSaturationBrightness:
        return hsbColor(_thirdComponent, x, y);
    case kZR2DColorPickerAxesRedGreen:
        return rgbColor(x, y, _thirdComponent);
    case kZR2DColorPickerAxesRedBlue:
        return rgbColor(x, _thirdComponent, y);
    case kZR2DColorPickerAxesGreenBlue:
        return rgbColor(_thirdComponent, x, y);
    default:
        if ((_axes & kHSBBit) != 0)
            return hsbColor(0, 0, 0);
        if ((_axes & kRGBBit) != 0)
            return rgbColor(0, 0, 0);
        return NSColor::whiteColor();
    }
}

RetainPtr<NSColor> ZR2DColorPicker::color() const
{
    return colorForComps(_comps);
}

void ZR2DColorPicker::setFrame(NSRect frame)
{
    _invalidateImg();
    NSView::setFrame(frame);
}

void ZR2DColorPicker::setFrameSize(NSSize size)
{
    _invalidateImg();
    NSView::setFrameSize(size);
}

void ZR2DColorPicker::setAxes(ZR2DColorPickerAxes axes)
{
    const ZR2DColorPickerAxes old = _axes;
    _axes = axes & kStoredBits;
    _invalidateImg();
    setNeedsDisplay(true);
    if (old != _axes)
        NSAccessibilityPostNotification(this, NSAccessibilityValueChangedNotification);
}

void ZR2DColorPicker::setThirdComponent(double component)
{
    _thirdComponent = component;
    _invalidateImg();
    setNeedsDisplay(true);
}

void ZR2DColorPicker::setComps(ZR2Components comps)
{
    const bool isChange = comps != _comps;
    _comps = comps;
    setNeedsDisplay(true);
    if (isChange)
        NSAccessibilityPostNotification(this, NSAccessibilityValueChangedNotification);
}

void ZR2DColorPicker::setPickerSize(double size)
{
    _pickerSize = size;
    _invalidateImg();
    setNeedsDisplay(true);
}

void ZR2DColorPicker::setComponentsChangedCB(std::function<void(ZR2Components)> callback)
{
    _componentsChangedCB = std::move(callback);
}

void ZR2DColorPicker::_processMouse(NSEvent* event)
{
    // The location is taken as one in the content view: intended, though it is the window's, which differs in
    // a content view that is flipped or has moved bounds.
    const NSWindow* const window = this->window();
    const NSPoint point =
        convertPointFromView(event->locationInWindow(), window ? window->contentView() : nullptr);
    const NSRect field = _pickerBds();
    pickComps({componentAlong(point.x, field.origin.x, field.size.width),
        componentAlong(point.y, field.origin.y, field.size.height)});
}

/// Stores what the user has picked, writes it to the settings if it should, and calls back.
void ZR2DColorPicker::pickComps(ZR2Components comps)
{
    setComps(comps);
    if (_legacy_setSUD) {
        NSUserDefaults* const defaults = NSUserDefaults::standardUserDefaults();
        defaults->setDouble(comps.compX, "viewHue");
        defaults->setDouble(comps.compY, "viewSat");
    }
    // A copy: the callback may replace itself, or release the picker.
    if (const auto callback = _componentsChangedCB)
        callback(_comps);
}

void ZR2DColorPicker::mouseDown(NSEvent* event)
{
    _focusRing->mouseDown(*this);
    _processMouse(event);
}

void ZR2DColorPicker::mouseDragged(NSEvent* event)
{
    _processMouse(event);
}

void ZR2DColorPicker::mouseUp(NSEvent*) { }

// The keyboard.

void ZR2DColorPicker::keyDown(NSEvent* event)
{
    const std::optional<KeyStep> step = stepFor(*event);
    if (!step)
        return NSView::keyDown(event);
    _focusRing->keyDown(*this);
    pickComps({stepped(_comps.compX, step->x), stepped(_comps.compY, step->y)});
}

bool ZR2DColorPicker::becomeFirstResponder()
{
    _focusRing->becomeFirstResponder(*this);
    return true;
}

bool ZR2DColorPicker::resignFirstResponder()
{
    _focusRing->resignFirstResponder(*this);
    return true;
}

// Assistive technology.

NSAccessibilityRole ZR2DColorPicker::accessibilityRole() const
{
    return NSAccessibilityColorWellRole;
}

NSString ZR2DColorPicker::accessibilityLabel() const
{
    if (NSString label = NSView::accessibilityLabel())
        return label;
    return toolTip() ? toolTip() : localized("Color");
}

NSString ZR2DColorPicker::accessibilityValueDescription() const
{
    const auto describe = [this](const char* x, const char* y) {
        return NSString::stringWithFormat(
            "%@ %d %%, %@ %d %%", localized(x), percent(_comps.compX), localized(y), percent(_comps.compY));
    };
    switch (_axes) {
    case kZR2DColorPickerAxesHueSaturation:
        return describe("hue", "saturation");
    case kZR2DColorPickerAxesHueBrightness:
        return describe("hue", "brightness");
    case kZR2DColorPickerAxesSaturationBrightness:
        return describe("saturation", "brightness");
    case kZR2DColorPickerAxesRedGreen:
        return describe("red", "green");
    case kZR2DColorPickerAxesRedBlue:
        return describe("red", "blue");
    case kZR2DColorPickerAxesGreenBlue:
        return describe("green", "blue");
    default:
        return nullptr;
    }
}
