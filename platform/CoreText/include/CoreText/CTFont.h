#pragma once

#include <CoreGraphics/CGBase.h>
#include <Foundation/NSObject.h>

#include <memory>

struct Typeface;

/// Traits of a face, as bits.
enum CTFontSymbolicTraits : std::uint32_t {
    kCTFontTraitItalic = 1 << 0,
    kCTFontTraitBold = 1 << 1, ///< semibold and heavier
};

/// A face of an installed font at a size.
///
/// Lengths are in points. Text is drawn unhinted: a glyph has the same shape at every size, scale and
/// position. A font is an object, so that it can be an attribute of a string; AppKit's NSFont derives from
/// it. Immutable; any thread.
class KORVID_EXPORT CTFont : public NSObject {
public:
    /// For the functions that create fonts. A size that is 0, negative, infinite or NaN becomes 12.
    CTFont(std::shared_ptr<const Typeface> typeface, CGFloat size);

    /// The face; for the platform layer.
    const Typeface& typeface() const { return *_typeface; }
    /// The size in points.
    CGFloat pointSize() const { return _pointSize; }

    /// True for another font of the same face and size.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// Such as "LiberationSans-Bold 12.00 pt.".
    NSString description() const override;

protected:
    ~CTFont() override;

private:
    std::shared_ptr<const Typeface> _typeface;
    CGFloat _pointSize;
};
/// A pointer to a font.
using CTFontRef = const CTFont*;

extern "C" {

/// A font by name; never null. The caller owns it: `adopt` it.
///
/// The name is a PostScript name ("LiberationSans-Bold"), a full name ("Liberation Sans Bold") or a family
/// ("Liberation Sans", its regular face), looked for in this order, without regard to case and blanks.
///
/// Where no installed font has it, it is read as a family and a style, and the nearest face is taken.
///
/// The family is the first of these that is installed, whether the name says Helvetica, Helvetica Neue,
/// Arial, another one or none, and whatever fontconfig substitutes for it:
///
/// - the family itself, in another weight
/// - Liberation Sans
/// - Arimo
/// - Nimbus Sans
/// - what the system takes for "sans-serif"
///
/// A family that fontconfig's rules replace even though it is installed counts as not installed.
///
/// The nearest face of the family is taken; the slant counts most, then the weight, then the width. Most of
/// those families have two weights:
///
/// - Ultra Light, Thin, Light, Regular, Roman, Medium or none of these gives regular
/// - Semibold, Bold, Extra Bold, Heavy or Black gives bold
///
/// Liberation Sans, Arimo and Nimbus Sans are as wide as Helvetica, letter by letter. Italic, Oblique,
/// Condensed and Narrow are honoured where the family has them. So "Helvetica Bold" and "HelveticaNeue-Bold"
/// are Liberation Sans Bold where that is installed, and a null or empty name is Liberation Sans.
///
/// A font file that is missing or damaged counts as not installed. With no font at all, a font has no glyphs
/// and no height, and the first one that is created writes a message to the log. A size that is 0, negative,
/// infinite or NaN becomes 12.
///
/// Differs: Apple's function also takes a matrix; here only the context's transform applies.
[[nodiscard]] KORVID_EXPORT CTFontRef CTFontCreateWithName(const NSString& name, CGFloat size);

/// The size in points. 0 for null.
KORVID_EXPORT CGFloat CTFontGetSize(CTFontRef font);
/// The height of the face above the baseline, as the font file states it. 0 for null.
KORVID_EXPORT CGFloat CTFontGetAscent(CTFontRef font);
/// The depth of the face below the baseline: a positive number. 0 for null.
KORVID_EXPORT CGFloat CTFontGetDescent(CTFontRef font);
/// The gap between the descent of a line and the ascent of the next. 0 for null.
KORVID_EXPORT CGFloat CTFontGetLeading(CTFontRef font);
/// kCTFontTraitBold and kCTFontTraitItalic, or 0. 0 for null.
KORVID_EXPORT CTFontSymbolicTraits CTFontGetSymbolicTraits(CTFontRef font);

} // extern "C"

/// The name of the face that was found, such as "LiberationSans-Bold". Null for null.
KORVID_EXPORT NSString CTFontCopyPostScriptName(CTFontRef font);
/// Such as "Liberation Sans". Null for null.
KORVID_EXPORT NSString CTFontCopyFamilyName(CTFontRef font);
