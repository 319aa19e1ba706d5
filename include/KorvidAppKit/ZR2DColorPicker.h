#pragma once

#include <AppKit/NSView.h>
#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGImage.h>

#include <cstdint>
#include <functional>
#include <memory>

class NSColor;
class ZRFocusRing;

/// The two components that a position in a `ZR2DColorPicker` stands for.
struct ZR2Components {
    double compX = 0; ///< from left to right, 0 to 1
    double compY = 0; ///< upward, 0 to 1

    /// True for equal components; NaN equals nothing.
    bool operator==(const ZR2Components&) const = default;
};

/// The colour model of a `ZR2DColorPicker` and the one of its three components that is fixed. The other two
/// lie along x and y, in the model's order.
using ZR2DColorPickerAxes = std::uint32_t;

inline constexpr ZR2DColorPickerAxes kZR2DColorPickerAxesHueSaturation = 0x11;        ///< fixed brightness
inline constexpr ZR2DColorPickerAxes kZR2DColorPickerAxesHueBrightness = 0x12;        ///< fixed saturation
inline constexpr ZR2DColorPickerAxes kZR2DColorPickerAxesSaturationBrightness = 0x14; ///< fixed hue
inline constexpr ZR2DColorPickerAxes kZR2DColorPickerAxesRedGreen = 0x21;             ///< fixed blue
inline constexpr ZR2DColorPickerAxes kZR2DColorPickerAxesRedBlue = 0x22;              ///< fixed green
inline constexpr ZR2DColorPickerAxes kZR2DColorPickerAxesGreenBlue = 0x24;            ///< fixed red

/// A field of colours that two components span, and a round knob that the mouse or the arrow keys move to
/// pick one of them.
///
///     auto picker = make<ZR2DColorPicker>(NSMakeRect(0, 0, 220, 220));
///     picker->setThirdComponent(1); // hues and saturations of full brightness
///     picker->setComponentsChangedCB([picker = picker.get(), swatch = swatch.get()](ZR2Components) {
///         swatch->setColor(picker->color());
///     });
///
/// The field is the bounds without a margin of half the knob and two points, widened to whole points. It has
/// one colour for each point, computed at the first draw and cached until the frame, the axes, the third
/// component or the size of the knob is set; moving the knob computes nothing.
///
/// A press and every drag move the knob to the pointer, or to the nearest point of the field. A field without
/// a width or height has no colours: drawing logs "Failure in ZR2DColorPicker" and draws nothing. The same
/// holds for one with a side of more than 32767 points.
///
/// The picker takes the keyboard focus, from a press too. An arrow key moves the knob by a hundredth of the
/// field, with Shift by a tenth, from the nearest whole hundredth. While it has the focus in the key window,
/// a ring along the edge of the bounds shows that, unless it was last used with the mouse.
///
/// Assistive technology sees a colour well whose value is given in words: "hue 50 %, saturation 50 %". The
/// words are the main bundle's strings for the keys "hue", "saturation", "brightness", "red", "green" and
/// "blue".
///
/// Main thread only.
class KORVID_EXPORT ZR2DColorPicker : public NSView {
public:
    /// A view with an empty frame.
    ZR2DColorPicker();
    /// A view at `frame`, in the coordinates of its future superview.
    explicit ZR2DColorPicker(NSRect frame);
    /// Decodes the properties that every view archives; those of this class get their defaults.
    explicit ZR2DColorPicker(NSCoder* coder);

    /// Draws the whole view, whatever `dirtyRect` is: the field, a black frame of one point around it, and
    /// the knob in the current colour with a white ring and a shadow. Leaves sRGB as the context's fill and
    /// stroke colour space, with opaque black as both colours; the rest of the graphics state is restored.
    void drawRect(NSRect dirtyRect) override;

    /// The opaque colour for a pair of components, with the current axes and third component. Components are
    /// clamped to 0 to 1, and NaN is 0. Axes without a meaning give black of the model whose bit is set (0x10
    /// hue, saturation and brightness, else 0x20 red, green and blue), or white if neither is.
    RetainPtr<NSColor> colorForComps(ZR2Components comps) const;

    /// Discards the cached field, whether or not the frame changes.
    void setFrame(NSRect frame) override;
    /// Discards the cached field, whether or not the size changes.
    void setFrameSize(NSSize size) override;

