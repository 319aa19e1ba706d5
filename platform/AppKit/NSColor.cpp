#include <AppKit/NSColor.h>

#include "AppKit/HSB.h"
#include "AppKit/NSColorInternal.h"
#include "CoreGraphics/CGColorInternal.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSGraphicsContext.h>

#include <algorithm>
#include <charconv>
#include <string>

namespace {

NSUInteger combinedHash(NSUInteger hash, NSUInteger more)
{
    return (hash ^ more) * 0x9E3779B97F4A7C15;
}

} // namespace

NSColor::NSColor() = default;

NSColor::NSColor(NSColorSpace* space, const std::array<CGFloat, 4>& components)
    : _space(space)
    , _components(components)
{
}

NSColor::NSColor(const NSString& name, RetainPtr<NSColor> light, RetainPtr<NSColor> dark)
    : _variants(new Variants{name, std::move(light), std::move(dark)})
{
}

NSColor::~NSColor()
{
    CGColorRelease(_cgColor.load(std::memory_order_acquire));
}

RetainPtr<NSColor> NSColor::create(NSColorSpace* space, const std::array<CGFloat, 4>& components)
{
    return RetainPtr<NSColor>::adopt(new NSColor(space, components));
}

RetainPtr<NSColor> makeCatalogColor(const NSString& name, RetainPtr<NSColor> light, RetainPtr<NSColor> dark)
{
    return RetainPtr<NSColor>::adopt(new NSColor(name, std::move(light), std::move(dark)));
}

RetainPtr<NSColor> NSColor::colorWithColorSpace(
    NSColorSpace* space, const CGFloat* components, NSInteger count)
{
    if (!space || !components || count != space->numberOfColorComponents() + 1)
        return nullptr;
    std::array<CGFloat, 4> all{};
    std::copy_n(components, count, all.begin());
    return create(space, all);
}

RetainPtr<NSColor> NSColor::colorWithCGColor(RetainPtr<::CGColor> color)
{
    const auto space = NSColorSpace::initWithCGColorSpace(CGColorGetColorSpace(color));
    if (!space)
        return nullptr;
    auto result = create(space, color->components);
    result->_cgColor = color.leak();
    return result;
}

NSColorType NSColor::type() const
{
    if (_space)
        return NSColorTypeComponentBased;
    return _variants ? NSColorTypeCatalog : NSColorTypePattern;
}

const NSColor& NSColor::inForce() const
{
    if (!_variants)
        return *this;
    return NSAppearance::currentDrawingAppearance()->_isDark ? *_variants->dark : *_variants->light;
}

CGFloat NSColor::alphaComponent() const
{
    const NSColor& color = inForce();
    return color._space ? color._components[color._space->numberOfColorComponents()] : 1;
}

RetainPtr<NSColor> NSColor::colorWithAlphaComponent(CGFloat alpha) const
{
    if (_variants)
        return makeCatalogColor(_variants->name, _variants->light->colorWithAlphaComponent(alpha),
            _variants->dark->colorWithAlphaComponent(alpha));
    if (!_space)
        return nullptr;
    auto components = _components;
    components[_space->numberOfColorComponents()] = unitClamped(alpha);
    return create(_space, components);
}

RetainPtr<NSColor> NSColor::colorUsingColorSpace(NSColorSpace* space) const
{
    const NSColor& color = inForce();
    if (!space || !color._space)
        return nullptr;
    if (space == color._space)
        return const_cast<NSColor*>(&color); // immutable, but for its reference count
    const CGColorRGBA rgba = color._space->CGColorSpace()->rgba(color._components.data());
    return create(space, space->CGColorSpace()->components(rgba));
}

RetainPtr<NSColor> NSColor::blendedColorWithFraction(CGFloat fraction, const NSColor* color) const
{
    NSColorSpace* const space = NSColorSpace::sRGBColorSpace();
    const auto from = colorUsingColorSpace(space);
    const auto to = color ? color->colorUsingColorSpace(space) : nullptr;
    if (!from || !to)
        return nullptr;
    // A colour is immutable but for its reference count, so that no copy is needed.
    const double part = unitClamped(fraction);
    if (part == 0)
        return const_cast<NSColor*>(this);
    if (part == 1)
        return const_cast<NSColor*>(color);
    std::array<CGFloat, 4> mixture{};
    for (std::size_t i = 0; i < mixture.size(); ++i)
        mixture[i] = from->_components[i] * (1 - part) + to->_components[i] * part;
    return create(space, mixture);
}

CGColorRef NSColor::CGColor() const
{
    const NSColor& color = inForce();
    if (!color._space)
        return nullptr;
    CGColorRef kept = color._cgColor.load(std::memory_order_acquire);
    if (kept)
        return kept;

    // Two threads may get here at once: both return the colour of the first.
    auto made = adopt(CGColorCreate(color._space->CGColorSpace(), color._components.data()));
    if (color._cgColor.compare_exchange_strong(kept, made, std::memory_order_acq_rel))
        return made.leak();
    return kept;
}

void NSColor::set() const
{
    setFill();
    setStroke();
}

void NSColor::setFill() const
{
    if (const NSGraphicsContext* context = NSGraphicsContext::currentContext())
        CGContextSetFillColorWithColor(context->CGContext(), CGColor());
}

void NSColor::setStroke() const
{
    if (const NSGraphicsContext* context = NSGraphicsContext::currentContext())
        CGContextSetStrokeColorWithColor(context->CGContext(), CGColor());
}

bool NSColor::isEqual(const NSObject* other) const
{
    if (other == this)
        return true;
    const auto* color = dynamic_cast<const NSColor*>(other);
    if (!color)
        return false;
    if (_variants && color->_variants)
        return _variants->name == color->_variants->name && _variants->light->isEqual(color->_variants->light)
            && _variants->dark->isEqual(color->_variants->dark);
    return _space && _space == color->_space && _components == color->_components;
}

NSUInteger NSColor::hash() const
{
    if (_variants)
        return combinedHash(
            combinedHash(_variants->name.hash(), _variants->light->hash()), _variants->dark->hash());
    if (!_space)
        return NSObject::hash();
    NSUInteger hash = _space->hash();
    for (CGFloat component : _components)
        hash = combinedHash(hash, std::hash<CGFloat>()(component));
    return hash;
}

NSString NSColor::description() const
{
    if (_variants)
        return NSString("Catalog color: ").stringByAppendingString(_variants->name);
    if (!_space)
        return NSObject::description();
    std::string text = _space->description().UTF8String();
    for (NSInteger i = 0; i <= _space->numberOfColorComponents(); ++i) {
        char digits[32];
        const auto end = std::to_chars(digits, digits + sizeof digits, _components[i]).ptr;
        text.append(" ").append(digits, end);
    }
    return NSString(text);
}
