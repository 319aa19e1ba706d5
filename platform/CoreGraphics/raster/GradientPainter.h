#pragma once

#include "CoreGraphics/raster/GradientRows.h"
#include "CoreGraphics/raster/Pixels.h"
#include "CoreGraphics/raster/RunPainter.h"

#include <vector>

/// Paints runs of a gradient's pixels in the normal mode.
class GradientPainter final : public RunPainter {
public:
    /// `memory`, of four bytes a pixel, starts at the top left corner of `area`, which contains all runs.
    /// `alpha` multiplies the gradient's colours. `row` is scratch memory. Borrows gradient and row.
    GradientPainter(const GradientRows& gradient, std::uint8_t alpha, const PixelMemory& memory,
        const PixelRect& area, std::vector<CGGradientPixel>& row);

    void paintRun(int x, int y, int count, const unsigned char* coverage) override;
    /// Paints all pixels of the area with full coverage, those of a large area on several threads.
    void fill();

private:
    void fillRows(int top, int bottom);
    void fillInBands();
    /// Writes pixels of a gradient without blending.
    void replace(int x, int y, unsigned char* bytes, std::size_t count);
    /// Pixels of the gradient, valid until the next call.
    std::span<const CGGradientPixel> pixels(int x, int y, std::size_t count);

    const GradientRows& _gradient;
    const std::uint8_t _alpha;
    const PixelMemory _memory;
    const PixelRect _area;
    std::vector<CGGradientPixel>& _row; ///< the whole one if all rows are equal
    const bool _replaces;               ///< what is fully covered
    const bool _isSameInRows;
    const bool _isSameInColumns; ///< each row has one colour
    const bool _isAligned;       ///< pixels lie at addresses of CGGradientPixels
};
