#pragma once

#include "CoreGraphics/raster/PathEdges.h"
#include "CoreGraphics/raster/RowCoverage.h"

/// Computes the exact coverage of each pixel by the inside of a path, whose curves are replaced by lines.
///
/// A row of pixels is cut into bands in which each chain of edges is whole. Where the chains of a band lie
/// side by side, walking them from left to right tells which of them bound the inside; those add their signed
/// areas to the row's coverage. Bands in which chains cross are cut at the crossings first. Chains that are
/// apart from others are cut by themselves.
class PathRows {
public:
    /// The one of this thread: its memory serves all paths.
    static PathRows& ofThread();

    /// Reports the part within `limits` of a path in base space.
    void run(const CGPath& path, bool isEvenOdd, const PixelSpace& space, const PixelRect& limits,
        CoverageRows& sink);
    /// Reports the inside of polygons by the winding rule, in pixels from the limits' upper left corner.
    void run(const Polygons& polygons, const PixelRect& limits, CoverageRows& sink);

private:
    /// Lines that are closer to each other than this, in pixels, may be taken in either order.
    static constexpr double kTolerance = 1e-4;

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
        const Piece* firstPiece;
        const Piece* endPiece;
        double left;
        double right;
        int winding;

        double topX() const { return firstPiece->topX; }
        double bottomX() const { return endPiece[-1].bottomX; }
    };
    /// A chain that the row meets.
    struct ActiveChain {
        const PathEdge* edge; ///< the first that ends below the row's top
        const PathEdge* end;
        double top;
        double bottom;
        int winding;
    };
    /// Where a chain lies in a row.
    struct Extent {
        ActiveChain chain;
        double left;
        double right;
    };
    /// Active chains that are cut where one of them begins, ends or crosses another one. Those to their left
    /// add the same winding in all of the row.
    struct Group {
        std::size_t begin;
        std::size_t end;
    };
    /// A line across a part of a band.
    struct Cut {
        double topX;
        double bottomX;
        int winding;
    };

    /// Reports the inside of the edges.
    void scan(const PixelRect& limits, CoverageRows& sink);
    void addRow(double top);
    /// Adds a row that all chains cross, if they lie side by side in their order; otherwise adds nothing.
    bool addWholeChains(double top, double bottom);
    void beginChains(double bottom);
    void endChains(double bottom);
    /// Adds a row in which chains cross, begin or end, by groups of chains that are apart from the others.
    void addGroups(double top, double bottom);
    static Extent extent(const ActiveChain& chain, double top, double bottom);
    void addGroup(const Group& group, double top, double bottom);
    void addBand(double top, double bottom);
    /// Adds the part of a chain between two heights to the sides.
    void addSide(std::size_t active, double top, double bottom);
    /// Sorts the sides from left to right, and the chains likewise: in most rows they are sorted then.
    void sortSides();
    bool areSideBySide() const;
    void addSides();
    /// Adds a band whose chains cross.
    void addCrossingBand(double top, double bottom);
    /// Adds a part of such a band without corners.
    void addCrossingEdges(double top, double bottom);
    /// Sorts the cuts by where they are below a part's top, at a share of its height.
    void sortCuts(double share);
    /// The share of a part's height that is above the first crossing; 1 if there is none.
    double partAboveCrossings() const;
    /// Adds the areas to the right of the edges between which the inside lies, down to a share of their
    /// height, and shortens the cuts by that part.
    void addCuts(double height, double share);
    /// The number of rows from `row` on, at least 1, that are equal.
    int equalRows(int row) const;
    bool isInside(int winding) const { return _isEvenOdd ? (winding & 1) != 0 : winding != 0; }

    PathEdges _outline;
    RowCoverage _row;
    bool _isEvenOdd = false;
    int _height = 0;
    std::size_t _nextChain = 0;
    std::vector<ActiveChain> _active;
    double _firstEnd = 0;         ///< the uppermost bottom of the active chains
    std::vector<Extent> _extents; ///< of the active chains, from left to right
    Group _group{};
    int _windingBefore = 0;     ///< to the left of the group
    int _crowdedBands = 0;      ///< of the group, with more edges than are cut at their crossings
    std::vector<double> _ends;  ///< of chains within a row
    std::vector<Piece> _pieces; ///< as many as any band can have
    Piece* _endPiece = nullptr; ///< of those in use
    std::vector<Side> _sides;
    std::vector<ActiveChain> _sorted; ///< scratch memory
    std::vector<std::size_t> _places; ///< scratch memory
    bool _isUpright = false;          ///< whether all lines of the row are upright and cross all of it
    std::vector<std::pair<PathEdge, int>> _crossing; ///< edges of a crossing band, with their windings
    std::vector<double> _corners;
    std::vector<Cut> _cuts;
};
