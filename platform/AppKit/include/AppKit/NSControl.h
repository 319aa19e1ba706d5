#pragma once

#include <AppKit/NSView.h>
#include <Foundation/Selector.h>
#include <Foundation/WeakPtr.h>

/// A view that the user operates, and that tells another object about it: the target, by an action.
///
/// The base of controls that draw and follow the mouse themselves. It holds what they have in common: target
/// and action, a value, a tag and whether the control is enabled. It draws nothing and handles no event; a
/// derived class calls `sendAction(action(), target())` when it has been operated. Main thread only.
///
///     control->setTarget(controller); // held weakly: retain it elsewhere
///     control->setAction(selector<&Controller::toggled>);
///
/// Differs: controls have no cells, and there is one value without a formatter.
class KORVID_EXPORT NSControl : public NSView {
public:
    /// A control with an empty frame.
    NSControl();
    explicit NSControl(NSRect frame);
    /// The control that `encodeWithCoder` wrote.
    explicit NSControl(NSCoder* coder);
    /// Writes what the view writes, and the tag, whether the control is enabled, and a value that is a number
    /// or a string. Target and action are not written.
    void encodeWithCoder(NSCoder* coder) const override;

    /// The object that is told when the user has operated the control. Default null. Null also once it is
    /// destroyed: it is not retained.
    RetainPtr<NSObject> target() const { return _target.lock(); }
    void setTarget(NSObject* target) { _target = target; }
    /// What the target is told to do; the argument is this control. Default null: nothing.
    SEL action() const { return _action; }
    void setAction(SEL newAction) { _action = newAction; }

    /// Tells `target` to perform `action` with this control as the argument, and returns whether it could.
    /// A null target means the first one in the responder chain that can: see `NSApplication::sendAction`. A
    /// null action returns false. The control lives until the action returns, even if that removes it.
    virtual bool sendAction(SEL action, NSObject* target);
    /// Operates the control as a click would, for programs and assistive technology: here, sends the action.
    /// Does nothing while the control is disabled.
    virtual void performClick(NSObject* sender = nullptr);

    /// Whether the user can operate the control. Default true. Derived classes draw and handle events by it.
    bool isEnabled() const { return _isEnabled; }
    /// Redraws, unless the value is the same.
    void setEnabled(bool enabled);

    /// A number of the program's choice that tells controls with one target apart. Default 0.
    NSInteger tag() const { return _tag; }
    void setTag(NSInteger tag) { _tag = tag; }

    // The value, which can be set and read as any of the types: a number read as a string is its text, a
    // string read as a number is the number that it begins with, else 0. Derived classes decide on its
    // meaning.

    /// Borrowed. Default null, which reads as 0 and as the empty string.
    NSObject* objectValue() const { return _value.get(); }
    /// Retains the object. Redraws, unless it is equal to the current one. The setters below call this.
    virtual void setObjectValue(RetainPtr<NSObject> value);

    /// Truncated toward zero, and clamped to the range.
    int intValue() const;
    void setIntValue(int value);
    NSInteger integerValue() const;
    void setIntegerValue(NSInteger value);
    double doubleValue() const;
    void setDoubleValue(double value);
    /// Of an object that is neither a number nor a string, the description.
    NSString stringValue() const;
    /// Null counts as no value.
    void setStringValue(const NSString& value);

    bool isAccessibilityElement() const override { return true; }
    NSAccessibilityRole accessibilityRole() const override;
    bool isAccessibilityEnabled() const override { return _isEnabled; }
    bool accessibilityPerformPress() override;

protected:
    ~NSControl() override;

private:
    WeakPtr<NSObject> _target;
    SEL _action = nullptr;
    RetainPtr<NSObject> _value;
    NSInteger _tag = 0;
    bool _isEnabled = true;
};
