#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <string>
#include <vector>

/// Opaque pixels: three bytes each, from the top row down.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bytes;

    const std::uint8_t* pixel(int x, int y) const
    {
        return &bytes[3 * (std::size_t(y) * std::size_t(width) + std::size_t(x))];
    }
};

/// Reads a binary PPM file; throws when it is none.
Picture readPPM(const std::string& path);
/// Averages of `factor` x `factor` pixels.
Picture shrunk(const Picture& picture, int factor);

/// The first page on white, drawn by Core Graphics at `pixels` for the longer side of its crop box.
Picture drawn(CGPDFDocumentRef document, int pixels);
/// The first page on white, drawn by another program into a square of 1024 pixels' length for the longer
/// side.
Picture drawnByPoppler(const std::string& path, const std::string& folder);
Picture drawnByMuPDF(const std::string& path, const std::string& folder);

/// How far pictures of equal size are from each other, in steps of 255.
struct Difference {
    double mean = 0;
    int highest = 0;
};

/// The difference between `picture` and the mean of two others, where those two agree.
Difference difference(const Picture& picture, const Picture& first, const Picture& second);

/// What a picture shows on white, in units of its longer side.
struct Ink {
    CGRect box = CGRectNull;
    double area = 0;
};

Ink ink(const Picture& picture);
