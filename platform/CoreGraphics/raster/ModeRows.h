#pragma once

#include "CoreGraphics/raster/CoverageRows.h"
#include "CoreGraphics/raster/ModeBlending.h"
#include "CoreGraphics/raster/Paint.h"
#include "CoreGraphics/raster/RunPainter.h"

#include <vector>

/// Blends rows of a paint in any mode.
class ModeRows final : public CoverageRows, public RunPainter {
public:
    /// Memory for one row, reused by the next paint.
    struct Memory {
        std::vector<unsigned char> alphas;
    };

    /// `memory` starts at the top left corner of `area`. Borrows the paint's pixels and the scratch memory.
    ModeRows(const PixelMemory& memory, const PixelRect& area, CGBlendMode mode, const Paint& paint,
        Memory& scratch);

    void rows(
        int top, int bottom, std::span<const CoverageSpan> spans, const unsigned char* coverage) override;
    void paintRun(int x, int y, int count, const unsigned char* coverage) override;
    /// Paints pixels of the area with full coverage.
    void fill(const PixelRect& pixels);

private:
    /// Blends with a source: a colour, or pixels in the layout of the destination. Null coverage means full
    /// coverage.
    void blend(int x, int y, int count, const SourceRow& source, const unsigned char* coverage) const;
    SourceRow source(int x, int y, int count);
    /// The source that begins some pixels further to the right.
    SourceRow from(const SourceRow& source, int offset) const;

    PixelMemory _memory;
    PixelRect _area;
    CGBlendMode _mode;
    PixelBytes _color{};
    PixelSource* _pixels = nullptr; ///< null for a colour
    Memory& _scratch;
};
