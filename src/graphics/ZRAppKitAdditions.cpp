#include <KorvidAppKit/ZRAppKitAdditions.h>

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSColor.h>
#include <Foundation/NSData.h>
#include <Foundation/NSKeyedArchiver.h>
#include <Foundation/NSUserDefaults.h>

namespace {

/// The cached appearance: 0 before the first update, 1 light, 2 dark.
std::int32_t gZRCachedAppearance = 0;

RetainPtr<NSColor> inSRGB(const NSColor* color)
{
    return color ? color->colorUsingColorSpace(NSColorSpace::sRGBColorSpace()) : nullptr;
}

/// Writes each component whose pointer is not null.
void write(const CGFloat (&components)[4], double* first, double* second, double* third, double* alpha)
{
    double* const targets[] = {first, second, third, alpha};
    for (int i = 0; i < 4; ++i) {
        if (targets[i])
            *targets[i] = components[i];
    }
}

} // namespace

namespace ZRAppKitAdditions {

bool SRGBGetHue(const NSColor* color, double* hue, double* saturation, double* brightness, double* alpha)
{
    const auto converted = inSRGB(color);
    if (!converted)
        return false;
    CGFloat components[4]{};
    converted->getHue(&components[0], &components[1], &components[2], &components[3]);
    write(components, hue, saturation, brightness, alpha);
    return true;
}

bool SRGBGetRed(const NSColor* color, double* red, double* green, double* blue, double* alpha)
{
    const auto converted = inSRGB(color);
    if (!converted)
        return false;
    CGFloat components[4]{};
    converted->getRed(&components[0], &components[1], &components[2], &components[3]);
    write(components, red, green, blue, alpha);
    return true;
}

RetainPtr<NSColor> colorForKey(NSUserDefaults* defaults, const NSString& key)
{
    if (!defaults)
        return nullptr;
    const auto stored = NSUserDefaults::standardUserDefaults()->objectForKey(key);
    return NSKeyedUnarchiver::unarchivedObjectOfClass<NSColor>(dynamic_cast<NSData*>(stored.get()));
}

void setColor(NSUserDefaults* defaults, RetainPtr<const NSColor> color, const NSString& key)
{
    if (!defaults)
        return;
    const auto archive = NSKeyedArchiver::archivedDataWithRootObject(color, true);
    NSUserDefaults::standardUserDefaults()->setObject(archive, key);
}

void updateCachedEffectiveAppearance(NSApplication* application)
{
    if (!application)
        return;
    const NSString name = application->effectiveAppearance()->name();
    // An appearance for light content has a dark ground.
    const bool isDark = name.localizedCaseInsensitiveContainsString("dark")
        || name.localizedCaseInsensitiveContainsString("lightcontent");
    gZRCachedAppearance = isDark ? 2 : 1;
}

std::int32_t effectiveAppearanceCompat(NSApplication* application)
{
    return application ? gZRCachedAppearance : 0;
}

} // namespace ZRAppKitAdditions
