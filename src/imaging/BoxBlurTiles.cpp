#include "imaging/BoxBlurTiles.h"

#include <algorithm>
#include <thread>

namespace {

/// A tile of that side stays close to the processor while it is blurred. A smaller image is no more than one.
constexpr std::int64_t kTileSide = 512;
/// Fewer rows are not worth a thread.
constexpr std::int64_t kShortestTile = 64;

bool isSmall(const RunningBoxBlur& blur)
{
    return blur.width * blur.height <= kTileSide * kTileSide;
}

/// What lies around a tile within reach of the box is drawn and summed up as well: a tile should be several
/// times as long as that.
std::int64_t frugalLength(const RunningBoxBlur& blur)
{
    return std::max(kTileSide, 4 * std::int64_t{blur.boxDim});
}

/// Better more rows around tiles than processors without work.
std::int64_t rowsPerTile(const RunningBoxBlur& blur, const BoxBlurCut& columns)
{
    const std::int64_t processors = std::max(1U, std::thread::hardware_concurrency());
    const std::int64_t shared =
        std::max(blur.height * columns.count() / processors, std::int64_t{blur.boxDim} / 2);
    return std::max(std::min(frugalLength(blur), shared), kShortestTile);
}

} // namespace

BoxBlurCut::BoxBlurCut(std::int64_t size, std::int64_t longest)
    : _size(size)
{
    constexpr std::int64_t step = RunningBoxBlur::kTileStep;
    const std::int64_t parts = (size + longest - 1) / longest;
    _length = ((size + parts - 1) / parts + step - 1) / step * step;
}

BoxBlurTiles::BoxBlurTiles(const RunningBoxBlur& blur)
    : columns(blur.width, isSmall(blur) ? blur.width : frugalLength(blur))
    , rows(blur.height, isSmall(blur) ? blur.height : rowsPerTile(blur, columns))
{
}
