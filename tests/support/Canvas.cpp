#include "support/Canvas.h"

#include <CoreGraphics/CGColorSpace.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace {

/// A quarter, a half and three quarters of 255 are fractions, and rasterizing rounds coverage as well.
constexpr int kTolerance = 3;

char letterFor(int alpha)
{
    if (alpha == 0)
        return '.';
    if (alpha == 255)
        return '#';
    for (const auto& [letter, value] : {std::pair{'-', 64}, {'+', 128}, {'*', 191}}) {
        if (std::abs(alpha - value) <= kTolerance)
            return letter;
    }
    return '?';
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const CanvasPixel& pixel)
{
    const auto& [red, green, blue, alpha] = pixel.bytes;
    return stream << "rgba(" << red << ", " << green << ", " << blue << ", " << alpha << ")";
}

Canvas::Canvas(int width, int height, Format format)
    : _width(width)
    , _height(height)
    , _isAlphaOnly(format == Format::AlphaOnly)
{
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    _context = adopt(CGBitmapContextCreate(nullptr, static_cast<std::size_t>(width),
        static_cast<std::size_t>(height), 8, 0, _isAlphaOnly ? nullptr : space.get(),
        _isAlphaOnly ? kCGImageAlphaOnly : kCGImageAlphaPremultipliedLast));
}

unsigned char* Canvas::at(int column, int row) const
{
    if (column < 0 || column >= _width || row < 0 || row >= _height)
        throw std::out_of_range("no pixel (" + std::to_string(column) + ", " + std::to_string(row)
            + ") in a canvas of " + std::to_string(_width) + " x " + std::to_string(_height));
    return static_cast<unsigned char*>(CGBitmapContextGetData(context()))
        + static_cast<std::size_t>(row) * CGBitmapContextGetBytesPerRow(context())
        + static_cast<std::size_t>(column) * (_isAlphaOnly ? 1 : 4);
}

CanvasPixel Canvas::pixel(int column, int row) const
{
    const unsigned char* bytes = at(column, row);
    return _isAlphaOnly ? rgba(0, 0, 0, bytes[0]) : rgba(bytes[0], bytes[1], bytes[2], bytes[3]);
}

void Canvas::setPixel(int column, int row, CanvasPixel pixel)
{
    unsigned char* bytes = at(column, row);
    if (_isAlphaOnly) {
        bytes[0] = static_cast<unsigned char>(pixel.bytes[3]);
        return;
    }
    for (std::size_t i = 0; i < 4; ++i)
        bytes[i] = static_cast<unsigned char>(pixel.bytes[i]);
}

std::string Canvas::picture() const
{
    std::string picture;
    for (int row = 0; row < _height; ++row) {
        for (int column = 0; column < _width; ++column)
            picture += letterFor(alpha(column, row));
        picture += '\n';
    }
    return picture;
}

testing::AssertionResult looksLike(const Canvas& canvas, std::string_view rows)
{
    const auto width = static_cast<std::size_t>(canvas.width());
    std::string expected;
    for (std::size_t i = 0; i < rows.size(); i += width)
        expected.append(rows.substr(i, width)).append("\n");
    const std::string actual = canvas.picture();
    if (actual == expected)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "expected\n" << expected << "but it is\n" << actual;
}
