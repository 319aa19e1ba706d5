#pragma once

#include "CoreGraphics/raster/PixelBlender.h"
#include "CoreGraphics/raster/PixelSpace.h"

#include <memory>

/// A blender for the pixels of `area` in memory, which is borrowed.
std::unique_ptr<PixelBlender> makePixelBlender(
    const PixelMemory& memory, const PixelRect& area, const PixelSpace& space);
