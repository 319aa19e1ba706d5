#pragma once

#include <support/PDFWriter.h>

#include <random>
#include <sstream>
#include <string>

/// A detailed icon of 24 points as drawing programs write it: 60 shapes of 1 to 6 points, each in a colour of
/// its own: curves, rectangles and thin strokes in a compressed stream. Every seed gives another icon.
inline std::string detailedIconPDF(unsigned seed)
{
    std::mt19937 random(seed);
    // In hundredths, as such programs round.
    const auto number = [&](int least, int most) {
        return least + double(random() % unsigned((most - least) * 100)) / 100;
    };
    std::ostringstream content;
    content << ".4 w\n";
    for (int shape = 0; shape < 60; ++shape) {
        const bool isStroke = shape % 6 == 5;
        content << number(0, 1) << ' ' << number(0, 1) << ' ' << number(0, 1) << (isStroke ? " RG " : " rg ");
        const double size = number(1, 6);
        const double left = number(0, 18);
        const double bottom = number(0, 18);
        const double right = left + size;
        const double top = bottom + size;
        const auto point = [&](double x, double y) { content << x << ' ' << y << ' '; };
        switch (shape % 3) {
        case 0: // a leaf from corner to corner
            point(left, bottom), content << "m ";
            point(right, bottom), point(right, bottom), point(right, top), content << "c ";
            point(left, top), point(left, top), point(left, bottom), content << "c h ";
            break;
        case 1:
            point(left, bottom), point(size, size / 2), content << "re ";
            break;
        default: // a wave
            point(left, bottom), content << "m ";
            point(left + size / 2, top), point(right - size / 2, bottom), point(right, top), content << "c ";
        }
        content << (isStroke ? "S\n" : "f\n");
    }
    return pageWriter(content.str(), "", "0 0 24 24").file();
}
