#pragma once

#include <CoreGraphics/CGColor.h>
#include <Foundation/NSObject.h>

/// What a text's colour may be: an object that knows its CGColor. NSColor does.
class KORVID_EXPORT CTColorValue {
public:
    /// Lent; it may be another one at another time. Null draws nothing.
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

// The attributes of a text that lines are laid out and drawn with. They are the ones that AppKit names
// NSFontAttributeName, NSKernAttributeName and NSForegroundColorAttributeName; lines leave all others alone.

/// A CTFont; without one, what CTFontCreateWithName gives for Helvetica at 12 points.
KORVID_EXPORT extern const NSString kCTFontAttributeName;
/// An NSNumber: points to add after every character, the last one included, to its right. Default 0; infinite
/// and NaN count as 0. Letters that are spaced do not join in ligatures.
///
/// Differs: Apple's 0 leaves out the pairs that the font itself moves together; here it is as good as no
/// value.
KORVID_EXPORT extern const NSString kCTKernAttributeName;
/// A CTColorValue: `box` of a CGColorRef, or an NSColor, whose variant follows the appearance in force when
/// the line is drawn. Default black.
KORVID_EXPORT extern const NSString kCTForegroundColorAttributeName;
