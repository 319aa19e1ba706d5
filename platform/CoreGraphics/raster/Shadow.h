#pragma once

#include "CoreGraphics/CGColorInternal.h"
#include "CoreGraphics/raster/CoverageBlur.h"
#include "CoreGraphics/raster/SmallShape.h"

#include <CoreGraphics/CGGeometry.h>

class Paint;

/// What everything that is painted casts.
struct Shadow {
    int byX = 0; ///< pixels from what casts it, rows counted downward
    int byY = 0;
    double blur = 0;
    CGColorRGBA color;

    Shadow(CGSize offset, CGFloat blur, const CGColorRGBA& color);

    /// The pixels that can cast this into some others.
    PixelRect casting(const PixelRect& pixels) const
    {
        return pixels.moved(-byX, -byY).grown(CoverageBlur::reach(blur));
    }
    /// What it is painted in when cast by a paint.
    Paint paint(const Paint& caster) const;
};

/// Works out where shadows fall, and how dense. Each lasts until the next one is asked for.
class ShadowCaster {
public:
    /// What a paint in a shape casts, at least in `pixels`. `height` is that of all the pixels.
    LentCoverage cast(
        const Shadow& shadow, const Shape& shape, const Paint& paint, const PixelRect& pixels, int height);
    /// What a coverage casts, at least in `pixels`.
    CoverageView cast(const Shadow& shadow, const CoverageView& coverage, const PixelRect& pixels);

private:
    CoverageKey _key;
    Scratch _memory;
    CoverageBlur _blur;
};
