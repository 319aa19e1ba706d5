#include <AppKit/NSGraphicsContext.h>

#include <AppKit/NSBitmapImageRep.h>

#include <CoreGraphics/CGBitmapContext.h>

#include <vector>

namespace {

/// What a thread draws in.
struct ThreadContexts {
    RetainPtr<NSGraphicsContext> current;
    std::vector<RetainPtr<NSGraphicsContext>> remembered; ///< null entries: there was none
};

thread_local ThreadContexts contexts;

} // namespace

NSGraphicsContext::NSGraphicsContext(
    RetainPtr<::CGContext> context, bool flipped, RetainPtr<NSBitmapImageRep> rep)
    : _rep(std::move(rep))
    , _cgContext(std::move(context))
    , _flipped(flipped)
{
}

NSGraphicsContext::~NSGraphicsContext() = default;

RetainPtr<NSGraphicsContext> NSGraphicsContext::graphicsContextWithCGContext(
    RetainPtr<::CGContext> context, bool flipped)
{
    if (!context)
        return nullptr;
    return RetainPtr<NSGraphicsContext>::adopt(new NSGraphicsContext(std::move(context), flipped, nullptr));
}

RetainPtr<NSGraphicsContext> NSGraphicsContext::graphicsContextWithBitmapImageRep(
    RetainPtr<NSBitmapImageRep> rep)
{
    if (!rep)
        return nullptr;
    auto context = rep->createContext();
    if (!context)
        return nullptr;
    return RetainPtr<NSGraphicsContext>::adopt(
        new NSGraphicsContext(std::move(context), false, std::move(rep)));
}

NSGraphicsContext* NSGraphicsContext::currentContext()
{
    return contexts.current.get();
}

void NSGraphicsContext::setCurrentContext(RetainPtr<NSGraphicsContext> context)
{
    contexts.current = std::move(context);
}

void NSGraphicsContext::saveGraphicsState()
{
    contexts.remembered.push_back(contexts.current);
    saveGraphicsState(currentContext());
}

void NSGraphicsContext::restoreGraphicsState()
{
    if (contexts.remembered.empty())
        return;
    contexts.current = std::move(contexts.remembered.back());
    contexts.remembered.pop_back();
    restoreGraphicsState(currentContext());
}

void NSGraphicsContext::saveGraphicsState(NSGraphicsContext* context)
{
    if (context)
        CGContextSaveGState(context->CGContext());
}

void NSGraphicsContext::restoreGraphicsState(NSGraphicsContext* context)
{
    if (context)
        CGContextRestoreGState(context->CGContext());
}

void NSGraphicsContext::flushGraphics()
{
    CGContextFlush(CGContext());
}
