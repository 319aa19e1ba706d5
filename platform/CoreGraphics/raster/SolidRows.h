#pragma once

#include "CoreGraphics/raster/RectangleRaster.h"
#include "CoreGraphics/raster/SolidBlending.h"

#include <cstddef>
#include <cstdint>

class CoverageProduct;

/// Where rows of pixels lie.
struct PixelMemory {
    unsigned char* data = nullptr; ///< the first pixel of the row on top
    std::size_t bytesPerRow = 0;
    bool isAlphaOnly = false; ///< a byte per pixel instead of four
};

/// Paints rows of coverage in one colour: R = coverage x colour + (1 - coverage x hidden) x D.
///
/// That is the whole family of modes in which the old pixel is only ever scaled: hidden is the colour's alpha
/// in the normal mode and 255 in copy mode. Works in 16 bits and rounds once: a result is at most 0.51 from
/// the exact one. The pixels may lie at any address.
class SolidRows : public CoverageRows {
public:
    /// `limits` are those given to the raster, or the area of a product of coverages; the first pixel in
    /// memory is that of their corner.
    SolidRows(const PixelMemory& memory, const PixelRect& limits, PixelBytes color, std::uint8_t hidden);

    void rows(int top, int bottom, std::span<const CoverageSpan> spans, const float* coverage) override;
    /// Paints whole pixels.
    void fill(const PixelRect& pixels) const;
    /// Paints through coverages of all the limits.
    void paint(CoverageProduct& coverages) const;

private:
    /// Null coverage stands for whole pixels.
    void paint(const PixelRect& pixels, const float* coverage) const;
    void replace(const PixelRect& pixels) const;
    void blendColumns(const PixelRect& pixels, const float* coverage) const;
    int channels() const { return _memory.isAlphaOnly ? 1 : 4; }
    unsigned char* pixel(int x, int y) const;

    PixelMemory _memory;
    PixelRect _limits;
    PixelBytes _color;
    std::uint8_t _hidden;
};