    /// Default 0x11: hue along x, saturation along y.
    ZR2DColorPickerAxes axes() const { return _axes; }
    /// Stores the low 17 bits, discards the cached field and redraws, even if the axes are the current ones.
    void setAxes(ZR2DColorPickerAxes axes);

    /// `colorForComps(comps())`.
    RetainPtr<NSColor> color() const;

    /// The fixed component. Default 0.5. Below 0 it counts as 0, above 1 as 1, and NaN as 0.
    double thirdComponent() const { return _thirdComponent; }
    /// Stores, discards the cached field and redraws, even if the component is the current one.
    void setThirdComponent(double component);

    /// The selected components: the position of the knob. Default (0.5, 0.5).
    ZR2Components comps() const { return _comps; }
    /// Stores the pair as it is and redraws, even if it is the current one. A pair outside 0 to 1 places the
    /// knob outside the field, and one that is not finite hides it. The callback is not called, and no
    /// settings are written: only the mouse and the keys do that. Assistive technology is notified if the
    /// pair is another one.
    void setComps(ZR2Components comps);

    /// The diameter of the knob in points. Default 8. Sizes below 0 narrow the margin; with one that is not
    /// finite there is no field.
    double pickerSize() const { return _pickerSize; }
    /// Stores, discards the cached field and redraws, even if the size is the current one.
    void setPickerSize(double size);

    /// Moves the knob to the pointer. The event's location counts as one in the window's content view, which
    /// must be neither flipped nor have moved bounds for the knob to be under the pointer.
    void mouseDown(NSEvent* event) override;
    /// Moves the knob to the pointer.
    void mouseDragged(NSEvent* event) override;
    /// Does nothing: the press and the drags have moved the knob already.
    void mouseUp(NSEvent* event) override;

    /// Moves the knob for an arrow key, alone or with Shift, within the field; components that are not finite
    /// count as 0. Passes other keys to the next responder.
    void keyDown(NSEvent* event) override;
    bool acceptsFirstResponder() const override { return true; }
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;

    bool isAccessibilityElement() const override { return true; }
    /// NSAccessibilityColorWellRole.
    NSAccessibilityRole accessibilityRole() const override;
    /// The label that was set, else the tool tip, else the main bundle's string for the key "Color".
    NSString accessibilityLabel() const override;
    /// The components by their names and in whole percents. Null for axes without a meaning.
    NSString accessibilityValueDescription() const override;

    /// Whether the mouse and the keys also write the components to the standard user defaults, compX as
    /// "viewHue" and compY as "viewSat", whatever the axes are. Default false.
    bool legacy_setSUD() const { return _legacy_setSUD; }
    /// Only stores.
    void setLegacy_setSUD(bool writes) { _legacy_setSUD = writes; }

    /// What the mouse and the keys call after each change, with the current components. Default none.
    const std::function<void(ZR2Components)>& componentsChangedCB() const { return _componentsChangedCB; }
    /// Only stores. The callback may replace itself and release the picker. It must not retain the picker,
    /// which would never be destroyed.
    void setComponentsChangedCB(std::function<void(ZR2Components)> callback);

protected:
    ~ZR2DColorPicker() override;

    /// Discards the cached field.
    void _invalidateImg();
    /// Sets the defaults.
    void _performInit();
    /// The rectangle of the field in the bounds. The null rectangle where the margins leave nothing.
    NSRect _pickerBds() const;
    /// Computes the components from the pointer's position in the field, stores them, writes the settings and
    /// calls the callback. In a field without a width or height a component that is 0 / 0 is 0.
    void _processMouse(NSEvent* event);

    RetainPtr<CGImage> _pickerImg;                           ///< the field; null until it is drawn
    double _pickerSize = 0;                                  ///< the value of `pickerSize()`
    ZR2DColorPickerAxes _axes : 17;                          ///< the value of `axes()`
    double _thirdComponent = 0;                              ///< the value of `thirdComponent()`
    ZR2Components _comps;                                    ///< the value of `comps()`
    bool _legacy_setSUD = false;                             ///< the value of `legacy_setSUD()`
    std::function<void(ZR2Components)> _componentsChangedCB; ///< the value of `componentsChangedCB()`

private:
    void pickComps(ZR2Components comps);
    bool ensureFieldImage(NSRect field);
    void drawKnob(CGContextRef context, NSRect field) const;

    const std::unique_ptr<ZRFocusRing> _focusRing;
};
