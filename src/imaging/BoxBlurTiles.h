#pragma once

#include "imaging/BoxBlurRunning.h"

#include <algorithm>

/// The parts that rows, or columns, are cut into: of equal length, the last one perhaps shorter.
class BoxBlurCut {
public:
    /// `size` and `longest` are at least 1. Parts get as long as `longest`, rounded up to a multiple of
    /// RunningBoxBlur::kTileStep.
    BoxBlurCut(std::int64_t size, std::int64_t longest);

    std::int64_t count() const { return (_size + _length - 1) / _length; }
    BoxBlurSpan part(std::int64_t i) const { return {i * _length, std::min((i + 1) * _length, _size)}; }

private:
    std::int64_t _size, _length;
};

/// How an image is cut into tiles.
struct BoxBlurTiles {
    explicit BoxBlurTiles(const RunningBoxBlur& blur);

    /// Whether the image is so large that several threads should blur its tiles.
    static constexpr bool areShared(const RunningBoxBlur& blur)
    {
        return blur.width * blur.height > std::int64_t{512} * 512;
    }

    BoxBlurCut columns, rows;
};
