#pragma once

#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/Scratch.h"

#include <vector>

/// The product of a rectangle's coverage and of one or two masks, computed row by row while it is painted.
class MaskProduct {
public:
    /// The rectangle must touch all pixels of the area, and the masks must contain the area. `second` may be
    /// null. `memory` holds one row. Borrows all arguments.
    MaskProduct(const PixelRect& area, const AreaRect& rect, const MaskView& first, const MaskView* second,
        std::vector<unsigned char>& memory);

    const PixelRect& area() const { return _area; }
    /// The coverage of a row of the area, valid until the next call.
    const unsigned char* row(int y);
    /// All rows; the view may extend beyond the area. Uses `memory` unless it is one of the masks.
    MaskView all(Scratch& memory);

private:
    PixelRect _area;
    AreaRect _rect;
    MaskView _first;
    const MaskView* _second;
    double _left;  ///< how much the rectangle covers of the first column
    double _right; ///< and of the last one; 1 when the first is the last
    std::vector<unsigned char>& _row;
};
