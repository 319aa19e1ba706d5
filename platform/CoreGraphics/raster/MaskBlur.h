#pragma once

#include "CoreGraphics/raster/MaskView.h"

#include <cmath>
#include <vector>

/// Blurs coverage masks by a Gaussian.
///
/// The Gaussian's standard deviation is half the blur. It is truncated at the blur in whole pixels: a blur of
/// 5 extends exactly 5 pixels beyond each side.
class MaskBlur {
public:
    /// In pixels.
    static int reach(double blur) { return int(std::ceil(blur)); }

    /// The part of the blurred mask within `limits`, valid until the next call. Outside of its area the mask
    /// counts as 0. The blur must be above 0.
    MaskView blurred(const MaskView& mask, double blur, const PixelRect& limits);

private:
    void setWeights(double blur);
    void blurRow(const MaskView& mask, int y, const PixelRect& area, float* sums);
    void blurRows(const MaskView& mask, const PixelRect& area);
    const float* blurredRow(int y) const;
    void blurColumns(const PixelRect& area, unsigned char* bytes, int bytesPerRow);

    double _blur = 0; ///< the blur that the weights were computed for
    int _reach = 0;
    std::vector<float> _weights;         ///< at distances of 0 to `_reach` pixels
    std::vector<float> _line;            ///< a row, with the reach of the blur added on both sides
    std::vector<float> _rows;            ///< blurred along x; equal neighbours share one
    std::size_t _stride = 0;             ///< from row to row
    std::vector<std::size_t> _rowStarts; ///< in `_rows`, of each row from `_top` on
    int _top = 0;
    std::vector<const float*> _neighbours; ///< lines that are added
    std::vector<unsigned char> _bytes;
};
