#include "CoreGraphics/pdf/PDFPrintingInks.h"

#include <array>
#include <cstddef>

namespace {

struct Color {
    double red, green, blue;
};

Color mix(const Color& a, const Color& b, double share)
{
    return {a.red + (b.red - a.red) * share, a.green + (b.green - a.green) * share,
        a.blue + (b.blue - a.blue) * share};
}

// The colours of paper, of solid inks and of solid inks on top of each other. Derived from the colours (CIE
// Lab, D50) that the characterisation data FOGRA39L lists for these patches: offset printing by ISO 12647-2,
// coated paper, white backing. They are relative to the paper, which becomes white, and to all four inks,
// which become black (relative colorimetric with black point compensation); D50 is adapted to sRGB's white by
// Bradford's method, and what sRGB lacks is clipped. Cyan is the lowest bit of the index, then magenta,
// yellow and black.
constexpr std::array<Color, 16> kPatches{{
    {255, 255, 255},
    {0, 159, 227},
    {230, 0, 126},
    {50, 40, 132},
    {255, 237, 0},
    {0, 150, 65},
    {227, 9, 21},
    {51, 51, 49},
    {31, 30, 29},
    {0, 16, 32},
    {39, 0, 4},
    {8, 0, 14},
    {30, 31, 0},
    {0, 22, 0},
    {36, 1, 0},
    {0, 0, 0},
}};

} // namespace

PDFRGB colorOfPrintingInks(double cyan, double magenta, double yellow, double black)
{
    std::array<Color, 16> colors = kPatches;
    std::size_t count = colors.size();
    for (const double ink : {cyan, magenta, yellow, black}) {
        count /= 2;
        for (std::size_t i = 0; i < count; ++i)
            colors[i] = mix(colors[2 * i], colors[2 * i + 1], ink);
    }
    return {float(colors[0].red / 255), float(colors[0].green / 255), float(colors[0].blue / 255)};
}
