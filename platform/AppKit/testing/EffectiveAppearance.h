#pragma once

#include <AppKit/NSAppearance.h>

/// Sets the application's effective appearance, whatever the desktop and the application say, until it goes
/// out of scope. One at a time. Makes the application object.
class KORVID_EXPORT EffectiveAppearance {
public:
    explicit EffectiveAppearance(const NSAppearanceName& name);
    EffectiveAppearance(const EffectiveAppearance&) = delete;
    EffectiveAppearance& operator=(const EffectiveAppearance&) = delete;
    /// The desktop and the application decide again.
    ~EffectiveAppearance();

    /// Changes it; observers are notified if it is another one.
    void set(const NSAppearanceName& name);
};
