#pragma once

#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/Scratch.h"
#include "CoreGraphics/raster/Shape.h"

class PixelSource;

/// A coverage mask under construction.
class MaskBuffer {
public:
    /// Starts with a coverage of 0 everywhere. The bytes are in `memory`, which must outlive the buffer.
    MaskBuffer(Scratch& memory, const PixelRect& area);

    const PixelRect& area() const { return _mask.area; }
    MaskView view() const { return _mask; }

    /// Adds a shape. It must not overlap shapes added before.
    void draw(const Shape& shape);
    /// Draws the alphas of pixels within a shape. Only on an empty mask.
    void draw(const Shape& shape, PixelSource& pixels);
    /// Copies another mask where the two overlap.
    void copy(const MaskView& other);
    /// Multiplies by a mask whose area contains this one's.
    void multiply(const MaskView& other);

    unsigned char* pixel(int x, int y) { return _mask.pixel(x, y); }

private:
    MutableMaskView _mask;
};
