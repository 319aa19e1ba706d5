#pragma once

#include <AppKit/NSGeometry.h>
#include <AppKit/NSParagraphStyle.h>
#include <Foundation/NSAttributedString.h>
#include <Foundation/Selector.h>
#include <Foundation/WeakPtr.h>

class NSFont;
class NSView;

/// Whether a cell is on: one of the constants below.
using NSControlStateValue = NSInteger;

inline constexpr NSControlStateValue NSControlStateValueOff = 0; ///< not checked, not pressed in
inline constexpr NSControlStateValue NSControlStateValueOn = 1;  ///< checked, pressed in

/// What a control shows, and how it draws it: `NSControl::setCell` gives a control another look.
///
/// Derive from a control's own cell class, such as NSButtonCell, and override `drawWithFrame`:
///
///     class LampCell : public NSButtonCell {
///     public:
///         void drawWithFrame(NSRect frame, NSView*) override
///         {
///             const bool isLit = state() == NSControlStateValueOn;
///             CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
///             CGContextSetFillColorWithColor(
///                 context, (isLit ? NSColor::yellowColor() : NSColor::grayColor())->CGColor());
///             CGContextFillEllipseInRect(context, frame);
///         }
///     };
///     button->setCell(make<LampCell>());
///
/// A setter that changes what is drawn redraws the control view; the same value does nothing. Lengths are in
/// points. Main thread only.
///
/// Differs: a cell does not run an event loop of its own to follow the mouse, and is not archived: its
/// control handles the events.
class KORVID_EXPORT NSCell : public NSObject {
public:
    /// An enabled cell, off, without a value.
    NSCell();

    /// The view that shows the cell. Borrowed. Default null; null also once the view is destroyed.
    NSView* controlView() const;
    /// Held weakly. `NSControl::setCell` calls this. Redraws nothing.
    virtual void setControlView(NSView* view);

    // Drawing. The destination is `NSGraphicsContext::currentContext()`.

    /// Draws the whole cell in `frame`, in the coordinates of `view`: here, what is inside.
    virtual void drawWithFrame(NSRect frame, NSView* view);
    /// Draws what is inside a border. Does nothing here.
    virtual void drawInteriorWithFrame(NSRect frame, NSView* view);
    /// The least size that shows all of the cell. NSViewNoIntrinsicMetric, the default of both sides, stands
    /// for no preference.
    virtual NSSize cellSize() const;

    // State.

    /// Whether the user can operate the cell. Default true.
    bool isEnabled() const { return _isEnabled; }
    /// Also notifies assistive technology.
    virtual void setEnabled(bool enabled);
    /// Whether the cell is drawn as pressed. Default false.
    bool isHighlighted() const { return _isHighlighted; }
    /// Redraws the control view, unless the value is the same.
    virtual void setHighlighted(bool highlighted);
    /// Default NSControlStateValueOff.
    NSControlStateValue state() const { return _state; }
    /// Every number but NSControlStateValueOff counts as NSControlStateValueOn.
    virtual void setState(NSControlStateValue state);
    /// The other state. Here: on becomes off and off becomes on.
    virtual NSControlStateValue nextState() const;
    /// Sets the state to `nextState()`.
    void setNextState() { setState(nextState()); }

    // Target, action and tag. NSActionCell has them; here they are null, null and 0, which the setters do not
    // change.

    /// Null here; see NSActionCell.
    virtual RetainPtr<NSObject> target() const { return nullptr; }
    /// Does nothing here; see NSActionCell.
    virtual void setTarget(NSObject* /*target*/) { }
    /// Null here; see NSActionCell.
    virtual SEL action() const { return nullptr; }
    /// Does nothing here; see NSActionCell.
    virtual void setAction(SEL /*newAction*/) { }
    /// 0 here; see NSActionCell.
    virtual NSInteger tag() const { return 0; }
    /// Does nothing here; see NSActionCell.
    virtual void setTag(NSInteger /*tag*/) { }

    // The value. It can be set and read as any of the types, as that of an NSControl.

    /// Borrowed. Default null, which reads as 0 and as the empty string.
    virtual NSObject* objectValue() const { return _value.get(); }
    /// Retains the object. The setters below call this.
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
    /// An attributed string as it is. Of another value the string, with `font()` if there is one, and with a
    /// paragraph style of `alignment()`.
    virtual RetainPtr<NSAttributedString> attributedStringValue() const;
    /// Null counts as no value.
    void setAttributedStringValue(RetainPtr<NSAttributedString> value);

    // Text.

    /// The font of text without one of its own. Borrowed. Default null.
    NSFont* font() const { return _font.get(); }
    /// Retains the font.
    virtual void setFont(RetainPtr<NSFont> font);
    /// The alignment of text without one of its own. Default NSTextAlignmentNatural.
    NSTextAlignment alignment() const { return _alignment; }
    /// A value that is none of the five counts as NSTextAlignmentNatural.
    virtual void setAlignment(NSTextAlignment alignment);

protected:
    ~NSCell() override;

    /// Redraws the control view, if there is one, and lets it lay out again if the cell has another size.
    void contentsDidChange();

private:
    WeakPtr<NSView> _controlView;
    RetainPtr<NSObject> _value;
    RetainPtr<NSFont> _font;
    NSControlStateValue _state = NSControlStateValueOff;
    NSTextAlignment _alignment = NSTextAlignmentNatural;
    bool _isEnabled = true;
    bool _isHighlighted = false;
};

/// A cell with a target, an action and a tag. The control sends the action.
class KORVID_EXPORT NSActionCell : public NSCell {
public:
    /// The object that the control sends the action to when the user has operated it. Default null. Null also
    /// once it is destroyed: it is not retained.
    RetainPtr<NSObject> target() const override { return _target.lock(); }
    /// Held weakly. Redraws nothing.
    void setTarget(NSObject* target) override { _target = target; }
    /// The method that the target performs; its argument is the control. Default null: none.
    SEL action() const override { return _action; }
    /// Only stores.
    void setAction(SEL newAction) override { _action = newAction; }
    /// A number of the program's choice. Default 0.
    NSInteger tag() const override { return _tag; }
    /// Only stores.
    void setTag(NSInteger tag) override { _tag = tag; }

protected:
    ~NSActionCell() override;

private:
    WeakPtr<NSObject> _target;
    SEL _action = nullptr;
    NSInteger _tag = 0;
};
