#pragma once

#include <Foundation/NSObject.h>
#include <Foundation/NSString.h>

/// The kind of a user-interface element: one of the constants below.
using NSAccessibilityRole = NSString;

/// A push button.
inline constexpr char NSAccessibilityButtonRole[] = "AXButton";
inline constexpr char NSAccessibilityCheckBoxRole[] = "AXCheckBox"; ///< also a switch; its value is 0 or 1
inline constexpr char NSAccessibilityColorWellRole[] =
    "AXColorWell"; ///< shows a colour and lets the user pick
/// An element that only groups others.
inline constexpr char NSAccessibilityGroupRole[] = "AXGroup";
/// Text to read; its value is the text.
inline constexpr char NSAccessibilityStaticTextRole[] = "AXStaticText";

/// A change that assistive technology is notified of: one of the constants below.
using NSAccessibilityNotificationName = NSString;

/// `accessibilityValue` or `accessibilityValueDescription` has changed.
inline constexpr char NSAccessibilityValueChangedNotification[] = "AXValueChanged";
/// `accessibilityLabel` has changed.
inline constexpr char NSAccessibilityTitleChangedNotification[] = "AXTitleChanged";

/// What assistive technology, a screen reader for example, sees of an element and can do with it.
///
/// Views have these methods. A control of your own overrides those that describe it, and reports changes:
///
///     class Lamp : public NSControl {
///     public:
///         NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityCheckBoxRole; }
///         RetainPtr<NSObject> accessibilityValue() const override
///         {
///             return NSNumber::numberWithBool(_isLit);
///         }
///         void setLit(bool lit)
///         {
///             _isLit = lit;
///             NSAccessibilityPostNotification(this, NSAccessibilityValueChangedNotification);
///         }
///     };
///
/// Nothing is called while no assistive technology is in use. Main thread only.
class KORVID_EXPORT NSAccessibility {
public:
    /// Whether assistive technology sees the element. If not, it sees the elements inside in its place.
    /// Default false for views, true for controls.
    virtual bool isAccessibilityElement() const = 0;

    /// What kind of element it is. Default NSAccessibilityGroupRole for views, NSAccessibilityButtonRole for
    /// controls.
    virtual NSAccessibilityRole accessibilityRole() const = 0;

    /// The name, in a word or two, that is spoken for the element. Default null: the tool tip.
    virtual NSString accessibilityLabel() const = 0;
    /// Also notifies assistive technology.
    virtual void setAccessibilityLabel(NSString label) = 0;

    /// The value. Of a check box an NSNumber, not 0 for checked. Default null: there is none.
    virtual RetainPtr<NSObject> accessibilityValue() const = 0;
    /// The value in words, where a number or string does not convey it. Default null.
    virtual NSString accessibilityValueDescription() const = 0;

    /// Whether the user can operate the element. Default true for views; that of `isEnabled` for controls.
    virtual bool isAccessibilityEnabled() const = 0;
    /// Whether the element is first responder.
    virtual bool isAccessibilityFocused() const = 0;
    /// True makes it first responder, if it accepts; false makes the window first responder if the element
    /// is.
    virtual void setAccessibilityFocused(bool focused) = 0;

    /// Operates a button or check box as a click does, and returns whether it could. Default: false for
    /// views; a control performs a click if it is enabled.
    virtual bool accessibilityPerformPress() = 0;

protected:
    ~NSAccessibility() = default;
};

/// Notifies assistive technology of a change of `element`. Does nothing for null, for an object other than a
/// view in a window, for one that is not an accessibility element, and for other names.
KORVID_EXPORT void NSAccessibilityPostNotification(
    NSObject* element, const NSAccessibilityNotificationName& notification);
