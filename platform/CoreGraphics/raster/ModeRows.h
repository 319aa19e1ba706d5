#pragma once

#include "CoreGraphics/raster/ModeBlending.h"
#include "CoreGraphics/raster/RunPainter.h"

/// The source of pixels of an area: one color for all of them, or a pixel for each.
struct RowsSource {
    PixelBytes color{};
    PixelMemory pixels = {}; ///< without data for a color; starts at the top left corner of the area
};

/// Blends rows of pixels in any mode.
class ModeRows final : public RunPainter {
public:
    /// `memory` starts at the top left corner of `area`.
    ModeRows(const PixelMemory& memory, const PixelRect& area, CGBlendMode mode, const RowsSource& source)
        : _memory(memory)
        , _area(area)
        , _mode(mode)
        , _source(source)
    {
    }

    void paintRun(int x, int y, int count, const unsigned char* coverage) override;
    /// Paints all pixels of the area with full coverage.
    void fill();

private:
    PixelMemory _memory;
    PixelRect _area;
    CGBlendMode _mode;
    RowsSource _source;
};
