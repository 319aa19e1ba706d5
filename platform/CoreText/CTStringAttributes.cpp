#include <CoreText/CTStringAttributes.h>

const NSString kCTFontAttributeName = "NSFont";
const NSString kCTKernAttributeName = "NSKern";
const NSString kCTForegroundColorAttributeName = "NSColor";

CTBoxedColor::CTBoxedColor(RetainPtr<::CGColor> color)
    : _color(std::move(color))
{
}

CTBoxedColor::~CTBoxedColor() = default;

bool CTBoxedColor::isEqual(const NSObject* other) const
{
    const auto* color = dynamic_cast<const CTBoxedColor*>(other);
    return color && CGColorEqualToColor(color->CGColor(), CGColor());
}

NSUInteger CTBoxedColor::hash() const
{
    return std::hash<CGFloat>()(CGColorGetAlpha(CGColor()));
}

RetainPtr<CTBoxedColor> box(RetainPtr<CGColor> color)
{
    return color ? make<CTBoxedColor>(std::move(color)) : nullptr;
}
