#pragma once

#include "CoreGraphics/raster/Coverage.h"

/// Fills a path without antialiasing: sets the pixels whose centres it contains to 255 and leaves the others
/// as they are. A centre exactly on an edge counts as inside at left and top edges. Curves are followed to
/// 1/4096 pixel. The path lies in base space; `height` is that of all the pixels.
void fillCenters(const CGPath& path, bool isEvenOdd, int height, Coverage& coverage);
