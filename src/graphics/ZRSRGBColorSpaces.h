#pragma once

#include <KorvidAppKit/ZRGraphics.h>

/// Makes sRGB the space of the context's fill and stroke colours, both of which become opaque black.
inline void ZRSetSRGBColorSpaces(CGContextRef context)
{
    const CGColorSpaceRef space = ZRGraphics::sharedGraphics()->csSRGB();
    CGContextSetFillColorSpace(context, space);
    CGContextSetStrokeColorSpace(context, space);
}
