#pragma once

#include "CoreGraphics/cairo/Paint.h"
#include "CoreGraphics/cairo/Scratch.h"
#include "CoreGraphics/cairo/Shape.h"

/// How far each pixel of an area is covered, 0 to 255.
class Coverage {
public:
    /// Nothing is covered yet. The bytes lie in `memory`, which must live longer.
    Coverage(Scratch& memory, const PixelRect& area);

    const PixelRect& area() const { return _area; }
    cairo_surface_t* surface() const { return _pixels.surface.get(); }

    /// Adds a shape. `height` is that of all the pixels.
    void draw(const Shape& shape, int height);
    /// Adds the alpha of a paint within a shape.
    void draw(const Shape& shape, const Paint& paint, int height);
    /// Multiplies by a coverage whose area holds this one's.
    void multiply(const Coverage& other);

private:
    unsigned char* pixel(int x, int y) const
    {
        return _pixels.data + std::ptrdiff_t(y - _area.top) * _pixels.bytesPerRow + (x - _area.left);
    }

    PixelRect _area;
    Scratch::Pixels _pixels;
};
