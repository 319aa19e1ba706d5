#pragma once

#include <CoreGraphics/CGBase.h>
#include <Foundation/NSObject.h>

class NSMutableParagraphStyle;

/// Where the lines of a text lie between its left and its right edge.
///
/// The framework's values for centre and right depend on the processor; these are those of Apple's own
/// processors on all. Use the names.
enum NSTextAlignment : NSInteger {
    NSTextAlignmentLeft = 0,
    NSTextAlignmentCenter = 1,
    NSTextAlignmentRight = 2,
    NSTextAlignmentJustified = 3, ///< all lines but a paragraph's last reach from edge to edge
    NSTextAlignmentNatural = 4,   ///< where the text's script begins its lines
};

/// How the lines of a paragraph are laid out: the attribute `NSParagraphStyleAttributeName`.
///
/// Lengths are in points. Immutable, if it is not an NSMutableParagraphStyle; then any thread.
class KORVID_EXPORT NSParagraphStyle : public NSObject {
public:
    /// With the default values that are told below.
    NSParagraphStyle();
    /// One that has the default values, for all; it lives as long as the process.
    static NSParagraphStyle* defaultParagraphStyle();

    /// Default NSTextAlignmentNatural.
    NSTextAlignment alignment() const { return _values.alignment; }
    /// Between the bottom of a line and the top of the next. Default 0; never negative.
    CGFloat lineSpacing() const { return _values.lineSpacing; }
    /// By which the fonts' own line height is multiplied before the two limits below. Default 0, which leaves
    /// it as it is.
    CGFloat lineHeightMultiple() const { return _values.lineHeightMultiple; }
    /// Default 0, which is no limit. Lines that would be lower are as high as that.
    CGFloat minimumLineHeight() const { return _values.minimumLineHeight; }
    /// Default 0, which is no limit. What is higher than its line reaches into the neighbouring ones.
    CGFloat maximumLineHeight() const { return _values.maximumLineHeight; }

    /// One that stays as it is now: the same object, unless it can change.
    virtual RetainPtr<NSParagraphStyle> copy() const;
    /// Another one with the same values, which can change.
    RetainPtr<NSMutableParagraphStyle> mutableCopy() const;

    /// True for another one with the same values, whether it can change or not.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// "Alignment 4, LineSpacing 0, LineHeightMultiple 0, MinimumLineHeight 0, MaximumLineHeight 0".
    NSString description() const override;

protected:
    ~NSParagraphStyle() override;

private:
    friend class NSMutableParagraphStyle;

    struct Values {
        NSTextAlignment alignment = NSTextAlignmentNatural;
        CGFloat lineSpacing = 0;
        CGFloat lineHeightMultiple = 0;
        CGFloat minimumLineHeight = 0;
        CGFloat maximumLineHeight = 0;

        bool operator==(const Values&) const = default;
    };

    explicit NSParagraphStyle(const Values& values);

    Values _values;
};

/// A paragraph style that can change. One thread at a time.
///
/// Numbers that are negative, infinite or no numbers count as 0.
class KORVID_EXPORT NSMutableParagraphStyle : public NSParagraphStyle {
public:
    /// With the default values.
    NSMutableParagraphStyle();

    /// What is none of the five counts as natural.
    void setAlignment(NSTextAlignment alignment);
    void setLineSpacing(CGFloat lineSpacing);
    void setLineHeightMultiple(CGFloat multiple);
    void setMinimumLineHeight(CGFloat height);
    void setMaximumLineHeight(CGFloat height);

    /// A new object.
    RetainPtr<NSParagraphStyle> copy() const override;

protected:
    ~NSMutableParagraphStyle() override;

private:
    friend class NSParagraphStyle;

    explicit NSMutableParagraphStyle(const Values& values);
};
