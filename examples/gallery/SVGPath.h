#pragma once

#include <CoreGraphics/CGPath.h>
#include <Foundation/RetainPtr.h>

#include <stdexcept>
#include <string_view>

/// What is wrong with path data, and where: lines and columns count from 1.
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

/// Reads SVG path data of the absolute commands M, L, C, Q and Z: letters, each followed by its coordinates,
/// which may be repeated without the letter. The path comes out as it is written, with y down.
///
/// Throws SVGPathError for anything else, also for data without a path.
RetainPtr<CGPath> makePathFromSVG(std::string_view data);
