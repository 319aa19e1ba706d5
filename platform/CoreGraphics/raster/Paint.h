#pragma once

#include "CoreGraphics/CGColorInternal.h"
#include "CoreGraphics/raster/Pixels.h"

class PixelSource;

/// The source that fills a shape: a colour, or pixels.
class Paint {
public:
    /// A solid paint in the clamped colour, its alpha multiplied by `alpha`.
    Paint(const CGColorRGBA& color, CGFloat alpha);
    /// Borrows the pixels.
    explicit Paint(PixelSource& pixels)
        : _pixels(&pixels)
    {
    }

    bool isSolid() const { return !_pixels; }
    /// The colour in bytes, premultiplied. Only of a solid paint.
    const PixelBytes& bytes() const { return _bytes; }
    /// Only of a paint that is not solid.
    PixelSource& pixels() const { return *_pixels; }
    /// True when colour and alpha are 0 everywhere.
    bool isTransparent() const { return isSolid() && _bytes[3] == 0; }

private:
    PixelBytes _bytes{};
    PixelSource* _pixels = nullptr;
};
