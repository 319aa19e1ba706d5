#include "CoreText/testing/PrivateFonts.h"

PrivateFonts::PrivateFonts(const NSString& folder)
    : _system(std::make_unique<FontSystem>(folder))
{
    FontSystem::setShared(_system.get());
}

PrivateFonts::~PrivateFonts()
{
    FontSystem::setShared(nullptr);
}

FontWork fontWork()
{
    return FontSystem::shared().work();
}
