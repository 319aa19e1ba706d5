#pragma once

#include "CoreGraphics/raster/Pixels.h"

#include <CoreGraphics/CGBase.h>
#include <CoreGraphics/CGBlendMode.h>

/// True for the modes that CGBlendMode lists.
bool isBlendMode(CGBlendMode mode);

/// Where a row of pixels gets its source from: premultiplied pixels in the layout of the destination, but
/// always with an alpha.
struct SourceRow {
    const unsigned char* pixels = nullptr;
    bool isSolid = false; ///< there is a single pixel, for all of the row
};

/// Blends a row of pixels with a source: R = lerp(D, mode(S, D), coverage). Null coverage means full
/// coverage. A result differs from the exact one by at most 1; the result of every processor is the same. The
/// pixels may have any address.
void blendRow(CGBlendMode mode, PixelLayout layout, unsigned char* bytes, const SourceRow& source,
    const unsigned char* coverage, std::size_t count);
