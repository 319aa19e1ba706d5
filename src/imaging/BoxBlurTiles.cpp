#include "imaging/BoxBlurTiles.h"

#include <algorithm>
#include <thread>

namespace {

// A tile's source pixels fit into the processor's caches, and into a block so small that the allocator does
// not return it to the system between tiles.
constexpr std::int64_t kTileWidth = 512;
constexpr std::int64_t kTileHeight = 256;
/// A tile of fewer rows is not worth a thread.
constexpr std::int64_t kShortestTile = 64;

/// The surroundings of a tile within reach of the box are drawn and summed as well, so a tile should be at
/// least twice as long as the box.
std::int64_t frugalLength(std::int64_t length, const RunningBoxBlur& blur)
{
    return std::max(length, 2 * std::int64_t{blur.boxDim});
}

/// Smaller tiles have more surroundings, but that is better than idle processors.
std::int64_t rowsPerTile(const RunningBoxBlur& blur, const BoxBlurCut& columns)
{
    const std::int64_t frugal = frugalLength(kTileHeight, blur);
    if (!BoxBlurTiles::areShared(blur))
        return frugal;
    const std::int64_t processors = std::max(1U, std::thread::hardware_concurrency());
    const std::int64_t shared =
        std::max(blur.height * columns.count() / processors, std::int64_t{blur.boxDim} / 2);
    return std::max(std::min(frugal, shared), kShortestTile);
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
    : columns(blur.width, frugalLength(kTileWidth, blur))
    , rows(blur.height, rowsPerTile(blur, columns))
{
}
