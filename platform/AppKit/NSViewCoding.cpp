#include <AppKit/NSView.h>

#include <string>

namespace {

const NSCodingClass<NSView> viewCoding("NSView");

/// The keys of a rectangle's four numbers.
struct RectKeys {
    const char* x;
    const char* y;
    const char* width;
    const char* height;
};
constexpr RectKeys kFrameKeys{"NSFrameX", "NSFrameY", "NSFrameWidth", "NSFrameHeight"};
constexpr RectKeys kBoundsKeys{"NSBoundsX", "NSBoundsY", "NSBoundsWidth", "NSBoundsHeight"};
constexpr const char* kAutoresizingMaskKey = "NSAutoresizingMask";
constexpr const char* kAutoresizesSubviewsKey = "NSAutoresizesSubviews";
constexpr const char* kHiddenKey = "NSHidden";
constexpr const char* kToolTipKey = "NSToolTip";
constexpr const char* kSubviewCountKey = "NSSubviewCount";

NSString subviewKey(NSInteger index)
{
    return NSString("NSSubview" + std::to_string(index));
}

void encodeRect(NSCoder* coder, NSRect rect, const RectKeys& keys)
{
    coder->encodeDouble(rect.origin.x, keys.x);
    coder->encodeDouble(rect.origin.y, keys.y);
    coder->encodeDouble(rect.size.width, keys.width);
    coder->encodeDouble(rect.size.height, keys.height);
}

NSRect decodeRect(NSCoder* coder, const RectKeys& keys)
{
    return NSMakeRect(coder->decodeDoubleForKey(keys.x), coder->decodeDoubleForKey(keys.y),
        coder->decodeDoubleForKey(keys.width), coder->decodeDoubleForKey(keys.height));
}

} // namespace

NSView::NSView(NSCoder* coder)
    : NSView(coder ? decodeRect(coder, kFrameKeys) : NSZeroRect)
{
    if (!coder)
        return;
    if (coder->containsValueForKey(kBoundsKeys.width))
        setBounds(decodeRect(coder, kBoundsKeys));
    _autoresizingMask = NSAutoresizingMaskOptions(coder->decodeIntegerForKey(kAutoresizingMaskKey));
    if (coder->containsValueForKey(kAutoresizesSubviewsKey))
        _autoresizesSubviews = coder->decodeBoolForKey(kAutoresizesSubviewsKey);
    _isHidden = coder->decodeBoolForKey(kHiddenKey);
    _toolTip = coder->decodeStringForKey(kToolTipKey);
    const NSInteger count = coder->decodeIntegerForKey(kSubviewCountKey);
    // A damaged archive may hold any count: stop at the first missing view.
    for (NSInteger i = 0; i < count && coder->containsValueForKey(subviewKey(i)); ++i)
        if (const auto view = coder->decodeObjectOfClass<NSView>(subviewKey(i)))
            addSubview(view);
}

void NSView::encodeWithCoder(NSCoder* coder) const
{
    encodeRect(coder, _frame, kFrameKeys);
    encodeRect(coder, _bounds, kBoundsKeys);
    coder->encodeInteger(NSInteger(_autoresizingMask), kAutoresizingMaskKey);
    coder->encodeBool(_autoresizesSubviews, kAutoresizesSubviewsKey);
    coder->encodeBool(_isHidden, kHiddenKey);
    coder->encodeString(_toolTip, kToolTipKey);
    coder->encodeInteger(NSInteger(_subviews.size()), kSubviewCountKey);
    for (std::size_t i = 0; i < _subviews.size(); ++i)
        coder->encodeObject(_subviews[i].get(), subviewKey(NSInteger(i)));
}
