#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cstddef>
#include <span>
#include <vector>

/// Closed polygons, which are filled together.
struct Polygons {
    std::vector<CGPoint> points;   ///< the corners of all, one polygon after the other
    std::vector<std::size_t> ends; ///< of each polygon in the points
    /// Whether these are known to be simple: no edges cross, no insides overlap, and holes run in the other
    /// direction than what they are in. Then all winding numbers are 0 and one other.
    bool areSimple = false;

    void clear()
    {
        areSimple = false;
        points.clear();
        ends.clear();
    }
    /// Makes the points that follow the last polygon one more.
    void close() { ends.push_back(points.size()); }

    /// Calls `visit` with the corners of each polygon.
    template <class Visit> void forEach(Visit visit) const
    {
        std::size_t begin = 0;
        for (const std::size_t end : ends) {
            visit(std::span(points).subspan(begin, end - begin));
            begin = end;
        }
    }
};
