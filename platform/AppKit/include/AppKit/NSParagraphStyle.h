#pragma once

#include <CoreGraphics/CGBase.h>
#include <Foundation/NSObject.h>

class NSMutableParagraphStyle;

/// The horizontal alignment of lines.
///
/// The framework's values for centre and right depend on the processor; these are those of Apple's own
/// processors on all. Use the names.
enum NSTextAlignment : NSInteger {
    NSTextAlignmentLeft = 0,
    NSTextAlignmentCenter = 1,
    NSTextAlignmentRight = 2,
    NSTextAlignmentJustified = 3, ///< all lines but a paragraph's last reach from edge to edge
    NSTextAlignmentNatural = 4,   ///< left or right, by the direction of the script
};

/// What happens to a line that is wider than the space for it.
enum NSLineBreakMode : NSUInteger {
    NSLineBreakByWordWrapping = 0,   ///< continues on the next line after a word; in a word that has no space
    NSLineBreakByCharWrapping = 1,   ///< continues on the next line after any character
    NSLineBreakByClipping = 2,       ///< is cut at the edge
    NSLineBreakByTruncatingHead = 3, ///< loses its beginning to "…"
    NSLineBreakByTruncatingTail = 4,
    NSLineBreakByTruncatingMiddle = 5,
};

/// How the lines of a paragraph are laid out: the attribute `NSParagraphStyleAttributeName`.
///
/// Lengths are in points. Immutable and safe on any thread, unless it is an NSMutableParagraphStyle.
class KORVID_EXPORT NSParagraphStyle : public NSObject {
public:
    /// With the default values given below.
    NSParagraphStyle();
    /// A shared style with the default values. Borrowed; never destroyed.
    static NSParagraphStyle* defaultParagraphStyle();

    /// Default NSTextAlignmentNatural.
    NSTextAlignment alignment() const { return _values.alignment; }
    /// Default NSLineBreakByWordWrapping.
    NSLineBreakMode lineBreakMode() const { return _values.lineBreakMode; }
    /// Between the bottom of a line and the top of the next. Default 0; never negative.
    CGFloat lineSpacing() const { return _values.lineSpacing; }
    /// A factor of the fonts' own line height, applied before the two limits below. Default 0, which means 1.
    CGFloat lineHeightMultiple() const { return _values.lineHeightMultiple; }
    /// Default 0, which is no limit. Lower lines are made as high as this.
    CGFloat minimumLineHeight() const { return _values.minimumLineHeight; }
    /// Default 0, which is no limit. Glyphs that are higher than their line overlap the neighbouring lines.
    CGFloat maximumLineHeight() const { return _values.maximumLineHeight; }

    /// An immutable style with the same values: this object, unless it is mutable.
    virtual RetainPtr<NSParagraphStyle> copy() const;
    /// A new mutable style with the same values.
    RetainPtr<NSMutableParagraphStyle> mutableCopy() const;

    /// True for a style with the same values, mutable or not.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// "Alignment 4, LineBreakMode 0, LineSpacing 0, LineHeightMultiple 0, MinimumLineHeight 0,
    /// MaximumLineHeight 0".
    NSString description() const override;

protected:
    ~NSParagraphStyle() override;

private:
    friend class NSMutableParagraphStyle;

    struct Values {
        NSTextAlignment alignment = NSTextAlignmentNatural;
        NSLineBreakMode lineBreakMode = NSLineBreakByWordWrapping;
        CGFloat lineSpacing = 0;
        CGFloat lineHeightMultiple = 0;
        CGFloat minimumLineHeight = 0;
        CGFloat maximumLineHeight = 0;

        bool operator==(const Values&) const = default;
    };

    explicit NSParagraphStyle(const Values& values);

    Values _values;
};

/// A mutable paragraph style. One thread at a time.
///
/// Negative and infinite numbers and NaN count as 0.
class KORVID_EXPORT NSMutableParagraphStyle : public NSParagraphStyle {
public:
    /// With the default values.
    NSMutableParagraphStyle();

    /// A value that is none of the five counts as NSTextAlignmentNatural.
    void setAlignment(NSTextAlignment alignment);
    /// A value that is none of the six counts as NSLineBreakByWordWrapping.
    void setLineBreakMode(NSLineBreakMode mode);
    /// In points.
    void setLineSpacing(CGFloat lineSpacing);
    /// A factor; 0 means 1.
    void setLineHeightMultiple(CGFloat multiple);
    /// In points; 0 is no limit.
    void setMinimumLineHeight(CGFloat height);
    /// In points; 0 is no limit.
    void setMaximumLineHeight(CGFloat height);

    /// A new immutable object.
    RetainPtr<NSParagraphStyle> copy() const override;

protected:
    ~NSMutableParagraphStyle() override;

private:
    friend class NSParagraphStyle;

    explicit NSMutableParagraphStyle(const Values& values);
};
