#pragma once

#include "CoreGraphics/raster/CoverageView.h"
#include "CoreGraphics/raster/Paint.h"
#include "CoreGraphics/raster/Scratch.h"
#include "CoreGraphics/raster/Shape.h"

#include <vector>

/// For cairo to read. The bytes must live as long.
CairoPtr<cairo_surface_t> makeSurface(const CoverageView& coverage);

/// Coverages that are being drawn.
class Coverage {
public:
    /// Nothing is covered yet. The bytes lie in `memory`, which must live longer.
    Coverage(Scratch& memory, const PixelRect& area);

    const PixelRect& area() const { return _area; }
    CoverageView view() const { return {_area, _pixels.data, _pixels.bytesPerRow}; }

    /// Adds a shape. `height` is that of all the pixels.
    void draw(const Shape& shape, int height);
    /// Adds the alpha of a paint within a shape.
    void draw(const Shape& shape, const Paint& paint, int height);
    /// Takes over the coverage of the pixels that another one has as well.
    void copy(const CoverageView& other);
    /// Multiplies by a coverage whose area holds this one's.
    void multiply(const CoverageView& other);

    unsigned char* pixel(int x, int y)
    {
        return _pixels.data + std::ptrdiff_t(y - _area.top) * _pixels.bytesPerRow + (x - _area.left);
    }

private:
    PixelRect _area;
    Scratch::Pixels _pixels;
};

/// The product of what a rectangle covers and of one or two coverages: worked out row by row while it is
/// painted.
class CoverageProduct {
public:
    /// The rectangle touches all pixels of the area, and the coverages hold them. `second` may be null.
    /// `memory` is for a row.
    CoverageProduct(const PixelRect& area, const AreaRect& rect, const CoverageView& first,
        const CoverageView* second, std::vector<unsigned char>& memory);

    const PixelRect& area() const { return _area; }
    /// The coverages of a row of the area, until the next call.
    const unsigned char* row(int y);
    /// All rows, and maybe more than them. `memory` is where they are put together if they have to be.
    CoverageView all(Scratch& memory);

private:
    PixelRect _area;
    AreaRect _rect;
    CoverageView _first;
    const CoverageView* _second;
    double _left;  ///< how much the rectangle covers of the first column
    double _right; ///< and of the last one; 1 when the first is the last
    std::vector<unsigned char>& _row;
};
