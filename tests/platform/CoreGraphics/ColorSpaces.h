#pragma once

#include <CoreGraphics/CoreGraphics.h>

/// The colour space of the bitmaps and colours that tests make.
inline RetainPtr<CGColorSpace> deviceRGB()
{
    return adopt(CGColorSpaceCreateDeviceRGB());
}
