#pragma once

#include "CoreGraphics/raster/Pixels.h"

#include <cstddef>
#include <cstdint>
#include <functional>

/// Calls `work` with 0 to `count` - 1, on several threads if there are processors for them, and returns when
/// all calls have ended. `work` must not throw. Any thread, also within such a call.
///
/// The threads are those of all dispatch queues. The queue is one that applications cannot reach, so that no
/// barrier of theirs holds up drawing. Where there is no memory for other threads' work, this one does all.
void applyOnRasterQueue(std::size_t count, const std::function<void(std::size_t)>& work);

/// Threads share the rows of an area in so many bands: enough for a few threads, which do not all start or
/// run alike.
inline constexpr std::size_t kRasterBands = 4;

/// The first row of a band of the area; for the band after the last one, the area's bottom.
inline int topOfRasterBand(const PixelRect& area, std::size_t band)
{
    return area.top + int(std::int64_t(area.height()) * std::int64_t(band) / std::int64_t(kRasterBands));
}
