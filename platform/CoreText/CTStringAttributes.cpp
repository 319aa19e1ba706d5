#include <CoreText/CTStringAttributes.h>

const NSString kCTFontAttributeName = "NSFont";
const NSString kCTKernAttributeName = "NSKern";
const NSString kCTForegroundColorAttributeName = "NSColor";

CTBoxedColor::CTBoxedColor(CGColorRef color)
    : _color(color)
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

RetainPtr<CTBoxedColor> box(CGColorRef color)
{
    return color ? make<CTBoxedColor>(color) : nullptr;
}
