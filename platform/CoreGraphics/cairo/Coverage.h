#pragma once

#include "CoreGraphics/cairo/Paint.h"
#include "CoreGraphics/cairo/Scratch.h"
#include "CoreGraphics/cairo/Shape.h"

#include <optional>
#include <vector>

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

    unsigned char* pixel(int x, int y) const
    {
        return _pixels.data + std::ptrdiff_t(y - _area.top) * _pixels.bytesPerRow + (x - _area.left);
    }

private:
    PixelRect _area;
    Scratch::Pixels _pixels;
};

/// The product of what a rectangle covers, of a mask and of a shape's coverage, or of two of them: worked out
/// row by row while it is painted.
class CoverageProduct {
public:
    /// The rectangle touches all pixels of the area, and the coverages hold them. `mask` may be null; that of
    /// the shape, which may be null if the mask is not, is used up.
    CoverageProduct(const PixelRect& area, const AreaRect& rect, Coverage* shape, const Coverage* mask);

    const PixelRect& area() const { return _area; }
    /// The coverages of a row of the area, until the next call. Each row can be had once.
    const unsigned char* row(int y);
    /// All rows, and maybe more than them. `memory` may be that of nothing but the shape.
    const Coverage& all(Scratch& memory);

private:
    PixelRect _area;
    AreaRect _rect;
    Coverage* _shape;
    const Coverage* _mask;
    double _left;  ///< how much the rectangle covers of the first column
    double _right; ///< and of the last one; 1 when the first is the last
    std::vector<unsigned char> _row;
    std::optional<Coverage> _all;
};
