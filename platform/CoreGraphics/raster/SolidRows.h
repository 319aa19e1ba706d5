#pragma once

#include "CoreGraphics/raster/CoverageRows.h"
#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/Pixels.h"
#include "CoreGraphics/raster/RunPainter.h"

/// Paints rows of coverage in one colour: R = coverage x colour + (1 - coverage x hidden) x D.
///
/// This covers all modes that only scale the old pixel: hidden is the colour's alpha in the normal mode and
/// 255 in copy mode. Computes in 16 bits and rounds once: a result differs from the exact one by at most
/// 0.51. The pixels may have any address.
class SolidRows final : public CoverageRows, public RunPainter {
public:
    /// `limits` are the limits passed to the raster, or contain all runs; `memory` starts at their top left
    /// corner.
    SolidRows(const PixelMemory& memory, const PixelRect& limits, PixelBytes color, std::uint8_t hidden);

    void rows(
        int top, int bottom, std::span<const CoverageSpan> spans, const unsigned char* coverage) override;
    void mask(const MaskView& mask) override { paint(mask.area, mask); }
    void paintRun(int x, int y, int count, const unsigned char* coverage) override;
    /// Paints pixels through a mask that contains them.
    void paint(const PixelRect& pixels, const MaskView& mask);
    /// Paints pixels with full coverage.
    void fill(const PixelRect& pixels);

private:
    unsigned char* pixel(int x, int y) const;

    PixelMemory _memory;
    PixelRect _limits;
    PixelBytes _color;
    std::uint8_t _hidden;
};
