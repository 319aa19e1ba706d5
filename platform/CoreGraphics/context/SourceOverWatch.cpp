#include "CoreGraphics/context/SourceOverWatch.h"

#include "CoreGraphics/context/CGContextInternal.h"

SourceOverWatch::SourceOverWatch(CGContextRef context, Paints paints)
    : _context(context)
    , _previous(context->watch)
    , _layerCount(context->layers.size())
    , _paints(paints == Paints::UntilOtherMode)
{
    _context->watch = this;
}

SourceOverWatch::~SourceOverWatch()
{
    _context->watch = _previous;
}

bool SourceOverWatch::admits(bool isSourceOver)
{
    if (_context->layers.size() > _layerCount)
        return true;
    _hasSeenOtherModes |= !isSourceOver;
    return _paints && !_hasSeenOtherModes;
}

bool CGContext::admits(const Paint& paint) const
{
    if (!watch)
        return true;
    const CGBlendMode mode = state().blendMode;
    const bool isOpaqueCopy =
        mode == kCGBlendModeCopy && paint.isSolid() && paint.bytes()[3] == 255 && !state().shadow;
    return watch->admits(mode == kCGBlendModeNormal || isOpaqueCopy);
}

bool CGContext::admits(CGBlendMode mode) const
{
    return !watch || watch->admits(mode == kCGBlendModeNormal);
}
