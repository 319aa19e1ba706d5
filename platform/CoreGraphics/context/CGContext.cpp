#include "CoreGraphics/context/CGContextInternal.h"

#include "CoreGraphics/CGLog.h"

namespace {

PixelLayout layoutOf(CGImageAlphaInfo alphaInfo)
{
    switch (alphaInfo) {
    case kCGImageAlphaOnly:
        return PixelLayout::Alpha;
    case kCGImageAlphaNoneSkipLast:
        return PixelLayout::RGBX;
    default:
        return PixelLayout::RGBA;
    }
}

Compositor makeCompositor(const BitmapProperties& bitmap)
{
    const PixelMemory memory{
        static_cast<unsigned char*>(bitmap.data), bitmap.bytesPerRow, layoutOf(bitmap.alphaInfo())};
    const PixelSpace space{int(bitmap.width), int(bitmap.height)};
    const PixelRect area = space.bounds();
    return {memory, area, space};
}

StateColor makeBlack()
{
    return {.space = adopt(CGColorSpaceCreateDeviceGray())};
}

void concat(CGContextRef context, const CGAffineTransform& transform)
{
    CGAffineTransform& baseFromUser = context->state().baseFromUser;
    baseFromUser = CGAffineTransformConcat(transform, baseFromUser);
}

/// The identity when the CTM has no inverse.
CGAffineTransform userFromDevice(CGContextRef context)
{
    return inverse(CGContextGetUserSpaceToDeviceSpaceTransform(context)).value_or(CGAffineTransformIdentity);
}

} // namespace

CGContext::CGContext(const BitmapProperties& properties)
    : bitmap(properties)
    , compositor(makeCompositor(bitmap))
    , rectPath(adopt(CGPathCreateMutable()))
    , textPath(adopt(CGPathCreateMutable()))
{
    GraphicsState& state = states.emplace_back();
    state.clip = Clip(space().bounds());
    state.fill = makeBlack();
    state.stroke = makeBlack();
}

CGContext::~CGContext()
{
    if (bitmap.releaseData)
        bitmap.releaseData(bitmap.releaseInfo, bitmap.data);
}

CGContextRef CGContextRetain(CGContextRef context)
{
    return CGRetainRecord(context);
}

void CGContextRelease(CGContextRef context)
{
    CGReleaseRecord(context);
}

void CGContextSaveGState(CGContextRef context)
{
    if (context)
        context->states.push_back(context->state());
}

void CGContextRestoreGState(CGContextRef context)
{
    if (!context)
        return;
    while (!context->layers.empty() && context->states.size() == context->layers.back().stateCount) {
        CGLogMisuse(__func__, "a transparency layer that was not ended is ended");
        context->endLayer();
    }
    if (context->states.size() == 1)
        return CGLogMisuse(__func__, "nothing changes: no graphics state was saved");
    context->states.pop_back();
}

void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty)
{
    if (context)
        concat(context, CGAffineTransformMakeTranslation(tx, ty));
}

void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy)
{
    if (context)
        concat(context, CGAffineTransformMakeScale(sx, sy));
}

void CGContextRotateCTM(CGContextRef context, CGFloat angle)
{
    if (context)
        concat(context, CGAffineTransformMakeRotation(angle));
}

void CGContextConcatCTM(CGContextRef context, CGAffineTransform transform)
{
    if (context)
        concat(context, transform);
}

CGAffineTransform CGContextGetCTM(CGContextRef context)
{
    return context ? context->state().baseFromUser : CGAffineTransformIdentity;
}

CGAffineTransform CGContextGetUserSpaceToDeviceSpaceTransform(CGContextRef context)
{
    if (!context)
        return CGAffineTransformIdentity;
    return CGAffineTransformConcat(context->state().baseFromUser, context->space().flip());
}

CGPoint CGContextConvertPointToDeviceSpace(CGContextRef context, CGPoint point)
{
    return CGPointApplyAffineTransform(point, CGContextGetUserSpaceToDeviceSpaceTransform(context));
}

CGPoint CGContextConvertPointToUserSpace(CGContextRef context, CGPoint point)
{
    return CGPointApplyAffineTransform(point, userFromDevice(context));
}

CGSize CGContextConvertSizeToDeviceSpace(CGContextRef context, CGSize size)
{
    return CGSizeApplyAffineTransform(size, CGContextGetUserSpaceToDeviceSpaceTransform(context));
}

CGSize CGContextConvertSizeToUserSpace(CGContextRef context, CGSize size)
{
    return CGSizeApplyAffineTransform(size, userFromDevice(context));
}

CGRect CGContextConvertRectToDeviceSpace(CGContextRef context, CGRect rect)
{
    return CGRectApplyAffineTransform(rect, CGContextGetUserSpaceToDeviceSpaceTransform(context));
}

CGRect CGContextConvertRectToUserSpace(CGContextRef context, CGRect rect)
{
    return CGRectApplyAffineTransform(rect, userFromDevice(context));
}
