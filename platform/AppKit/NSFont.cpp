#include <AppKit/NSFont.h>

#include "CoreText/FontSystem.h"

#include <cmath>

namespace {

RetainPtr<NSFont> makeSystemFont(const NSString& name, CGFloat size)
{
    const bool isSize = size > 0 && std::isfinite(size);
    return make<NSFont>(FontSystem::shared().nearestTypeface(name), isSize ? size : 13);
}

} // namespace

NSFont::~NSFont() = default;

RetainPtr<NSFont> NSFont::fontWithName(const NSString& name, CGFloat size)
{
    auto typeface = FontSystem::shared().typefaceNamed(name);
    return typeface ? make<NSFont>(std::move(typeface), size) : nullptr;
}

RetainPtr<NSFont> NSFont::systemFontOfSize(CGFloat size)
{
    return makeSystemFont("Helvetica", size);
}

RetainPtr<NSFont> NSFont::boldSystemFontOfSize(CGFloat size)
{
    return makeSystemFont("Helvetica Bold", size);
}
