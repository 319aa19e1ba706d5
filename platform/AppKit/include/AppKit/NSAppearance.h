#pragma once

#include <Foundation/NSObject.h>

#include <functional>
#include <initializer_list>

/// The name of an appearance.
using NSAppearanceName = NSString;

inline constexpr char NSAppearanceNameAqua[] = "NSAppearanceNameAqua";         ///< light
inline constexpr char NSAppearanceNameDarkAqua[] = "NSAppearanceNameDarkAqua"; ///< dark
inline constexpr char NSAppearanceNameVibrantLight[] = "NSAppearanceNameVibrantLight";
inline constexpr char NSAppearanceNameVibrantDark[] = "NSAppearanceNameVibrantDark";
inline constexpr char NSAppearanceNameAccessibilityHighContrastAqua[] = "NSAppearanceNameAccessibilityAqua";
inline constexpr char NSAppearanceNameAccessibilityHighContrastDarkAqua[] =
    "NSAppearanceNameAccessibilityDarkAqua";
inline constexpr char NSAppearanceNameAccessibilityHighContrastVibrantLight[] =
    "NSAppearanceNameAccessibilityVibrantLight";
inline constexpr char NSAppearanceNameAccessibilityHighContrastVibrantDark[] =
    "NSAppearanceNameAccessibilityVibrantDark";

/// A look of the user interface, above all light or dark. Colours that have variants follow the one that is
/// being drawn in.
///
/// There is one object for each name; it lives as long as the process. Immutable; any thread.
class KORVID_EXPORT NSAppearance final : public NSObject {
public:
    /// The appearance of that name; null for a null or empty name.
    ///
    /// Differs: Apple's answers null for names that it does not know. Here any name will do: it stands for a
    /// dark appearance when it contains "dark" or "lightcontent" in any mix of case, else for a light one.
    static RetainPtr<NSAppearance> appearanceNamed(const NSAppearanceName& name);

    NSAppearanceName name() const { return _name; }

    /// The name that suits this appearance best: its own; else that of the same look without high contrast;
    /// else that of the plain light or dark look; else the first one that is light or dark as this one is.
    /// Null when all are of the other kind.
    NSAppearanceName bestMatchFromAppearancesWithNames(std::initializer_list<NSAppearanceName> names) const;

    /// The appearance that the calling thread draws in. Never null.
    ///
    /// Outside of `performAsCurrentDrawingAppearance` it is the application's effective appearance, and the
    /// light one as long as there is no application object.
    static NSAppearance* currentDrawingAppearance();

    /// Calls `block` with this as the calling thread's drawing appearance. Calls may be nested; an exception
    /// passes through. An empty block does nothing.
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
