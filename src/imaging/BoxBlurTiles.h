#pragma once

#include "imaging/BoxBlurRunning.h"

#include <algorithm>

/// A division of rows, or columns, into parts of equal length; the last one may be shorter.
class BoxBlurCut {
public:
    /// Parts of at most `longest`, rounded up to a multiple of RunningBoxBlur::kTileStep. Both arguments must
    /// be at least 1.
    BoxBlurCut(std::int64_t size, std::int64_t longest);

    std::int64_t count() const { return (_size + _length - 1) / _length; }
    BoxBlurSpan part(std::int64_t i) const { return {i * _length, std::min((i + 1) * _length, _size)}; }

private:
    std::int64_t _size, _length;
};

/// The division of an image into tiles.
struct BoxBlurTiles {
    explicit BoxBlurTiles(const RunningBoxBlur& blur);

    /// Whether the image is large enough to blur its tiles on several threads.
    static constexpr bool areShared(const RunningBoxBlur& blur)
    {
        return blur.width * blur.height > std::int64_t{512} * 512;
    }

    BoxBlurCut columns, rows;
};
