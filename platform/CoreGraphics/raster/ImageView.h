#pragma once

#include <cstddef>

/// A non-owning view of an image's pixels: four bytes for each, or alphas alone. Row 0 is the top row.
struct ImageView {
    const unsigned char* data = nullptr;
    std::size_t bytesPerRow = 0;
    int width = 0;
    int height = 0;
    bool isAlphaOnly = false;

    std::size_t bytesPerPixel() const { return isAlphaOnly ? 1 : 4; }
    const unsigned char* row(int y) const { return data + std::size_t(y) * bytesPerRow; }
    const unsigned char* pixel(int x, int y) const { return row(y) + std::size_t(x) * bytesPerPixel(); }
};
