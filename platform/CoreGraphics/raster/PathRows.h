#pragma once

#include "CoreGraphics/raster/CoverageRows.h"
#include "CoreGraphics/raster/PathEdges.h"

#include <cstdint>

/// Computes the exact coverage of each pixel by the inside of a path, whose curves are replaced by lines.
///
/// A row of pixels is cut into bands in which each chain of edges is whole. Where the chains of a band lie
/// side by side, walking them from left to right tells which of them bound the inside; those add their signed
/// areas, of which a running sum is the coverage. Bands in which chains cross are cut at the crossings first.
class PathRows {
public:
    /// The one of this thread: its memory serves all paths.
    static PathRows& ofThread();

    /// Reports the part within `limits` of a path in base space.
    void run(const CGPath& path, bool isEvenOdd, const PixelSpace& space, const PixelRect& limits,
        CoverageRows& sink);

private:
    /// A line within a band.
    struct Piece {
        double top;
        double bottom;
        double topX;
        double bottomX;
    };
    /// A chain within a band.
    struct Side {
        std::size_t active; ///< the index of the chain
        std::size_t firstPiece;
        std::size_t endPiece;
        double topX;
        double bottomX;
        double left;
        double right;
        int winding;
    };
    /// A chain that the row meets, and the first of its edges that ends below the row's top.
    struct ActiveChain {
        PathChain chain;
        std::size_t edge;
    };

    void addRow(double top);
    void addBand(double top, double bottom);
    /// Adds the part of a chain between two heights to the sides.
    void addSide(std::size_t active, double top, double bottom);
    /// Sorts the sides from left to right, and the chains likewise: in most rows they are sorted then.
    void sortSides();
    bool areSideBySide() const;
    /// Whether one side lies to the left of another at all their corners.
    bool isLeftOf(const Side& left, const Side& right) const;
    void addSides();
    /// Adds a band whose chains cross.
    void addCrossingBand(double top, double bottom);
    /// Adds a part of such a band without corners.
    void addCrossingEdges(double top, double bottom);
    /// Adds the areas to the right of the edges between which the inside lies.
    void addCuts(double height);
    /// Adds the area to the right of a line: positive for the left end of the inside.
    void addLine(double topX, double bottomX, double signedHeight);
    void touch(std::size_t first, std::size_t last);
    /// Turns what has been added into spans of coverage, and clears it.
    void finishRow();
    void addConstant(int begin, int end, double coverage);
    /// The number of rows from `row` on, at least 1, that are equal.
    int equalRows(int row) const;
    bool isInside(int winding) const { return _isEvenOdd ? (winding & 1) != 0 : winding != 0; }

    /// A line across a part of a band.
    struct Cut {
        double topX;
        double bottomX;
        int winding;
    };

    PathEdges _outline;
    bool _isEvenOdd = false;
    int _width = 0;
    int _height = 0;
    std::size_t _nextChain = 0;
    std::vector<ActiveChain> _active;
    std::vector<double> _ends; ///< of chains within a row
    std::vector<Piece> _pieces;
    std::vector<Side> _sides;
    std::vector<ActiveChain> _sorted; ///< scratch memory
    std::vector<std::size_t> _places; ///< scratch memory
    bool _isUpright = false;          ///< whether all lines of the row are upright and cross all of it
    std::vector<std::pair<PathEdge, int>> _crossing; ///< edges of a crossing band, with their windings
    std::vector<double> _corners;
    std::vector<Cut> _cuts;

    std::vector<double> _sums; ///< differences of coverage between neighbours; all zero between rows
    std::vector<std::uint64_t> _touched; ///< a bit for each sum that is not zero; all zero between rows
    std::vector<float> _coverage;
    std::vector<CoverageSpan> _spans;
};
