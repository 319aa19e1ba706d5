#pragma once

#include <CoreGraphics/CGPath.h>
#include <Foundation/RetainPtr.h>

#include <stdexcept>
#include <string_view>

/// An error in path data and its position; lines and columns count from 1.
struct SVGPathError : std::runtime_error {
    SVGPathError(const char* what, std::size_t lineNumber, std::size_t columnNumber)
        : std::runtime_error(what)
        , line(lineNumber)
        , column(columnNumber)
    {
    }
    std::size_t line;
    std::size_t column;
};

/// Reads SVG path data with the absolute commands M, L, C, Q and Z. Coordinates may be repeated without the
/// letter. The path has the data's coordinates, with y down.
///
/// Throws SVGPathError for anything else, and for data without a path.
RetainPtr<CGPath> makePathFromSVG(std::string_view data);
