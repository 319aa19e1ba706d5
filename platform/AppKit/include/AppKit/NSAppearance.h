#pragma once

#include <Foundation/NSObject.h>

#include <functional>
#include <initializer_list>

/// The name of an appearance.
using NSAppearanceName = NSString;

inline constexpr char NSAppearanceNameAqua[] = "NSAppearanceNameAqua";         ///< light
inline constexpr char NSAppearanceNameDarkAqua[] = "NSAppearanceNameDarkAqua"; ///< dark
inline constexpr char NSAppearanceNameVibrantLight[] =
    "NSAppearanceNameVibrantLight"; ///< light, over translucent ground
inline constexpr char NSAppearanceNameVibrantDark[] =
    "NSAppearanceNameVibrantDark"; ///< dark, over translucent ground
/// Light, with high contrast.
inline constexpr char NSAppearanceNameAccessibilityHighContrastAqua[] = "NSAppearanceNameAccessibilityAqua";
/// Dark, with high contrast.
inline constexpr char NSAppearanceNameAccessibilityHighContrastDarkAqua[] =
    "NSAppearanceNameAccessibilityDarkAqua";
/// Light, over translucent ground, with high contrast.
inline constexpr char NSAppearanceNameAccessibilityHighContrastVibrantLight[] =
    "NSAppearanceNameAccessibilityVibrantLight";
/// Dark, over translucent ground, with high contrast.
inline constexpr char NSAppearanceNameAccessibilityHighContrastVibrantDark[] =
    "NSAppearanceNameAccessibilityVibrantDark";

/// A look of the user interface, above all light or dark. Colours with variants resolve to the one for
/// `currentDrawingAppearance()`.
///
/// There is one object for each name, which is never destroyed. Immutable; any thread.
class KORVID_EXPORT NSAppearance final : public NSObject {
public:
    /// The appearance of that name; null for a null or empty name.
    ///
    /// Differs: Apple's returns null for unknown names. Here any name has an appearance: a dark one when the
    /// name contains "dark" or "lightcontent" in any mix of case, else a light one.
    static RetainPtr<NSAppearance> appearanceNamed(const NSAppearanceName& name);

    /// The name that the appearance was requested by; never null.
    NSAppearanceName name() const { return _name; }

    /// The name that suits this appearance best: its own; else the same look without high contrast; else the
    /// plain light or dark look; else the first name of a look that is light or dark like this one. Null when
    /// there is none.
    NSAppearanceName bestMatchFromAppearancesWithNames(std::initializer_list<NSAppearanceName> names) const;

    /// The appearance that the calling thread draws in. Never null.
    ///
    /// Outside of `performAsCurrentDrawingAppearance` it is the application's effective appearance, or the
    /// light one before there is an application object. Borrowed.
    static NSAppearance* currentDrawingAppearance();

    /// Calls `block` with this as the calling thread's drawing appearance. Calls may be nested; exceptions
    /// propagate. An empty block does nothing.
    void performAsCurrentDrawingAppearance(const std::function<void()>& block);

    NSString description() const override;

protected:
    ~NSAppearance() override;

private:
    friend class NSColor;

    explicit NSAppearance(const NSAppearanceName& name);

    NSAppearanceName _name;
    bool _isDark;
};
