#pragma once

#include <CoreText/CTFont.h>

/// A face of an installed font at a size, in points. Immutable; any thread.
///
/// An NSFont is a CTFont: every function that takes a CTFontRef takes it.
///
///     auto font = NSFont::fontWithName("Liberation Sans Bold", 13);
///     if (!font)
///         font = NSFont::boldSystemFontOfSize(13);
class KORVID_EXPORT NSFont final : public CTFont {
public:
    /// The installed font with that PostScript name, full name or family name, ignoring case and spaces; see
    /// CTFont.h for the lookup. Null when there is none: no other font is substituted. A null or empty name
    /// has none. A size that is 0, negative, infinite or NaN becomes 12.
    static RetainPtr<NSFont> fontWithName(const NSString& name, CGFloat size);

    /// The font of the user interface: the substitute for Helvetica, see CTFont.h. Never null. A
    /// size that is 0, negative, infinite or NaN becomes 13, that of controls.
    static RetainPtr<NSFont> systemFontOfSize(CGFloat size);
    /// Its bold face; never null.
    static RetainPtr<NSFont> boldSystemFontOfSize(CGFloat size);

    /// The face's PostScript name, such as "LiberationSans-Bold".
    NSString fontName() const { return CTFontCopyPostScriptName(this); }
    /// Such as "Liberation Sans".
    NSString familyName() const { return CTFontCopyFamilyName(this); }
    /// The height of letters above the baseline.
    CGFloat ascender() const { return CTFontGetAscent(this); }
    /// The depth of letters below the baseline, as a negative number.
    CGFloat descender() const { return -CTFontGetDescent(this); }
    /// The gap between lines.
    CGFloat leading() const { return CTFontGetLeading(this); }

    /// For the functions above.
    using CTFont::CTFont;

protected:
    ~NSFont() override;
};
