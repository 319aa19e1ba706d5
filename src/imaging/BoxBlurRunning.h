#pragma once

#include <cstddef>
#include <cstdint>

/// Rows, or columns, from `first` to `end` - 1.
struct BoxBlurSpan {
    std::int64_t first, end;
};

/// A box blur by running sums, whose time per pixel does not depend on the size of the box.
///
/// It is done tile by tile, for which any part of the image will do whose sides are multiples of kTileStep,
/// unless they lie at the right or lower edge.
struct RunningBoxBlur {
    static constexpr std::int64_t kTileStep = 4;
    /// Bytes of a result from which on it is written past the caches: they could not keep it anyway, and lose
    /// what they have.
    static constexpr std::size_t kLargeResult = std::size_t{1} << 23;

    /// Pixels of a row of the source with room for vectors that start at its last pixel.
    static constexpr std::int64_t paddedLength(BoxBlurSpan columns)
    {
        return (columns.end - columns.first + 15) / 16 * 16;
    }

    std::int64_t width, height; ///< of the image; at least 1
    std::int32_t boxDim;        ///< one that does not blur into nothing

    /// The rows (of an image with `size` of them) that those of a tile are made of, or the same for columns.
    BoxBlurSpan reach(BoxBlurSpan span, std::int64_t size) const;

    /// Bytes that `blurTile` needs to work in.
    std::size_t scratchSize(BoxBlurSpan columns) const;

    /// Writes a tile to the result at `destination`, rows of 4 * width bytes. `source` has the pixels in
    /// `reach` of the tile, in rows of 4 * paddedLength bytes; those in the gaps mean nothing.
    void blurTile(BoxBlurSpan rows, BoxBlurSpan columns, const std::uint8_t* source,
        std::uint8_t* destination, std::uint8_t* scratch) const;
};
