#pragma once

#include <AppKit/NSControl.h>
#include <CoreGraphics/CGContext.h>

#include <memory>

class NSFont;
class NSTimer;
class ZRFocusRing;

/// An on/off switch: a rounded track with a knob over a little more than half of it. The words "OFF" and "ON"
/// are cut out of the knob, so that what lies behind the switch shows through them.
///
///     auto toggle = make<ZRSwitchControl>(NSMakeRect(0, 0, 66, 24));
///     toggle->setTarget(controller);
///     toggle->setAction(selector<&Controller::toggled>); // reads toggle->isOn()
///
/// A click toggles the switch; a drag of more than 4 points moves the knob, and the half that it ends in
/// decides. Either sends the action when the mouse button goes up, whether or not the state has changed. A
/// change of state moves the knob within 0.2 seconds, eased by `ZRGraphics::smoothstep`, in steps of 1/60
/// second; the switch lives until that is finished.
///
/// The words are the main bundle's strings for the keys "OFF" and "ON". They are centred 0.6 of the height
/// from either side. A switch narrower than about 2.7 times its height also has a piece of the other word cut
/// out of its knob.
///
/// `setEnabled(false)` dims the switch to an alpha of 0.35 and makes its knob gray; the mouse still operates
/// it.
///
/// An enabled switch takes the keyboard focus, from a press too, and the space bar clicks it. While it has
/// the focus in the key window, a ring along its edge shows that, unless it was last used with the mouse.
/// Assistive technology sees a check box and can toggle it while it is enabled; give it a name with
/// `setAccessibilityLabel`. Main thread only.
class KORVID_EXPORT ZRSwitchControl : public NSControl {
public:
    /// A switch with an empty frame, which is off.
    ZRSwitchControl();
    /// A switch at `frame`, in the coordinates of its future superview, which is off.
    explicit ZRSwitchControl(NSRect frame);
    /// Decodes the properties that every control archives; the switch is off.
    explicit ZRSwitchControl(NSCoder* coder);

    /// Draws the whole switch, whatever `dirtyRect` is: composes it in a transparent bitmap of the backing's
    /// size, in which the words cut through knob and track, then draws that once. Caches nothing. Draws
    /// nothing without a size, and logs "Font could not be loaded." and draws nothing without the bold system
    /// font.
    void drawRect(NSRect dirtyRect) override;

    /// Records where the press is. A running animation continues.
    void mouseDown(NSEvent* event) override;
    /// Moves the knob by as much as the pointer has moved horizontally since the press, within the track:
    /// also within the first 4 points, which still count as a click. Without a width the position is NaN or
    /// at an end.
    void mouseDragged(NSEvent* event) override;
    /// Sets the new state, animated, and sends the action if there are a target and an action: the responder
    /// chain is not searched. Logs "Unable to send action" if the target cannot perform it.
    void mouseUp(NSEvent* event) override;

    /// Toggles the switch, animated, and sends the action as the mouse does. Does nothing while the switch is
    /// disabled.
    void performClick(NSObject* sender = nullptr) override;
    /// Performs a click for the space bar, once however long it is held. Passes other keys, and all while the
    /// switch is disabled, to the next responder.
    void keyDown(NSEvent* event) override;
    /// True while the switch is enabled.
    bool acceptsFirstResponder() const override { return isEnabled(); }
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;

    /// NSAccessibilityCheckBoxRole.
    NSAccessibilityRole accessibilityRole() const override;
    /// `isOn()` as a number.
    RetainPtr<NSObject> accessibilityValue() const override;

    /// The logical state, which changes before the knob has moved. Default false.
    bool isOn() const { return _on; }
    /// `setOn(on, true)`.
    void setOn(bool on) { setOn(on, true); }
    /// Stores the state and redraws, even if it is the current one; notifies assistive technology if it is
    /// not. With `animated` the knob moves from its current position, and a running animation reverses if
    /// necessary. Without it the knob is at its end at once, but a running animation is not stopped: its next
    /// step moves the knob back to the position that the animation has reached.
    void setOn(bool on, bool animated);

    /// Whether the switch is on and enabled, and its knob therefore 00AAAA and not AAAAAA.
    bool isBlue() const { return isOn() && isEnabled(); }

    /// How far the knob moves from off to on, in points: 0.4 of the width of the bounds.
    double horizontalTravel() const { return bounds().size.width * 0.4; }

    /// Where the knob is: 0 at the left, 1 at the right. Default 0.
    double switchPosition() const { return _switchPosition; }
    /// Stores any number as it is and redraws, unless it is equal to the current one.
    void setSwitchPosition(double position);

    /// A flag for the application: stored, not used. The animation always eases. Default false.
    bool smoothStepSwitchPosition() const { return _smoothStepSwitchPosition; }
    /// Only stores.
    void setSmoothStepSwitchPosition(bool smoothStep) { _smoothStepSwitchPosition = smoothStep; }

    /// The words' font size as a part of the view's height. Default 0: with 0, a negative number or NaN the
    /// size is 11 points.
    double viewHeightFontSizeCoefficient() const { return _viewHeightFontSizeCoefficient; }
    /// Only stores: takes effect the next time the switch draws.
    void setViewHeightFontSizeCoefficient(double coefficient)
    {
        _viewHeightFontSizeCoefficient = coefficient;
    }

    /// The least font size that the coefficient gives, in points. Default 0.
    double viewHeightFontSizeMinimum() const { return _viewHeightFontSizeMinimum; }
    /// Only stores: takes effect the next time the switch draws.
    void setViewHeightFontSizeMinimum(double minimum) { _viewHeightFontSizeMinimum = minimum; }

protected:
    ~ZRSwitchControl() override;

    /// A step of the animation, by the time since the last one but at most 10 of the timer's intervals. The
    /// first one only records the time.
    void _moveSwitch(NSTimer* timer);

    bool _on = false;                          ///< the value of `isOn()`
    double _animSwitchPosition = 0;            ///< progress of the animation, which `_switchPosition` eases
    double _switchPosition = 0;                ///< the value of `switchPosition()`
    bool _countsAsDrag = false;                ///< the pointer has moved far enough during the press
    NSPoint _clicked = NSZeroPoint;            ///< where the press was
    double _switchPositionWhenClicked = 0;     ///< where the knob was then
    double _lastFire = 0;                      ///< time of the last step; -1 before the first
    RetainPtr<NSTimer> _animTimer;             ///< null unless the knob moves by itself
    bool _smoothStepSwitchPosition = false;    ///< the value of `smoothStepSwitchPosition()`
    double _viewHeightFontSizeCoefficient = 0; ///< the value of `viewHeightFontSizeCoefficient()`
    double _viewHeightFontSizeMinimum = 0;     ///< the value of `viewHeightFontSizeMinimum()`

private:
    void operate(bool on);
    double fontSize() const;
    void drawParts(CGContextRef context, RetainPtr<NSFont> font, double fontSize) const;

    const std::unique_ptr<ZRFocusRing> _focusRing;
};
