#include "CoreGraphics/context/CGContextInternal.h"

#include "CoreGraphics/CGLog.h"
#include "CoreGraphics/raster/Dashing.h"

namespace {

void setSpace(StateColor& color, CGColorSpaceRef space)
{
    static constexpr CGFloat kBlack[][4] = {{0, 1}, {0, 0, 0, 1}};
    color.space = space;
    color.paintsNothing = space->kind == CGColorSpace::Kind::Pattern;
    if (!color.paintsNothing)
        color.color = space->rgba(kBlack[space->componentCount() == 3]);
}

void setComponents(StateColor& color, const CGFloat* components)
{
    if (!color.paintsNothing)
        color.color = color.space->rgba(components);
}

void setColor(StateColor& color, CGColorRef value)
{
    color = {.space = value->space, .color = value->rgba()};
}

void setRGB(StateColor& color, const CGColorRGBA& rgba)
{
    color = {.space = adopt(CGColorSpaceCreateDeviceRGB()), .color = rgba};
}

void setGray(StateColor& color, CGFloat gray, CGFloat alpha)
{
    color = {.space = adopt(CGColorSpaceCreateDeviceGray()), .color = {gray, gray, gray, alpha}};
}

} // namespace

void CGContextSetLineWidth(CGContextRef context, CGFloat width)
{
    if (context)
        context->state().line.setWidth(width);
}

void CGContextSetLineCap(CGContextRef context, CGLineCap cap)
{
    if (context)
        context->state().line.setCap(cap);
}

void CGContextSetLineJoin(CGContextRef context, CGLineJoin join)
{
    if (context)
        context->state().line.setJoin(join);
}

void CGContextSetMiterLimit(CGContextRef context, CGFloat limit)
{
    if (context)
        context->state().line.setMiterLimit(limit);
}

void CGContextSetLineDash(CGContextRef context, CGFloat phase, const CGFloat* lengths, std::size_t count)
{
    if (context)
        setDashes(context->state().line, phase, lengths, count);
}

void CGContextSetFillColorSpace(CGContextRef context, CGColorSpaceRef space)
{
    if (context && space)
        setSpace(context->state().fill, space);
}

void CGContextSetStrokeColorSpace(CGContextRef context, CGColorSpaceRef space)
{
    if (context && space)
        setSpace(context->state().stroke, space);
}

void CGContextSetFillColor(CGContextRef context, const CGFloat* components)
{
    if (context && components)
        setComponents(context->state().fill, components);
}

void CGContextSetStrokeColor(CGContextRef context, const CGFloat* components)
{
    if (context && components)
        setComponents(context->state().stroke, components);
}

void CGContextSetFillColorWithColor(CGContextRef context, CGColorRef color)
{
    if (context && color)
        setColor(context->state().fill, color);
}

void CGContextSetStrokeColorWithColor(CGContextRef context, CGColorRef color)
{
    if (context && color)
        setColor(context->state().stroke, color);
}

void CGContextSetRGBFillColor(CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    if (context)
        setRGB(context->state().fill, {red, green, blue, alpha});
}

void CGContextSetRGBStrokeColor(CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
{
    if (context)
        setRGB(context->state().stroke, {red, green, blue, alpha});
}

void CGContextSetGrayFillColor(CGContextRef context, CGFloat gray, CGFloat alpha)
{
    if (context)
        setGray(context->state().fill, gray, alpha);
}

void CGContextSetGrayStrokeColor(CGContextRef context, CGFloat gray, CGFloat alpha)
{
    if (context)
        setGray(context->state().stroke, gray, alpha);
}

void CGContextSetAlpha(CGContextRef context, CGFloat alpha)
{
    if (context)
        context->state().alpha = alpha > 0 ? std::min(alpha, 1.0) : 0; // NaN too
}

void CGContextSetBlendMode(CGContextRef context, CGBlendMode mode)
{
    if (!context)
        return;
    if (!isBlendMode(mode))
        return CGLogMisuse(__func__, "nothing changes: this blend mode is not offered");
    context->state().blendMode = mode;
}

void CGContextSetShouldAntialias(CGContextRef context, bool shouldAntialias)
{
    if (context)
        context->state().isAntialiased = shouldAntialias;
}

void CGContextSetAllowsFontSubpixelQuantization(CGContextRef context, bool allowsQuantization)
{
    if (context)
        context->state().allowsGlyphQuantization = allowsQuantization;
}

void CGContextSetShouldSubpixelQuantizeFonts(CGContextRef context, bool shouldQuantize)
{
    if (context)
        context->state().shouldQuantizeGlyphs = shouldQuantize;
}

void CGContextSetAllowsFontSmoothing(CGContextRef, bool) { }

void CGContextSetShouldSmoothFonts(CGContextRef, bool) { }

void CGContextSetInterpolationQuality(CGContextRef context, CGInterpolationQuality quality)
{
    const bool isKnown = quality >= kCGInterpolationDefault && quality <= kCGInterpolationMedium;
    if (context)
        context->state().interpolation = isKnown ? quality : kCGInterpolationDefault;
}

CGInterpolationQuality CGContextGetInterpolationQuality(CGContextRef context)
{
    return context ? context->state().interpolation : kCGInterpolationDefault;
}

void CGContextFlush(CGContextRef) { }

void CGContextSynchronize(CGContextRef) { }
