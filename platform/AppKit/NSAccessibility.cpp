#include <AppKit/NSAccessibility.h>

#include "Host.h"

#include <AppKit/NSControl.h>
#include <AppKit/NSWindow.h>

void NSAccessibilityPostNotification(NSObject* element, const NSAccessibilityNotificationName& notification)
{
    auto* const view = dynamic_cast<NSView*>(element);
    if (!view || !view->window())
        return;
    if (notification == NSAccessibilityValueChangedNotification)
        view->window()->accessibilityDidChange(*view, HostAccessibilityChange::Value);
    else if (notification == NSAccessibilityTitleChangedNotification)
        view->window()->accessibilityDidChange(*view, HostAccessibilityChange::Label);
}

void NSWindow::accessibilityDidChange(NSView& view, HostAccessibilityChange change)
{
    if (_host)
        _host->accessibilityDidChange(view, change);
}

// Views.

void NSView::setAccessibilityLabel(NSString label)
{
    _accessibilityLabel = std::move(label);
    NSAccessibilityPostNotification(this, NSAccessibilityTitleChangedNotification);
}

NSAccessibilityRole NSView::accessibilityRole() const
{
    return NSAccessibilityGroupRole;
}

RetainPtr<NSObject> NSView::accessibilityValue() const
{
    return nullptr;
}

NSString NSView::accessibilityValueDescription() const
{
    return nullptr;
}

bool NSView::isAccessibilityFocused() const
{
    return _window && _window->firstResponder() == this;
}

void NSView::setAccessibilityFocused(bool focused)
{
    if (_window && focused != isAccessibilityFocused())
        _window->makeFirstResponder(focused ? this : nullptr);
}

bool NSView::accessibilityPerformPress()
{
    return false;
}

// Controls.

NSAccessibilityRole NSControl::accessibilityRole() const
{
    return NSAccessibilityButtonRole;
}

bool NSControl::accessibilityPerformPress()
{
    if (!isEnabled())
        return false;
    performClick();
    return true;
}
