#pragma once

#include <AppKit/NSButtonCell.h>
#include <AppKit/NSControl.h>

/// A button that the user clicks: to do something, or to switch something on and off.
///
///     auto apply = NSButton::buttonWithTitle("Apply", controller, selector<&Controller::apply>);
///     apply->setKeyEquivalent("\r"); // Return clicks it, too
///     apply->setFrameOrigin(NSMakePoint(20, 20));
///
/// A press highlights the button for as long as the pointer is over it. A release over the button sets the
/// next state and sends the action; anywhere else it does nothing. An enabled button takes the keyboard
/// focus, from a press too, and the space bar clicks it. While it has the focus in the key window, a ring
/// along its edge shows that, unless it was last used with the mouse. A disabled button is dimmed and ignores
/// all of these.
///
/// Assistive technology sees a button or, unless it is momentary, a check box, with the title as its name.
///
/// Its cell, an NSButtonCell, draws; another one gives another look. With a cell of another class there is no
/// title, type or key equivalent. Main thread only.
///
/// Differs: a button is not archived.
class KORVID_EXPORT NSButton : public NSControl {
public:
    /// A momentary button with an empty frame.
    NSButton();
    /// A momentary button at `frame`, in the coordinates of its future superview.
    explicit NSButton(NSRect frame);
    /// A momentary button in its natural size.
    static RetainPtr<NSButton> buttonWithTitle(NSString title, NSObject* target, SEL action);

    // Properties of the cell. NSButtonCell describes them.

    /// The title. Default empty.
    NSString title() const;
    /// Null counts as empty. Redraws and lays out, and notifies assistive technology, unless it is the
    /// same.
    void setTitle(NSString title);
    /// The title of an NSButtonTypeToggle while it is on. Default empty: `title()`.
    NSString alternateTitle() const;
    /// Null counts as empty. Redraws and lays out, unless it is the same.
    void setAlternateTitle(NSString title);
    /// Sets what a click does to the state; see NSButtonType. Redraws and lays out, unless it is the
    /// same.
    void setButtonType(NSButtonType type);
    /// Whether there is a bezel. Default true.
    bool isBordered() const;
    /// Redraws and lays out, unless the value is the same.
    void setBordered(bool bordered);
    /// The key that clicks the button from anywhere in its window, such as "\r" for Return. Default
    /// empty: none.
    NSString keyEquivalent() const;
    /// Null counts as empty. Redraws, unless it is the same.
    void setKeyEquivalent(NSString key);
    /// NSControlStateValueOff or NSControlStateValueOn.
    NSControlStateValue state() const;
    /// Sets the state without sending the action.
    void setState(NSControlStateValue state);

    /// Sets the next state and sends the action, if the button is enabled.
    void performClick(NSObject* sender = nullptr) override;

    /// True.
    bool isFlipped() const override { return true; }
    /// Draws the cell, and the ring that shows the keyboard focus.
    void drawRect(NSRect dirtyRect) override;

    /// Highlights the button, if it is enabled.
    void mouseDown(NSEvent* event) override;
    /// Highlights the button while the pointer is over it.
    void mouseDragged(NSEvent* event) override;
    /// Sets the next state and sends the action if the pointer is over the button, and ends the
    /// highlight.
    void mouseUp(NSEvent* event) override;
    /// Clicks for the space bar, once however long it is held. Passes other keys, and all while the button is
    /// disabled, to the next responder.
    void keyDown(NSEvent* event) override;
    /// Clicks for the key equivalent, once however long it is held; Return and Enter are the same. False for
    /// other keys, and while the button is disabled.
    bool performKeyEquivalent(NSEvent* event) override;
    /// True while the button is enabled.
    bool acceptsFirstResponder() const override { return isEnabled(); }
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;

    /// NSAccessibilityButtonRole if a click leaves the state as it is, else NSAccessibilityCheckBoxRole.
    NSAccessibilityRole accessibilityRole() const override;
    /// The label that was set; without one the title, unless that is empty.
    NSString accessibilityLabel() const override;
    /// The state of a check box as a number; null for a momentary button.
    RetainPtr<NSObject> accessibilityValue() const override;

protected:
    ~NSButton() override;

private:
    NSButtonCell* buttonCell() const;
    bool isUnderPointer(const NSEvent& event) const;
    void setShowsFocus(bool showsFocus);

    bool _isPressed = false;  ///< a press began while the button was enabled
    bool _showsFocus = false; ///< not used with the mouse since it got the focus
};
