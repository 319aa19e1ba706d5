#pragma once

#include <AppKit/NSAppearance.h>

/// Overrides the application's effective appearance while in scope. One at a time. Makes the application
/// object.
class KORVID_EXPORT EffectiveAppearance {
public:
    explicit EffectiveAppearance(const NSAppearanceName& name);
    EffectiveAppearance(const EffectiveAppearance&) = delete;
    EffectiveAppearance& operator=(const EffectiveAppearance&) = delete;
    /// Ends the override.
    ~EffectiveAppearance();

    /// Changes it; observers are notified if it is another one.
    void set(const NSAppearanceName& name);
};
