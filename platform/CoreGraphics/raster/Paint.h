#pragma once

#include "CoreGraphics/CGColorInternal.h"
#include "CoreGraphics/raster/Pixels.h"

#include <memory>
#include <optional>

/// Pixels to paint with, in base space. Defined in the folder of the library that draws them.
struct PixelSource;

/// Pixels in memory, which is borrowed and starts at the top left corner of their area.
struct PixelView {
    PixelMemory memory;
    PixelRect area;
};

/// The source that fills a shape: a colour, or pixels.
class Paint {
public:
    /// A solid paint in the clamped colour, its alpha multiplied by `alpha`.
    Paint(const CGColorRGBA& color, CGFloat alpha);
    explicit Paint(std::shared_ptr<const PixelSource> source);
    /// A source of which the pixels of an area are in memory.
    Paint(std::shared_ptr<const PixelSource> source, const PixelView& pixels);

    bool isSolid() const { return !_source; }
    /// The colour in bytes, premultiplied. Only of a solid paint.
    const PixelBytes& bytes() const { return _bytes; }
    /// Only of a paint that is not solid.
    const PixelSource& source() const { return *_source; }
    /// The pixels in memory; null if there are none.
    const PixelView* pixels() const { return _pixels ? &*_pixels : nullptr; }
    /// True when colour and alpha are 0 everywhere.
    bool isTransparent() const { return isSolid() && _bytes[3] == 0; }

private:
    PixelBytes _bytes{};
    std::shared_ptr<const PixelSource> _source;
    std::optional<PixelView> _pixels;
};
