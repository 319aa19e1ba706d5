#pragma once

#include <AppKit/NSGraphicsContext.h>
#include <CoreGraphics/CGBitmapContext.h>

#include <cstddef>
#include <string>
#include <vector>

/// Transparent pixels for views to draw on.
class DrawnPixels {
public:
    DrawnPixels(
        std::size_t width, std::size_t height, CGImageAlphaInfo alphaInfo = kCGImageAlphaPremultipliedLast)
        : _width(width)
        , _bytes(4 * width * height)
        , _context(adopt(CGBitmapContextCreate(_bytes.data(), width, height, 8, 4 * width,
              adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB)).get(), alphaInfo)))
        , _graphicsContext(NSGraphicsContext::graphicsContextWithCGContext(_context, false))
    {
    }

    CGContextRef context() const { return _context.get(); }
    NSGraphicsContext* graphicsContext() const { return _graphicsContext.get(); }
    /// Red, green, blue and alpha of each pixel, rows from the top.
    const std::vector<unsigned char>& bytes() const { return _bytes; }

    /// Pixels as letters, rows from the top, separated by "/": "." transparent, "r" "g" "b" "c" "m" "y" "w"
    /// "k" an opaque colour (k is black), "?" anything else.
    std::string text() const
    {
        std::string letters;
        for (std::size_t i = 0; i < _bytes.size(); i += 4) {
            if (i > 0 && i / 4 % _width == 0)
                letters += '/';
            letters += letter(&_bytes[i]);
        }
        return letters;
    }

private:
    static char letter(const unsigned char* pixel)
    {
        std::size_t color = 0;
        for (int i = 0; i < 3; ++i) {
            if (pixel[i] != 0 && pixel[i] != 255)
                return '?';
            color |= (pixel[i] & 1U) << i;
        }
        if (pixel[3] == 255)
            return "krgybmcw"[color];
        return pixel[3] == 0 && color == 0 ? '.' : '?';
    }

    std::size_t _width;
    std::vector<unsigned char> _bytes;
    RetainPtr<CGContext> _context;
    RetainPtr<NSGraphicsContext> _graphicsContext;
};
