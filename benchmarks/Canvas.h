#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cmath>
#include <numbers>
#include <string>

// What the canvases of all libraries share. Each is a bitmap with one drawing context, in the configuration
// in which its library draws fastest at the quality of the others: antialiased, premultiplied, 8 bits a
// channel. They start transparent, with the same colour for fills and strokes, opaque unless an alpha is
// given, and lines 3 pixels wide.

/// In pixels.
struct Size {
    int width;
    int height;
};

/// A control, a panel and a window.
inline constexpr Size kSizes[]{{60, 24}, {400, 300}, {1920, 1080}};

/// "60x24"
inline std::string nameOf(Size size)
{
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

inline constexpr double kLineWidth = 3;

/// Red, green and blue of fills and strokes.
inline constexpr double kColor[3]{0.2, 0.4, 0.6};

/// All of the canvas.
inline CGRect whole(Size size)
{
    return CGRectMake(0, 0, size.width, size.height);
}

/// Most of the canvas, with edges between the pixels.
inline CGRect fractional(Size size)
{
    return CGRectMake(2.3, 3.6, size.width - 5.1, size.height - 7.4);
}

/// Offsets of a shape from its place: always 0 for one that stands still. A moving shape gets a new subpixel
/// position each time, so that nothing drawn before can be reused.
class Motion {
public:
    explicit Motion(bool moves)
        : _step(moves ? std::numbers::phi : 0)
    {
    }
    /// From 0 to less than 1 pixel.
    double next() { return _offset = std::fmod(_offset + _step, 1); }

private:
    double _step;
    double _offset = 0;
};
