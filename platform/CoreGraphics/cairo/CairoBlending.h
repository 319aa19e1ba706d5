#pragma once

#include "CoreGraphics/raster/PixelBlender.h"
#include "CoreGraphics/raster/PixelSpace.h"

#include <CoreGraphics/CGImage.h>

#include <memory>

/// True for the modes that the blender below blends in.
bool isOffered(CGBlendMode mode);

/// A blender for the pixels of `area` in memory, which is borrowed. For alpha-only pixels, RGBA and RGBX.
std::unique_ptr<PixelBlender> makePixelBlender(
    const PixelMemory& memory, const PixelRect& area, const PixelSpace& space, CGImageAlphaInfo alphaInfo);
