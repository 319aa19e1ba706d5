#include "AppKit/NSColorInternal.h"

#include <Foundation/NSArray.h>
#include <Foundation/NSBundle.h>
#include <Foundation/NSData.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSJSONSerialization.h>
#include <Foundation/NSNumber.h>

#include <charconv>
#include <cmath>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace {

template <class T> const T* objectOfClass(const NSDictionary& dictionary, const char* key)
{
    return dynamic_cast<const T*>(dictionary.objectForKey(key));
}

/// All of `text` as a number; nothing when something is left over.
template <class Number, class... Format>
std::optional<Number> wholeNumber(std::string_view text, Format... format)
{
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number, format...);
    if (error != std::errc() || rest != end)
        return std::nullopt;
    return number;
}

std::optional<double> byteFraction(std::string_view digits, int base)
{
    const auto byte = wholeNumber<unsigned>(digits, base);
    if (!byte || *byte > 255)
        return std::nullopt;
    return *byte / 255.0;
}

/// The notations of a component: whole numbers are of 255, but for alpha.
std::optional<double> parsedComponent(const std::string& text, bool isAlpha)
{
    if (text.starts_with("0x") || text.starts_with("0X"))
        return byteFraction(std::string_view(text).substr(2), 16);
    if (!isAlpha && text.find('.') == std::string::npos)
        return byteFraction(text, 10);
    return wholeNumber<double>(text, std::chars_format::fixed);
}

std::optional<double> component(const NSDictionary& components, const char* key, bool isExtended)
{
    const bool isAlpha = std::string_view(key) == "alpha";
    std::optional<double> value;
    if (const NSString text = components.stringForKey(key))
        value = parsedComponent(text.UTF8String(), isAlpha);
    else if (const auto* number = objectOfClass<NSNumber>(components, key);
             number && number->kind() != NSNumber::Kind::Boolean)
        value = number->doubleValue();
    else if (isAlpha && !components.objectForKey(key))
        value = 1;

    const bool mayExceed = isExtended && !isAlpha;
    if (!value || !std::isfinite(*value) || (!mayExceed && (*value < 0 || *value > 1)))
        return std::nullopt;
    return value;
}

/// The colour that a "color" object describes; null when it makes no sense.
RetainPtr<NSColor> parsedColor(const NSDictionary& description)
{
    const auto* components = objectOfClass<NSDictionary>(description, "components");
    if (!components)
        return nullptr;

    const NSString space = description.stringForKey("color-space");
    const bool isExtended = space.hasPrefix("extended-");
    const auto alpha = component(*components, "alpha", isExtended);
    if (space == "srgb" || space == "extended-srgb") {
        const auto red = component(*components, "red", isExtended);
        const auto green = component(*components, "green", isExtended);
        const auto blue = component(*components, "blue", isExtended);
        return red && green && blue && alpha ? NSColor::colorWithSRGBRed(*red, *green, *blue, *alpha)
                                             : nullptr;
    }
    if (space == "gray-gamma-22" || space == "extended-gray") {
        const auto white = component(*components, "white", isExtended);
        return white && alpha ? NSColor::colorWithGenericGamma22White(*white, *alpha) : nullptr;
    }
    return nullptr;
}

/// The colours of a file for one kind of appearance.
struct Slot {
    RetainPtr<NSColor> color;
    bool isForMac = false;

    void offer(RetainPtr<NSColor> other, bool otherIsForMac)
    {
        if (color && (isForMac || !otherIsForMac))
            return;
        color = std::move(other);
        isForMac = otherIsForMac;
    }
};

struct Slots {
    Slot any;
    Slot light;
    Slot dark;

    /// Where an entry for those appearances belongs; null when it does not count.
    Slot* slotForAppearances(const NSArray* appearances)
    {
        if (!appearances || appearances->count() == 0)
            return &any;
        const auto* appearance = dynamic_cast<const NSDictionary*>(appearances->firstObject());
        if (appearances->count() > 1 || !appearance
            || appearance->stringForKey("appearance") != NSString("luminosity"))
            return nullptr;
        const NSString value = appearance->stringForKey("value");
        return value == "light" ? &light : value == "dark" ? &dark : nullptr;
    }

    /// False when the entry is damaged.
    bool add(const NSDictionary& entry)
    {
        const NSString idiom = entry.stringForKey("idiom");
        const NSString gamut = entry.stringForKey("display-gamut");
        Slot* const slot = slotForAppearances(objectOfClass<NSArray>(entry, "appearances"));
        const NSObject* const description = entry.objectForKey("color");
        if (!slot || !description || (idiom && idiom != NSString("universal") && idiom != NSString("mac"))
            || (gamut && gamut != NSString("sRGB")))
            return true;

        const auto* dictionary = dynamic_cast<const NSDictionary*>(description);
        auto color = dictionary ? parsedColor(*dictionary) : nullptr;
        if (!color)
            return false;
        slot->offer(std::move(color), idiom == "mac");
        return true;
    }
};

} // namespace

RetainPtr<NSColor> makeColorOfAsset(const NSData& contents, const NSString& name)
{
    const auto json = NSJSONSerialization::JSONObjectWithData(&contents, 0);
    const auto* root = dynamic_cast<const NSDictionary*>(json.get());
    const auto* entries = root ? objectOfClass<NSArray>(*root, "colors") : nullptr;
    if (!entries)
        return nullptr;

    Slots slots;
    for (const auto& object : *entries) {
        const auto* entry = dynamic_cast<const NSDictionary*>(object.get());
        if (!entry || !slots.add(*entry))
            return nullptr;
    }
    auto light = slots.light.color ? slots.light.color : slots.any.color;
    auto dark = slots.dark.color ? slots.dark.color : slots.any.color;
    if (!light || !dark)
        return nullptr;
    return makeCatalogColor(name, std::move(light), std::move(dark));
}

RetainPtr<NSColor> NSColor::colorNamed(const NSString& name)
{
    if (name.length() == 0)
        return nullptr;
    const NSString folder = NSString("Colors.xcassets/").stringByAppendingString(name);
    const NSString path = NSBundle::mainBundle()->pathForResource(
        "Contents", "json", folder.stringByAppendingString(".colorset"));
    if (!path)
        return nullptr;

    static std::mutex mutex;
    static auto* const colors = new std::unordered_map<NSString, RetainPtr<NSColor>>;
    const std::lock_guard lock(mutex);
    const auto [entry, isNew] = colors->try_emplace(path);
    if (isNew) {
        if (const auto contents = NSData::dataWithContentsOfFile(path))
            entry->second = makeColorOfAsset(*contents, name);
    }
    return entry->second;
}
