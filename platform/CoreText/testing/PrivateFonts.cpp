#include "CoreText/testing/PrivateFonts.h"

#include "CoreGraphics/raster/GlyphMasks.h"

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

std::size_t glyphMaskByteCount()
{
    return GlyphMaskCache::shared().byteCount();
}
