#pragma once

#include <CoreGraphics/CGBitmapContext.h>

#include <array>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <string_view>

/// A pixel as it is stored: red, green, blue, alpha, premultiplied.
struct CanvasPixel {
    std::array<int, 4> bytes{};

    bool operator==(const CanvasPixel&) const = default;
};

constexpr CanvasPixel rgba(int red, int green, int blue, int alpha)
{
    return {{red, green, blue, alpha}};
}

inline constexpr CanvasPixel kTransparent = rgba(0, 0, 0, 0);
inline constexpr CanvasPixel kBlack = rgba(0, 0, 0, 255);
inline constexpr CanvasPixel kWhite = rgba(255, 255, 255, 255);
inline constexpr CanvasPixel kRed = rgba(255, 0, 0, 255);
inline constexpr CanvasPixel kGreen = rgba(0, 255, 0, 255);
inline constexpr CanvasPixel kBlue = rgba(0, 0, 255, 255);

std::ostream& operator<<(std::ostream& stream, const CanvasPixel& pixel);

/// A small bitmap context, transparent at first.
class Canvas {
public:
    enum class Format { RGBA, AlphaOnly };

    Canvas(int width, int height, Format format = Format::RGBA);

    CGContextRef context() const { return _context.get(); }
    int width() const { return _width; }
    int height() const { return _height; }
    bool isAlphaOnly() const { return _isAlphaOnly; }

    /// The pixel in a column from the left and a row from the top. On an alpha-only canvas the colours are 0.
    /// Throws std::out_of_range outside the canvas, like the functions below.
    CanvasPixel pixel(int column, int row) const;
    void setPixel(int column, int row, CanvasPixel pixel);
    int alpha(int column, int row) const { return pixel(column, row).bytes[3]; }

    /// The alpha of every pixel as a picture: "." 0, "#" 255, "-", "+" and "*" about a quarter, half and
    /// three quarters, "?" anything else. Rows from the top, one per line.
    std::string picture() const;

private:
    unsigned char* at(int column, int row) const;

    int _width;
    int _height;
    bool _isAlphaOnly;
    RetainPtr<CGContext> _context;
};

/// Whether the canvas's picture is `rows`: all rows in one string, from the top, without line breaks.
testing::AssertionResult looksLike(const Canvas& canvas, std::string_view rows);

#define EXPECT_COVERAGE(canvas, rows) EXPECT_TRUE(looksLike(canvas, rows))
