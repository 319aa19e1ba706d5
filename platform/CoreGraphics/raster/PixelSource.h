#pragma once

#include "CoreGraphics/raster/MaskView.h"
#include "CoreGraphics/raster/Pixels.h"

#include <memory>
#include <vector>

/// Rows of pixels in memory, equally far apart.
struct RowsInMemory {
    const unsigned char* first = nullptr;
    std::ptrdiff_t bytesPerRow = 0; ///< negative for rows in reverse order
};

/// Pixels to paint with, in pixel space: premultiplied red, green, blue and alpha, or alphas alone.
class PixelSource {
public:
    virtual ~PixelSource() = default;

    bool isAlphaOnly() const { return _isAlphaOnly; }
    /// True when every alpha is 255.
    bool isOpaque() const { return _isOpaque; }
    /// The pixels of a row from `column` on, valid until the next call.
    virtual const unsigned char* row(int column, int row, int count) = 0;
    /// The pixels from a place on to the right and downward; null pixels when they are not in memory.
    virtual RowsInMemory rowsInMemory(int, int) const { return {}; }
    /// Another source of the same pixels, for use on another thread at the same time. Null where sharing so
    /// many pixels among threads saves no time. Borrows what this one borrows.
    virtual std::unique_ptr<PixelSource> forOtherThread(std::int64_t /*pixelCount*/) const { return nullptr; }

protected:
    PixelSource(bool isAlphaOnly, bool isOpaque)
        : _isAlphaOnly(isAlphaOnly)
        , _isOpaque(isOpaque)
    {
    }
    PixelSource(const PixelSource&) = default;
    PixelSource& operator=(const PixelSource&) = default;

    bool _isAlphaOnly;
    bool _isOpaque;
};

/// Pixels in memory.
class MemoryPixels final : public PixelSource {
public:
    /// Borrows the memory, which holds the pixels of `area`. Nothing may be painted outside of them.
    MemoryPixels(const PixelMemory& memory, const PixelRect& area)
        : PixelSource(memory.isAlphaOnly(), false)
        , _memory(memory)
        , _area(area)
    {
    }

    const unsigned char* row(int column, int row, int) override
    {
        return _memory.pixel(column - _area.left, row - _area.top);
    }
    RowsInMemory rowsInMemory(int column, int row) const override
    {
        return {_memory.pixel(column - _area.left, row - _area.top), std::ptrdiff_t(_memory.bytesPerRow)};
    }

private:
    PixelMemory _memory;
    PixelRect _area;
};

/// The pixels of another source, multiplied by an alpha.
class FadedPixels final : public PixelSource {
public:
    /// Borrows the source and the memory of its rows.
    FadedPixels(PixelSource& pixels, std::uint8_t alpha, std::vector<unsigned char>& memory);

    const unsigned char* row(int column, int row, int count) override;
    std::unique_ptr<PixelSource> forOtherThread(std::int64_t pixelCount) const override;

private:
    PixelSource& _pixels;
    std::uint8_t _alpha;
    std::vector<unsigned char>& _row;
};

/// The alphas of pixels of a row from `column` on, valid until the next call. Borrows the memory, which may
/// hold them.
const unsigned char* alphasOfRow(
    PixelSource& pixels, int column, int row, int count, std::vector<unsigned char>& memory);

/// Multiplies a mask by the alphas of pixels.
void multiply(const MutableMaskView& mask, PixelSource& pixels);
