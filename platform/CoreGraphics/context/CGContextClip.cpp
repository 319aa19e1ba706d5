#include "CoreGraphics/context/CGContextInternal.h"

namespace {

void clipToPath(CGContextRef context, bool isEvenOdd)
{
    if (CGContextIsPathEmpty(context))
        return;
    context->state().clip.intersect(context->pathShape(isEvenOdd));
    context->path.clear();
}

} // namespace

void CGContextClip(CGContextRef context)
{
    clipToPath(context, false);
}

void CGContextEOClip(CGContextRef context)
{
    clipToPath(context, true);
}

void CGContextClipToRect(CGContextRef context, CGRect rect)
{
    if (!context)
        return;
    context->path.clear();
    context->state().clip.intersect(context->rectShape(rect));
}

void CGContextClipToRects(CGContextRef context, const CGRect* rects, std::size_t count)
{
    CGContextBeginPath(context);
    CGContextAddRects(context, rects, count);
    CGContextClip(context);
}

CGRect CGContextGetClipBoundingBox(CGContextRef context)
{
    if (!context || context->state().clip.bounds().isEmpty())
        return CGRectNull;
    const CGRect base = context->space().baseRect(context->state().clip.bounds());
    return CGRectApplyAffineTransform(base, context->state().userFromBase());
}
