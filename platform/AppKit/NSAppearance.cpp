#include <AppKit/NSAppearance.h>

#include "AppKit/ApplicationAppearance.h"

#include <array>
#include <atomic>
#include <mutex>
#include <unordered_map>

namespace {

/// Set within performAsCurrentDrawingAppearance, null outside. Borrowed: appearances are never destroyed.
thread_local NSAppearance* drawingAppearance = nullptr;

std::atomic<NSAppearance*> applicationAppearance = nullptr;

/// The names that suit the named appearance, the best one first.
std::array<NSString, 3> suitableNames(const NSString& name, bool isDark)
{
    NSString plainContrast;
    if (name == NSAppearanceNameAccessibilityHighContrastVibrantLight)
        plainContrast = NSAppearanceNameVibrantLight;
    else if (name == NSAppearanceNameAccessibilityHighContrastVibrantDark)
        plainContrast = NSAppearanceNameVibrantDark;
    return {name, plainContrast, isDark ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua};
}

bool namesDarkAppearance(const NSString& name)
{
    return name.localizedCaseInsensitiveContainsString("dark")
        || name.localizedCaseInsensitiveContainsString("lightcontent");
}

} // namespace

NSAppearance::NSAppearance(const NSAppearanceName& name)
    : _name(name)
    , _isDark(namesDarkAppearance(name))
{
}

NSAppearance::~NSAppearance() = default;

RetainPtr<NSAppearance> NSAppearance::appearanceNamed(const NSAppearanceName& name)
{
    if (name.length() == 0)
        return nullptr;

    static std::mutex mutex;
    static auto* const appearances = new std::unordered_map<NSString, NSAppearance*>;
    const std::lock_guard lock(mutex);
    NSAppearance*& appearance = (*appearances)[name];
    if (!appearance)
        appearance = new NSAppearance(name);
    return appearance;
}

NSAppearanceName NSAppearance::bestMatchFromAppearancesWithNames(
    std::initializer_list<NSAppearanceName> names) const
{
    for (const NSString& suitable : suitableNames(_name, _isDark))
        for (const NSString& name : names)
            if (name && name == suitable)
                return name;
    for (const NSString& name : names)
        if (name && namesDarkAppearance(name) == _isDark)
            return name;
    return nullptr;
}

NSAppearance* NSAppearance::currentDrawingAppearance()
{
    if (drawingAppearance)
        return drawingAppearance;
    if (NSAppearance* appearance = applicationAppearance.load(std::memory_order_acquire))
        return appearance;
    static NSAppearance* const aqua = appearanceNamed(NSAppearanceNameAqua).get();
    return aqua;
}

void NSAppearance::performAsCurrentDrawingAppearance(const std::function<void()>& block)
{
    if (!block)
        return;

    struct Scope {
        NSAppearance* const before;
        ~Scope() { drawingAppearance = before; }
    };
    const Scope scope{drawingAppearance};
    drawingAppearance = this;
    block();
}

NSString NSAppearance::description() const
{
    return _name;
}

void setApplicationAppearance(NSAppearance* appearance)
{
    applicationAppearance.store(appearance, std::memory_order_release);
}
