#pragma once

#include "CoreGraphics/CGPathInternal.h"
#include "CoreGraphics/raster/PixelSpace.h"
#include "CoreGraphics/raster/Polygons.h"

#include <vector>

/// A piece of an outline that runs down: x as a function of y between two heights.
struct PathEdge {
    double top;
    double bottom; ///< below the top
    double topX;
    double bottomX;
    double slope; ///< of x by y

    double xAt(double y) const
    {
        if (y <= top)
            return topX;
        return y >= bottom ? bottomX : topX + (y - top) * slope;
    }
};

/// Edges that continue each other from top to bottom.
struct PathChain {
    std::size_t first; ///< of the edges
    std::size_t end;
    double top;
    double bottom;
    int winding; ///< 1 for a chain that the path runs down, -1 for one that it runs up
};

/// The outline of a path as edges within limits, in units of pixels from the limits' upper left corner.
///
/// Subpaths are closed, and curves are replaced by lines that are nowhere farther from them than `kFlatness`.
/// What lies above, below or to the right of the limits is left out, as it has no effect on coverage within;
/// what lies to the left is moved to their left side.
class PathEdges {
public:
    /// Replaces the edges by those of a path in base space. Keeps the memory of earlier ones.
    void build(const CGPath& path, const PixelSpace& space, const PixelRect& limits);
    /// Replaces the edges by those of polygons, in pixels from the limits' upper left corner.
    void build(const Polygons& polygons, const PixelRect& limits);

    const std::vector<PathEdge>& edges() const { return _edges; }
    /// From top to bottom by their upper ends.
    const std::vector<PathChain>& chains() const { return _chains; }

private:
    class Visitor;

    void begin(const PixelRect& limits);
    void finish();
    void addCubic(CGPoint from, CGPoint control1, CGPoint control2, CGPoint to);
    void addLine(CGPoint from, CGPoint to);
    /// Of a line between the upper and the lower limit: the part within the left and the right one.
    void addBetweenSides(CGPoint from, CGPoint to);
    void addEdge(CGPoint from, CGPoint to);
    void endChain();

    std::vector<PathEdge> _edges;
    std::vector<PathChain> _chains;
    double _width = 0;
    double _height = 0;
    int _winding = 0; ///< of the chain under construction; 0 when there is none
    CGPoint _end{};   ///< of that chain, in the direction of the path
};
