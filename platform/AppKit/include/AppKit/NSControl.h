#pragma once

#include <AppKit/NSCell.h>
#include <AppKit/NSView.h>
#include <Foundation/Selector.h>
#include <Foundation/WeakPtr.h>

/// A view that the user operates, and that then sends an action to another object, its target.
///
/// It holds what controls have in common: target and action, a value, a tag, and whether the control is
/// enabled and drawn as pressed. It handles no event; a derived class calls `sendAction(action(), target())`
/// when it has been operated. Main thread only.
///
///     control->setTarget(controller); // held weakly: retain it elsewhere
///     control->setAction(selector<&Controller::toggled>);
///
/// A control may have a cell, which then holds all of that in the control's place, and draws; see NSCell.
/// NSButton has one. A control without a cell draws itself in an override of `drawRect`.
///
/// Differs: a control has no cell unless its class or `setCell` gives it one, and there is one value without
/// a formatter.
class KORVID_EXPORT NSControl : public NSView {
public:
    /// A control with an empty frame.
    NSControl();
    /// A control at `frame`, in the coordinates of its future superview.
    explicit NSControl(NSRect frame);
    /// The control that `encodeWithCoder` wrote.
    explicit NSControl(NSCoder* coder);
    /// Writes what the view writes, and the tag, whether the control is enabled, and a value that is a number
    /// or a string. Target, action and cell are not written.
    void encodeWithCoder(NSCoder* coder) const override;

    /// Borrowed. Null for a control without one.
    NSCell* cell() const { return _cell.get(); }
    /// Retains the cell and becomes its control view. From now on the control has the cell's target, action,
    /// tag, value and states; those of the control itself stay unused until it has no cell. Redraws. A cell
    /// belongs to one control at a time.
    virtual void setCell(RetainPtr<NSCell> cell);

    /// The object that the action is sent to when the user has operated the control. Default null. Null also
    /// once it is destroyed: it is not retained.
    RetainPtr<NSObject> target() const { return _cell ? _cell->target() : _target.lock(); }
    /// Held weakly. Redraws nothing.
    void setTarget(NSObject* target);
    /// The method that the target performs; its argument is this control. Default null: none.
    SEL action() const { return _cell ? _cell->action() : _action; }
    /// Only stores.
    void setAction(SEL newAction);

    /// Sends `action` to `target` with this control as the argument, and returns whether the target has the
    /// method. A null target means the first one in the responder chain that can: see
    /// `NSApplication::sendAction`. A null action returns false. The control lives until the action returns,
    /// even if that removes it.
    virtual bool sendAction(SEL action, NSObject* target);
    /// Operates the control as a click would, for programs and assistive technology: here, sends the action.
    /// Does nothing while the control is disabled.
    virtual void performClick(NSObject* sender = nullptr);

    /// Whether the user can operate the control. Default true. Derived classes draw and handle events by it.
    bool isEnabled() const { return _cell ? _cell->isEnabled() : _isEnabled; }
    /// Redraws, unless the value is the same.
    void setEnabled(bool enabled);
    /// Whether the control is drawn as pressed. Default false.
    bool isHighlighted() const { return _cell ? _cell->isHighlighted() : _isHighlighted; }
    /// Redraws, unless the value is the same.
    void setHighlighted(bool highlighted);

    /// A number of the program's choice that distinguishes controls with the same target. Default 0.
    NSInteger tag() const { return _cell ? _cell->tag() : _tag; }
    /// Only stores.
    void setTag(NSInteger tag);

    // The value. It can be set and read as any of the types: a number read as a string is its text, a string
    // read as a number is the number that it begins with, else 0. Derived classes decide on its meaning.

    /// Borrowed. Default null, which reads as 0 and as the empty string.
    NSObject* objectValue() const { return _cell ? _cell->objectValue() : _value.get(); }
    /// Retains the object. Redraws, unless it is equal to the current one. The setters below call this.
    virtual void setObjectValue(RetainPtr<NSObject> value);

    /// Truncated toward zero, and clamped to the range.
    int intValue() const;
    /// Stores an NSNumber by `setObjectValue`.
    void setIntValue(int value);
    /// Truncated toward zero, and clamped to the range.
    NSInteger integerValue() const;
    /// Stores an NSNumber by `setObjectValue`.
    void setIntegerValue(NSInteger value);
    /// The value as a real number.
    double doubleValue() const;
    /// Stores an NSNumber by `setObjectValue`.
    void setDoubleValue(double value);
    /// Of an attributed string its string; of another object that is neither a number nor a string, the
    /// description.
    NSString stringValue() const;
    /// Null counts as no value.
    void setStringValue(const NSString& value);
    /// An attributed string as it is. Of another value the string, with the attributes that the cell gives
    /// it.
    RetainPtr<NSAttributedString> attributedStringValue() const;
    /// Copies a string that can change. Null counts as no value.
    void setAttributedStringValue(RetainPtr<NSAttributedString> value);

    // Font and alignment. The cell has them, for text without its own; without a cell they are null and
    // NSTextAlignmentNatural, which the setters do not change.

    /// The font of text without one of its own. Borrowed. Default null.
    NSFont* font() const { return _cell ? _cell->font() : nullptr; }
    /// Retains the font. Redraws and lays out, unless it is the same.
    void setFont(RetainPtr<NSFont> font);
    /// The alignment of text without one of its own. Default NSTextAlignmentNatural.
    NSTextAlignment alignment() const { return _cell ? _cell->alignment() : NSTextAlignmentNatural; }
    /// Redraws, unless the value is the same.
    void setAlignment(NSTextAlignment alignment);

    /// Draws the cell in the bounds. Does nothing without one.
    void drawRect(NSRect dirtyRect) override;
    /// The cell's `cellSize()`.
    NSSize intrinsicContentSize() const override;
    /// Resizes the frame to the intrinsic content size. A side for which there is none stays.
    void sizeToFit();

    bool isAccessibilityElement() const override { return true; }
    NSAccessibilityRole accessibilityRole() const override;
    bool isAccessibilityEnabled() const override { return isEnabled(); }
    bool accessibilityPerformPress() override;

protected:
    ~NSControl() override;

private:
    friend class NSCell;

    void enabledDidChange();

    RetainPtr<NSCell> _cell;
    WeakPtr<NSObject> _target;
    SEL _action = nullptr;
    RetainPtr<NSObject> _value;
    NSInteger _tag = 0;
    bool _isEnabled = true;
    bool _isHighlighted = false;
};
