#pragma once

#include <AppKit/NSCell.h>

/// What a click does to a button's state.
enum NSButtonType : NSUInteger {
    NSButtonTypePushOnPushOff = 1,   ///< toggles it; the button stays lit while it is on
    NSButtonTypeToggle = 2,          ///< the same, with the alternate title while it is on
    NSButtonTypeMomentaryPushIn = 7, ///< nothing: the button only sends its action
};

/// Draws a button: a dark bezel with round corners, lit in teal while the button is on, and a title.
///
/// Override `drawWithFrame` for another look; NSButton handles the events either way. The value of a button,
/// in `objectValue()` and as a number, is its state. Lengths are in points. Main thread only.
class KORVID_EXPORT NSButtonCell : public NSActionCell {
public:
    /// A momentary button without a title, in the system font of 13 points.
    ///
    /// Differs: the title of Apple's is "Button".
    NSButtonCell();
    /// The same with a title; see `setTitle`.
    explicit NSButtonCell(NSString title);

    /// Draws the bezel, if the cell is bordered, and the title, which leaves 4 points at either end of the
    /// bezel free. A frame narrower or lower than 2 points shows no bezel.
    void drawWithFrame(NSRect frame, NSView* view) override;
    /// Draws the title in the middle, clipped to the frame. A title that is too wide starts at the left edge.
    void drawInteriorWithFrame(NSRect frame, NSView* view) override;
    /// Draws the bezel along the inside of a frame, whose edges are moved to the nearest pixel boundaries.
    virtual void drawBezelWithFrame(NSRect frame, NSView* view);
    /// The size of the wider one of the titles that the button may show, with room around it.
    NSSize cellSize() const override;

    /// Default empty.
    NSString title() const { return _title; }
    /// Null counts as empty. Redraws and lays out, and notifies assistive technology, unless it is the same.
    void setTitle(NSString title);
    /// The title of an NSButtonTypeToggle while it is on. Default empty: `title()`.
    NSString alternateTitle() const { return _alternateTitle; }
    /// Null counts as empty. Redraws and lays out, unless it is the same.
    void setAlternateTitle(NSString title);
    /// The title or, if it is shown now, the alternate title.
    NSString shownTitle() const;

    /// Default NSButtonTypeMomentaryPushIn.
    ///
    /// Differs: Apple's cannot be read.
    NSButtonType buttonType() const { return _buttonType; }
    /// The state stays. A value that is none of the three counts as NSButtonTypeMomentaryPushIn. Redraws and
    /// lays out, unless it is the same.
    void setButtonType(NSButtonType type);
    /// Whether there is a bezel. Default true.
    bool isBordered() const { return _isBordered; }
    /// Redraws and lays out, unless the value is the same.
    void setBordered(bool bordered);

    /// The key, in the string that `NSEvent::charactersIgnoringModifiers` returns, which clicks the button
    /// from anywhere in its window: "\r" for Return, "\x1b" for Escape. Default empty: none. The bezel of a
    /// button with "\r" has a teal edge.
    ///
    /// Differs: a key with Control, Alt or Super held is none.
    NSString keyEquivalent() const { return _keyEquivalent; }
    /// Null counts as empty. Redraws, unless it is the same.
    void setKeyEquivalent(NSString key);

    void setState(NSControlStateValue state) override;
    /// The state after a click: the present one for a momentary button, else the other one.
    NSControlStateValue nextState() const override;
    /// Sets the state: on for an object whose number is not 0.
    void setObjectValue(RetainPtr<NSObject> value) override;

protected:
    ~NSButtonCell() override;

private:
    NSString _title = "";
    NSString _alternateTitle = "";
    NSString _keyEquivalent = "";
    NSButtonType _buttonType = NSButtonTypeMomentaryPushIn;
    bool _isBordered = true;
};
