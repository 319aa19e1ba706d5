#pragma once

#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/RunPainter.h"

#include <vector>

/// Multiplies coverage by that of a rectangle and of a mask, while it is painted.
class MaskProduct {
public:
    /// The rectangle must touch all pixels of the area, and the mask, which may be null, must contain the
    /// area. `memory` holds one row. Borrows mask and memory.
    MaskProduct(const PixelRect& area, const AreaRect& rect, const MaskView* mask,
        std::vector<unsigned char>& memory);

    const PixelRect& area() const { return _area; }
    /// Whether the product is full everywhere.
    bool isWhole() const { return _isWhole; }
    /// Whether the rectangle covers the first or the last column in part. A single column is the first.
    bool cutsFirstColumn() const { return _left < 1; }
    bool cutsLastColumn() const { return _right < 1; }
    /// The product of the coverage of some pixels of a row, valid until the next call. Null coverage means
    /// full coverage, in the result, too.
    const unsigned char* times(int x, int y, int count, const unsigned char* coverage);
    /// Paints all of the area through the product with one more mask, which contains it.
    void paint(const MaskView& mask, RunPainter& painter);

private:
    PixelRect _area;
    AreaRect _rect;
    const MaskView* _mask;
    bool _isWhole; ///< whether the rectangle contains the area, and there is no mask
    double _left;  ///< how much the rectangle covers of the first column
    double _right; ///< and of the last one; 1 when the first is the last
    std::vector<unsigned char>& _row;
};
