#pragma once

#include "Canvas.h"

#include <CoreGraphics/CoreGraphics.h>

/// A bitmap context of ours. The origin is at the lower left.
class KorvidCanvas {
public:
    static constexpr const char* kLibrary = "KorvidAppKit";

    explicit KorvidCanvas(Size size, double alpha = 1)
        : _space(adopt(CGColorSpaceCreateDeviceRGB()))
        , _context(adopt(CGBitmapContextCreate(nullptr, std::size_t(size.width), std::size_t(size.height), 8,
              0, _space, kCGImageAlphaPremultipliedLast)))
    {
        CGContextSetRGBFillColor(context(), kColor[0], kColor[1], kColor[2], alpha);
        CGContextSetRGBStrokeColor(context(), kColor[0], kColor[1], kColor[2], alpha);
        CGContextSetLineWidth(context(), kLineWidth);
    }

    CGContextRef context() const { return _context.get(); }
    CGColorSpaceRef colorSpace() const { return _space.get(); }

private:
    RetainPtr<CGColorSpace> _space;
    RetainPtr<CGContext> _context;
};

/// The shapes that several tables draw.
inline void fillRect(KorvidCanvas& canvas, CGRect rect)
{
    CGContextFillRect(canvas.context(), rect);
}

inline void fillEllipse(KorvidCanvas& canvas, CGRect rect)
{
    CGContextFillEllipseInRect(canvas.context(), rect);
}
