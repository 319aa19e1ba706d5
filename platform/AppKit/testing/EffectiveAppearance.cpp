#include "EffectiveAppearance.h"

#include <AppKit/NSApplication.h>

EffectiveAppearance::EffectiveAppearance(const NSAppearanceName& name)
{
    set(name);
}

EffectiveAppearance::~EffectiveAppearance()
{
    NSApp->_appearanceForTests = nullptr;
    NSApp->updateEffectiveAppearance();
}

void EffectiveAppearance::set(const NSAppearanceName& name)
{
    NSApplication* application = NSApplication::sharedApplication();
    application->_appearanceForTests = NSAppearance::appearanceNamed(name);
    application->updateEffectiveAppearance();
}
