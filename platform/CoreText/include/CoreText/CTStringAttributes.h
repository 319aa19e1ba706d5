#pragma once

#include <CoreGraphics/CGColor.h>
#include <Foundation/NSObject.h>

/// The value of a colour attribute: an object with a CGColor, such as an NSColor.
class KORVID_EXPORT CTColorValue {
public:
    /// Borrowed; may change over time. Null draws nothing.
    virtual CGColorRef CGColor() const = 0;

protected:
    virtual ~CTColorValue() = default;
};

/// A CGColor as an object, for attributes. Immutable; any thread.
class KORVID_EXPORT CTBoxedColor final : public NSObject, public CTColorValue {
public:
    /// Retains the colour, which may be null.
    explicit CTBoxedColor(RetainPtr<::CGColor> color);

    CGColorRef CGColor() const override { return _color.get(); }

    /// True for another one of an equal colour.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;

protected:
    ~CTBoxedColor() override;

private:
    RetainPtr<struct CGColor> _color;
};

/// The colour as an object; null for null.
KORVID_EXPORT RetainPtr<CTBoxedColor> box(RetainPtr<CGColor> color);

// Attributes. Lines are laid out and drawn with these, which equal AppKit's NSFontAttributeName,
// NSKernAttributeName and NSForegroundColorAttributeName, and ignore all others.

/// A CTFont. Default: CTFontCreateWithName's Helvetica at 12 points.
KORVID_EXPORT extern const NSString kCTFontAttributeName;
/// An NSNumber: points to add after every character, the last one included, to its right. Default 0; infinite
/// and NaN count as 0. Spaced letters do not join in ligatures.
///
/// Differs: Apple's 0 turns off the font's own pair kerning; here it has no effect.
KORVID_EXPORT extern const NSString kCTKernAttributeName;
/// A CTColorValue: `box` of a CGColorRef, or an NSColor, resolved in the appearance that is current when the
/// line is drawn. Default black.
KORVID_EXPORT extern const NSString kCTForegroundColorAttributeName;
