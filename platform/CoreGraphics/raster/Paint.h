#pragma once

#include "CoreGraphics/CGColorInternal.h"
#include "CoreGraphics/cairo/CairoPtr.h"
#include "CoreGraphics/raster/SolidRows.h"

/// What fills a shape: a colour, or pixels.
class Paint {
public:
    /// The colour as it is drawn, its alpha multiplied by `alpha`.
    Paint(const CGColorRGBA& color, CGFloat alpha);
    /// A source in base space.
    explicit Paint(CairoPtr<cairo_pattern_t> pattern);

    bool isSolid() const { return !_pattern; }
    /// The colour in bytes, premultiplied. Only of a solid paint.
    const PixelBytes& bytes() const { return _bytes; }
    /// True when it has no colour and no alpha anywhere.
    bool isTransparent() const { return isSolid() && _bytes[3] == 0; }

    /// Makes this the source of a cairo that draws in base space.
    void setSource(cairo_t* cairo) const;

private:
    PixelBytes _bytes{};
    CairoPtr<cairo_pattern_t> _pattern;
};
