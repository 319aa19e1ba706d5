#pragma once

#include "CoreGraphics/raster/CoverageRows.h"
#include "CoreGraphics/raster/Pixels.h"
#include "CoreGraphics/raster/Polygons.h"
#include "CoreGraphics/raster/SignedAreas.h"

/// Computes the exact coverage of simple polygons: see Polygons::areSimple.
///
/// Nothing covers a pixel twice there, so the sum of the signed areas of all edges is the coverage, in
/// whatever order they are added: there is no sorting along x, and there are no winding numbers. Edges are
/// added to several rows at once, a band, so that each takes a short loop.
class SimpleRows {
public:
    /// The one of this thread: its memory serves all polygons.
    static SimpleRows& ofThread();

    /// Reports the inside of polygons, in pixels from the limits' upper left corner. Returns false, without a
    /// report, unless these are known to be simple, and near enough.
    bool run(const Polygons& polygons, const PixelRect& limits, CoverageRows& sink);

private:
    struct Edge {
        CGPoint top;
        CGPoint bottom;
        double sign; ///< of the area to its right, times full coverage
    };
    /// In a list of those that begin in the same band.
    struct ListedEdge {
        Edge edge;
        int next;
    };
    /// Adds the parts of an edge to a row after the other.
    struct Piece {
        int* sums;
        unsigned char* touched;
        unsigned char* isNew;

        /// Adds the area to the right of a line within the row. The height is in units of the sums.
        void add(double topX, double bottomX, double height);
        /// The same for an edge that is not upright.
        void addSlanted(double topX, double bottomX, double height);
        void goDown(int blocksPerRow)
        {
            sums += std::ptrdiff_t(blocksPerRow) * AreaRows::kBlock;
            touched += blocksPerRow;
            ++isNew;
        }
    };

    void setSize(int width, int height);
    /// Adds a line between two corners.
    void addLine(CGPoint from, CGPoint to);
    /// Adds what lies within the limits of an edge, and what is to their left at their left side.
    void addCut(const Edge& edge);
    /// Adds an edge within the limits.
    void addEdge(const Edge& edge);
    /// Adds the part of an edge within the band, and retains the rest for later ones.
    void addLong(const Edge& edge);
    /// Adds an edge within the band.
    void addRows(const Edge& edge);
    /// Adds an upright edge to the rows of the band that are new.
    void addUpright(const Edge& edge);
    Piece pieceAt(int row);

    void beginBand(int top);
    void setNew(int row) { _isNew[std::size_t(row)] |= 1; }
    bool isNew(int row) const { return _isNew[std::size_t(row)] != 0; }
    /// Adds the upright edges, reports the band's rows and clears them.
    void finishBand(CoverageRows& sink);
    /// The spans of a row of the band whose touched blocks have their coverage. Sets that of other pixels
    /// where it is part of a mixed span.
    std::span<const CoverageSpan> spansOf(int row, unsigned char* coverage);
    /// Adds the edges that reach beyond the first band.
    void finishBands(CoverageRows& sink);

    PixelRect _limits;
    bool _isWithin = true; ///< whether all corners are within the limits
    int _height = 0;
    int _stride = 0;
    int _blocksPerRow = 0;
    int _bandHeight = 0;
    int _top = 0; ///< of the band
    int _bottom = 0;

    std::vector<int> _sums; ///< of the band's rows, differences between neighbours; all zero between bands
    std::vector<unsigned char> _touched;  ///< of each row, whether the sums of a block may not be zero
    std::vector<unsigned char> _isNew;    ///< of each row, 0 if it is equal to the one above
    std::vector<Edge> _upright;           ///< edges of the band
    std::vector<unsigned char> _coverage; ///< of the band's rows
    std::vector<CoverageSpan> _spans;     ///< memory

    std::vector<ListedEdge> _listed;
    std::vector<int> _firstListed; ///< of each band
    std::vector<Edge> _next;       ///< what is left of edges that go on in the next band
    std::vector<Edge> _active;     ///< the same for this band
};
