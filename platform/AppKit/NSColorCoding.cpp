#include "AppKit/NSColorInternal.h"

namespace {

const NSCodingClass<NSColor> colorCoding("NSColor");

constexpr const char* kSpaceKey = "NSColorSpace";
constexpr const char* kComponentKeys[] = {"NSComponent0", "NSComponent1", "NSComponent2", "NSComponent3"};
constexpr const char* kNameKey = "NSName";
constexpr const char* kLightKey = "NSLight";
constexpr const char* kDarkKey = "NSDark";

} // namespace

void NSColor::encodeWithCoder(NSCoder* coder) const
{
    if (_variants) {
        coder->encodeString(_variants->name, kNameKey);
        coder->encodeObject(_variants->light, kLightKey);
        coder->encodeObject(_variants->dark, kDarkKey);
    } else if (_space) {
        coder->encodeString(_space->_name, kSpaceKey);
        for (NSInteger i = 0; i <= _space->numberOfColorComponents(); ++i)
            coder->encodeDouble(_components[i], kComponentKeys[i]);
    }
}

RetainPtr<NSObject> NSColor::initWithCoder(NSCoder* coder)
{
    if (coder->containsValueForKey(kNameKey)) {
        const NSString name = coder->decodeStringForKey(kNameKey);
        auto light = coder->decodeObjectOfClass<NSColor>(kLightKey);
        auto dark = coder->decodeObjectOfClass<NSColor>(kDarkKey);
        if (!name || !light || !light->_space || !dark || !dark->_space)
            return nullptr;
        return makeCatalogColor(name, std::move(light), std::move(dark));
    }

    NSColorSpace* const space = NSColorSpace::named(coder->decodeStringForKey(kSpaceKey));
    if (!space)
        return nullptr;
    std::array<CGFloat, 4> components{};
    for (NSInteger i = 0; i <= space->numberOfColorComponents(); ++i) {
        if (!coder->containsValueForKey(kComponentKeys[i]))
            return nullptr;
        components[i] = coder->decodeDoubleForKey(kComponentKeys[i]);
    }
    return create(space, components);
}
