#include <AppKit/NSButton.h>

#include "ButtonBezel.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSNumber.h>

namespace {

/// Whether the key was pressed with a modifier that makes it another key.
bool hasModifier(const NSEvent& event)
{
    constexpr NSEventModifierFlags kModifiers =
        NSEventModifierFlagControl | NSEventModifierFlagOption | NSEventModifierFlagCommand;
    return (event.modifierFlags() & kModifiers) != 0;
}

} // namespace

NSButton::NSButton()
    : NSButton(NSZeroRect)
{
}

NSButton::NSButton(NSRect frame)
    : NSControl(frame)
{
    NSControl::setCell(make<NSButtonCell>());
}

NSButton::~NSButton() = default;

RetainPtr<NSButton> NSButton::buttonWithTitle(NSString title, NSObject* target, SEL action)
{
    auto button = make<NSButton>();
    button->setTitle(std::move(title));
    button->setTarget(target);
    button->setAction(action);
    button->sizeToFit();
    return button;
}

// Properties of the cell.

NSButtonCell* NSButton::buttonCell() const
{
    return dynamic_cast<NSButtonCell*>(cell());
}

NSString NSButton::title() const
{
    const NSButtonCell* const cell = buttonCell();
    return cell ? cell->title() : NSString("");
}

void NSButton::setTitle(NSString title)
{
    if (NSButtonCell* const cell = buttonCell())
        cell->setTitle(std::move(title));
}

NSString NSButton::alternateTitle() const
{
    const NSButtonCell* const cell = buttonCell();
    return cell ? cell->alternateTitle() : NSString("");
}

void NSButton::setAlternateTitle(NSString title)
{
    if (NSButtonCell* const cell = buttonCell())
        cell->setAlternateTitle(std::move(title));
}

void NSButton::setButtonType(NSButtonType type)
{
    if (NSButtonCell* const cell = buttonCell())
        cell->setButtonType(type);
}

bool NSButton::isBordered() const
{
    const NSButtonCell* const cell = buttonCell();
    return cell && cell->isBordered();
}

void NSButton::setBordered(bool bordered)
{
    if (NSButtonCell* const cell = buttonCell())
        cell->setBordered(bordered);
}

NSString NSButton::keyEquivalent() const
{
    const NSButtonCell* const cell = buttonCell();
    return cell ? cell->keyEquivalent() : NSString("");
}

void NSButton::setKeyEquivalent(NSString key)
{
    if (NSButtonCell* const cell = buttonCell())
        cell->setKeyEquivalent(std::move(key));
}

NSControlStateValue NSButton::state() const
{
    return cell() ? cell()->state() : NSControlStateValueOff;
}

void NSButton::setState(NSControlStateValue state)
{
    if (cell())
        cell()->setState(state);
}

// Operation.

void NSButton::performClick(NSObject* sender)
{
    if (!isEnabled())
        return;
    const RetainPtr<NSButton> keep = this;
    if (cell())
        cell()->setNextState();
    NSControl::performClick(sender);
}

bool NSButton::isUnderPointer(const NSEvent& event) const
{
    return mouse(convertPointFromView(event.locationInWindow(), nullptr), visibleRect());
}

void NSButton::mouseDown(NSEvent* event)
{
    setShowsFocus(false);
    _isPressed = isEnabled();
    setHighlighted(_isPressed && isUnderPointer(*event));
}

void NSButton::mouseDragged(NSEvent* event)
{
    setHighlighted(_isPressed && isEnabled() && isUnderPointer(*event));
}

void NSButton::mouseUp(NSEvent* event)
{
    const bool isClick = std::exchange(_isPressed, false) && isUnderPointer(*event);
    // Before the action, which may open an alert and wait for it.
    setHighlighted(false);
    if (isClick)
        performClick();
}

void NSButton::keyDown(NSEvent* event)
{
    if (event->charactersIgnoringModifiers() != " " || hasModifier(*event) || !isEnabled())
        return NSControl::keyDown(event);
    setShowsFocus(true);
    if (!event->isARepeat())
        performClick();
}

bool NSButton::performKeyEquivalent(NSEvent* event)
{
    const NSString key = keyEquivalent();
    if (!event || key.length() == 0 || hasModifier(*event) || !isEnabled())
        return false;
    const NSString& pressed = event->charactersIgnoringModifiers();
    const bool isEnter = key == "\r" && pressed == "\x03";
    if (pressed != key && !isEnter)
        return false;
    if (!event->isARepeat())
        performClick();
    return true;
}

// The keyboard focus.

bool NSButton::becomeFirstResponder()
{
    setShowsFocus(true);
    return true;
}

bool NSButton::resignFirstResponder()
{
    setShowsFocus(false);
    return true;
}

void NSButton::setShowsFocus(bool showsFocus)
{
    if (showsFocus == _showsFocus)
        return;
    _showsFocus = showsFocus;
    setNeedsDisplay(true);
}

void NSButton::drawRect(NSRect dirtyRect)
{
    NSControl::drawRect(dirtyRect);
    if (_showsFocus && window() && window()->isKeyWindow() && window()->firstResponder() == this)
        drawButtonFocusRing(NSGraphicsContext::currentContext()->CGContext(), bounds());
}

// Assistive technology.

NSAccessibilityRole NSButton::accessibilityRole() const
{
    const NSButtonCell* const cell = buttonCell();
    const bool isMomentary = !cell || cell->buttonType() == NSButtonTypeMomentaryPushIn;
    return isMomentary ? NSAccessibilityButtonRole : NSAccessibilityCheckBoxRole;
}

NSString NSButton::accessibilityLabel() const
{
    const NSString label = NSControl::accessibilityLabel();
    const NSString title = this->title();
    return label || title.length() == 0 ? label : title;
}

RetainPtr<NSObject> NSButton::accessibilityValue() const
{
    if (accessibilityRole() != NSAccessibilityCheckBoxRole)
        return nullptr;
    return NSNumber::numberWithInteger(state());
}
