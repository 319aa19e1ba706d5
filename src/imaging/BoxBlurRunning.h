#pragma once

#include <cstddef>
#include <cstdint>

/// Rows, or columns, from `first` to `end` - 1.
struct BoxBlurSpan {
    std::int64_t first, end;
};

/// A box blur by running sums, whose time per pixel does not depend on the size of the box.
///
/// Works on tiles: any parts of the image whose sides are multiples of kTileStep, except at the right and
/// lower edges.
struct RunningBoxBlur {
    static constexpr std::int64_t kTileStep = 4;
    /// Results of at least so many bytes are written past the caches, which could not hold them.
    static constexpr std::size_t kLargeResult = std::size_t{1} << 23;

    /// Pixels of a source row, including padding for vectors that start at its last pixel.
    static constexpr std::int64_t paddedLength(BoxBlurSpan columns)
    {
        return (columns.end - columns.first + 15) / 16 * 16;
    }

    std::int64_t width, height; ///< of the image; at least 1
    std::int32_t boxDim;        ///< for which blursIntoNothing is false

    /// The source rows that the rows `span` of a tile depend on, in an image of `size` rows; likewise for
    /// columns.
    BoxBlurSpan reach(BoxBlurSpan span, std::int64_t size) const;

    /// The size in bytes of the scratch memory that `blurTile` needs.
    std::size_t scratchSize(BoxBlurSpan columns) const;

    /// Writes a tile into the image at `destination`, whose rows have 4 * width bytes. `source` holds the
    /// pixels in `reach` of the tile, in rows of 4 * paddedLength bytes; the padding may have any value.
    void blurTile(BoxBlurSpan rows, BoxBlurSpan columns, const std::uint8_t* source,
        std::uint8_t* destination, std::uint8_t* scratch) const;
};
