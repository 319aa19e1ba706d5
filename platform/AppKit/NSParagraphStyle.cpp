#include <AppKit/NSParagraphStyle.h>

#include "CoreGraphics/FiniteGeometry.h"
#include <Foundation/NSFormat.h>

#include <cmath>
#include <functional>

NSParagraphStyle::NSParagraphStyle() = default;

NSParagraphStyle::NSParagraphStyle(const Values& values)
    : _values(values)
{
}

NSParagraphStyle::~NSParagraphStyle() = default;

NSParagraphStyle* NSParagraphStyle::defaultParagraphStyle()
{
    static auto* const style = new NSParagraphStyle;
    return style;
}

RetainPtr<NSParagraphStyle> NSParagraphStyle::copy() const
{
    return const_cast<NSParagraphStyle*>(this);
}

RetainPtr<NSMutableParagraphStyle> NSParagraphStyle::mutableCopy() const
{
    return adopt(new NSMutableParagraphStyle(_values));
}

bool NSParagraphStyle::isEqual(const NSObject* other) const
{
    const auto* style = dynamic_cast<const NSParagraphStyle*>(other);
    return style && style->_values == _values;
}

NSUInteger NSParagraphStyle::hash() const
{
    NSUInteger hash = static_cast<NSUInteger>(_values.alignment) * 8 + _values.lineBreakMode;
    for (const CGFloat number : {_values.lineSpacing, _values.lineHeightMultiple, _values.minimumLineHeight,
             _values.maximumLineHeight})
        hash = hash * 31 + std::hash<CGFloat>()(number);
    return hash;
}

NSString NSParagraphStyle::description() const
{
    return NSString::stringWithFormat("Alignment %ld, LineBreakMode %lu, LineSpacing %g, "
                                      "LineHeightMultiple %g, MinimumLineHeight %g, MaximumLineHeight %g",
        NSInteger(_values.alignment), NSUInteger(_values.lineBreakMode), _values.lineSpacing,
        _values.lineHeightMultiple, _values.minimumLineHeight, _values.maximumLineHeight);
}

NSMutableParagraphStyle::NSMutableParagraphStyle() = default;

NSMutableParagraphStyle::NSMutableParagraphStyle(const Values& values)
    : NSParagraphStyle(values)
{
}

NSMutableParagraphStyle::~NSMutableParagraphStyle() = default;

RetainPtr<NSParagraphStyle> NSMutableParagraphStyle::copy() const
{
    return adopt(new NSParagraphStyle(_values));
}

void NSMutableParagraphStyle::setAlignment(NSTextAlignment alignment)
{
    const bool isKnown = alignment >= NSTextAlignmentLeft && alignment <= NSTextAlignmentNatural;
    _values.alignment = isKnown ? alignment : NSTextAlignmentNatural;
}

void NSMutableParagraphStyle::setLineBreakMode(NSLineBreakMode mode)
{
    _values.lineBreakMode = mode <= NSLineBreakByTruncatingMiddle ? mode : NSLineBreakByWordWrapping;
}

void NSMutableParagraphStyle::setLineSpacing(CGFloat lineSpacing)
{
    _values.lineSpacing = positiveOrZero(lineSpacing);
}

void NSMutableParagraphStyle::setLineHeightMultiple(CGFloat multiple)
{
    _values.lineHeightMultiple = positiveOrZero(multiple);
}

void NSMutableParagraphStyle::setMinimumLineHeight(CGFloat height)
{
    _values.minimumLineHeight = positiveOrZero(height);
}

void NSMutableParagraphStyle::setMaximumLineHeight(CGFloat height)
{
    _values.maximumLineHeight = positiveOrZero(height);
}
