#pragma once

#include <KorvidAppKit/ZR2DColorPicker.h>

#include <algorithm>
#include <cstddef>

/// The nearest value from 0 to 1. NaN is 0.
inline double ZRClampedToUnit(double value)
{
    return value > 0 ? std::min(value, 1.0) : 0;
}

/// Writes the colours of a picker's field: `width` x `height` opaque pixels of four bytes, red first, in rows
/// of 4 * width bytes, the top row first.
///
/// Column x stands for the component x / (width - 1), row r for (height - 1 - r) / (height - 1); a field of
/// one column or row for 0. Each byte is 255 times the component that `ZR2DColorPicker::colorForComps` gives
/// in sRGB, truncated: the arithmetic is that of `NSColor::colorWithDeviceHue` and `colorWithDeviceRed`,
/// operation by operation, without a colour object for each pixel.
void ZRFillColorField(unsigned char* pixels, std::size_t width, std::size_t height, ZR2DColorPickerAxes axes,
    double thirdComponent);
