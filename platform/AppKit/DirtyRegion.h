#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <Foundation/NSObjCRuntime.h>

#include <cstddef>
#include <vector>

/// The rectangles of a window that have to be drawn again, as few pieces that contain little more.
///
/// Drawing a piece costs time for each pixel, and some time for being a piece. So two pieces become the
/// rectangle around both where that adds little to what is dirty in them; others stay apart however many
/// there are, up to a limit, beyond which the pieces may contain more and more. Two pieces may overlap, as a
/// high and a wide one do that cross each other.
class KORVID_EXPORT DirtyRegion { // exported for the tests
public:
    /// Adds a rectangle; an empty one adds nothing. Edges are whole numbers of the caller's units.
    void add(CGRect rect);
    bool isEmpty() const { return _pieces.empty(); }
    void clear() { _pieces.clear(); }

    /// The pieces, in the order of their least y and then x. They contain every rectangle that was added.
    std::vector<CGRect> rectangles();

private:
    struct Piece {
        CGRect rect;
        CGFloat dirtyArea; ///< of what was added in it, at most
    };

    bool merge(Piece& piece, const Piece& other) const;
    void mergeAll();
    void reduceTo(std::size_t most);

    std::vector<Piece> _pieces;
    std::vector<Piece> _open; ///< while merging: those that one farther down may be merged with
    CGFloat _growth = kGrowth;

    /// The area of a merged piece is at most this multiple of what is dirty in it, and this area more.
    static constexpr CGFloat kGrowth = 1.25;
    static constexpr CGFloat kAreaOfPiece = 128;
};
