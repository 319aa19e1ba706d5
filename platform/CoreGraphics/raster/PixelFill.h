#pragma once

#include "CoreGraphics/raster/Pixels.h"

#include <cstring>
#include <cwchar>

/// Writes a pixel of four bytes `count` times. The first one may have any address.
inline void fillPixels(unsigned char* bytes, std::size_t count, PixelBytes pixel)
{
    // wmemset is the C library's memset of 32-bit values: it uses the stores that suit processor and size.
    wchar_t value;
    static_assert(sizeof value == sizeof pixel);
    if (reinterpret_cast<std::uintptr_t>(bytes) % alignof(wchar_t) == 0) {
        std::memcpy(&value, pixel.data(), sizeof value);
        std::wmemset(reinterpret_cast<wchar_t*>(bytes), value, count);
        return;
    }
    for (std::size_t i = 0; i < count; ++i)
        std::memcpy(bytes + pixel.size() * i, pixel.data(), pixel.size());
}
