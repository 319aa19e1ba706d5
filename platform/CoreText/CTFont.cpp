#include <CoreText/CTFont.h>

#include "CoreText/FontSystem.h"

#include <Foundation/NSFormat.h>

#include <cmath>

namespace {

constexpr CGFloat kDefaultSize = 12;

FaceMetrics metricsOf(CTFontRef font)
{
    return font ? font->typeface().metrics() : FaceMetrics();
}

} // namespace

CTFont::CTFont(std::shared_ptr<const Typeface> typeface, CGFloat size)
    : _typeface(std::move(typeface))
    , _pointSize(size > 0 && std::isfinite(size) ? size : kDefaultSize)
{
}

CTFont::~CTFont() = default;

bool CTFont::isEqual(const NSObject* other) const
{
    const auto* font = dynamic_cast<const CTFont*>(other);
    return font && font->_pointSize == _pointSize && font->_typeface->name == _typeface->name
        && font->_typeface->family == _typeface->family;
}

NSUInteger CTFont::hash() const
{
    return _typeface->name.hash() ^ std::hash<CGFloat>()(_pointSize);
}

NSString CTFont::description() const
{
    return NSString::stringWithFormat("%@ %.2f pt.", _typeface->name, _pointSize);
}

CTFontRef CTFontCreateWithName(const NSString& name, CGFloat size)
{
    return make<CTFont>(FontSystem::shared().nearestTypeface(name), size).leak();
}

CGFloat CTFontGetSize(CTFontRef font)
{
    return font ? font->pointSize() : 0;
}

CGFloat CTFontGetAscent(CTFontRef font)
{
    return metricsOf(font).ascent * CTFontGetSize(font);
}

CGFloat CTFontGetDescent(CTFontRef font)
{
    return metricsOf(font).descent * CTFontGetSize(font);
}

CGFloat CTFontGetLeading(CTFontRef font)
{
    return metricsOf(font).leading * CTFontGetSize(font);
}

CTFontSymbolicTraits CTFontGetSymbolicTraits(CTFontRef font)
{
    if (!font)
        return {};
    std::uint32_t traits = 0;
    if (font->typeface().isBold)
        traits |= kCTFontTraitBold;
    if (font->typeface().isItalic)
        traits |= kCTFontTraitItalic;
    return CTFontSymbolicTraits(traits);
}

NSString CTFontCopyPostScriptName(CTFontRef font)
{
    return font ? font->typeface().name : NSString();
}

NSString CTFontCopyFamilyName(CTFontRef font)
{
    return font ? font->typeface().family : NSString();
}
