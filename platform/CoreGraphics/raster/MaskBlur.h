#pragma once

#include "CoreGraphics/raster/MaskView.h"

#include <cmath>
#include <vector>

/// Blurs masks: each coverage becomes the mean of those around it, weighted by a Gaussian.
///
/// The Gaussian's standard deviation is half the blur, and it ends at the blur, in whole pixels: a blur of 5
/// reaches exactly 5 pixels beyond each side.
class MaskBlur {
public:
    /// In pixels.
    static int reach(double blur) { return int(std::ceil(blur)); }

    /// The part within `limits`, valid until the next call. Nothing is covered outside of the mask's area.
    /// The blur is above 0.
    MaskView blurred(const MaskView& mask, double blur, const PixelRect& limits);

private:
    void setWeights(double blur);
    void blurRow(const MaskView& mask, int y, const PixelRect& area);
    void blurRows(const MaskView& mask, const PixelRect& area);
    const float* blurredRow(int y) const;
    void blurColumns(const PixelRect& area, unsigned char* bytes, int bytesPerRow);

    double _blur = 0; ///< that of the weights
    int _reach = 0;
    std::vector<float> _weights;         ///< at a distance of 0 to `_reach`
    std::vector<float> _line;            ///< a row, and as much on both sides as the blur reaches
    std::vector<float> _rows;            ///< blurred along x; equal neighbours share one
    std::vector<std::size_t> _rowStarts; ///< in `_rows`, of each row from `_top` on
    int _top = 0;
    std::vector<float> _sums;
    std::vector<unsigned char> _bytes;
};
