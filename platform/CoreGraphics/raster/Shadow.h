#pragma once

#include "CoreGraphics/CGColorInternal.h"
#include "CoreGraphics/raster/MaskBlur.h"
#include "CoreGraphics/raster/SmallShape.h"

#include <CoreGraphics/CGGeometry.h>

class Paint;

/// The parameters of the shadow that paints cast.
struct Shadow {
    int byX = 0; ///< offset from the caster in pixels, rows counted downward
    int byY = 0;
    double blur = 0;
    CGColorRGBA color;

    Shadow(CGSize offset, CGFloat blur, const CGColorRGBA& color);

    /// The pixels whose shadow can fall on the given ones.
    PixelRect casting(const PixelRect& pixels) const
    {
        return pixels.moved(-byX, -byY).grown(MaskBlur::reach(blur));
    }
    /// The paint of the shadow that `caster` casts.
    Paint paint(const Paint& caster) const;
};

/// Computes the masks of shadows. Each is valid until the next call.
class ShadowCaster {
public:
    /// The shadow of a paint in a shape, at least in `pixels`.
    MaskRef cast(const Shadow& shadow, const Shape& shape, const Paint& paint, const PixelRect& pixels);
    /// The shadow of a mask, at least in `pixels`.
    MaskView cast(const Shadow& shadow, const MaskView& mask, const PixelRect& pixels);

private:
    MaskKey _key;
    Scratch _memory;
    MaskBlur _blur;
};
