#pragma once

#include "CoreGraphics/CGColorInternal.h"
#include "CoreGraphics/raster/Pixels.h"

#include <memory>

/// Pixels to paint with, in base space. Defined in the folder of the library that draws them.
struct PixelSource;

/// The source that fills a shape: a colour, or pixels.
class Paint {
public:
    /// A solid paint in the clamped colour, its alpha multiplied by `alpha`.
    Paint(const CGColorRGBA& color, CGFloat alpha);
    explicit Paint(std::shared_ptr<const PixelSource> source);

    bool isSolid() const { return !_source; }
    /// The colour in bytes, premultiplied. Only of a solid paint.
    const PixelBytes& bytes() const { return _bytes; }
    /// Only of a paint that is not solid.
    const PixelSource& source() const { return *_source; }
    /// True when colour and alpha are 0 everywhere.
    bool isTransparent() const { return isSolid() && _bytes[3] == 0; }

private:
    PixelBytes _bytes{};
    std::shared_ptr<const PixelSource> _source;
};
