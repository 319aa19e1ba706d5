#include "DirtyRegion.h"

#include <algorithm>

namespace {

constexpr std::size_t kMostPieces = 1024; ///< of a result
constexpr std::size_t kMostAdded = 2 * kMostPieces;

CGFloat areaOf(CGRect rect)
{
    return CGRectIsNull(rect) ? 0 : rect.size.width * rect.size.height;
}

} // namespace

void DirtyRegion::add(CGRect rect)
{
    if (CGRectIsEmpty(rect))
        return;
    // A view is often marked several times in succession.
    if (!_pieces.empty() && CGRectContainsRect(_pieces.back().rect, rect))
        return;
    _pieces.push_back({rect, areaOf(rect)});
    if (_pieces.size() > kMostAdded)
        reduceTo(kMostPieces);
}

std::vector<CGRect> DirtyRegion::rectangles()
{
    reduceTo(kMostPieces);
    std::vector<CGRect> rects;
    rects.reserve(_pieces.size());
    for (const Piece& piece : _pieces)
        rects.push_back(piece.rect);
    return rects;
}

/// Extends `piece` to the rectangle around both, unless that contains too much.
bool DirtyRegion::merge(Piece& piece, const Piece& other) const
{
    const CGRect around = CGRectUnion(piece.rect, other.rect);
    const auto isTooMuchFor = [&](CGFloat dirtyArea) {
        return areaOf(around) > dirtyArea * _growth + kAreaOfPiece;
    };
    const CGFloat sum = piece.dirtyArea + other.dirtyArea;
    if (isTooMuchFor(sum))
        return false;
    const CGRect shared = CGRectIntersection(piece.rect, other.rect);
    const CGFloat dirtyArea = std::max({piece.dirtyArea, other.dirtyArea, sum - areaOf(shared)});
    if (isTooMuchFor(dirtyArea))
        return false;
    piece = {around, dirtyArea};
    return true;
}

/// Merges pieces from top to bottom: each with those above that reach down to it.
void DirtyRegion::mergeAll()
{
    const auto isBefore = [](const Piece& a, const Piece& b) {
        return a.rect.origin.y != b.rect.origin.y ? a.rect.origin.y < b.rect.origin.y
                                                  : a.rect.origin.x < b.rect.origin.x;
    };
    std::sort(_pieces.begin(), _pieces.end(), isBefore);
    _open.clear();
    std::size_t closed = 0; // pieces at the front of the list are final
    for (std::size_t i = 0; i < _pieces.size(); ++i) {
        Piece piece = _pieces[i];
        const CGFloat reach = piece.rect.size.height * (_growth - 1) + 1;
        for (std::size_t j = 0; j < _open.size();) {
            if (CGRectGetMaxY(_open[j].rect) + reach < CGRectGetMinY(piece.rect)) {
                _pieces[closed++] = _open[j];
            } else if (merge(piece, _open[j])) {
                _open[j] = _open.back();
                _open.pop_back();
                j = 0; // the larger one may be merged with those that were too far away
                continue;
            } else {
                ++j;
                continue;
            }
            _open[j] = _open.back();
            _open.pop_back();
        }
        _open.push_back(piece);
    }
    _pieces.resize(closed);
    _pieces.insert(_pieces.end(), _open.begin(), _open.end());
    std::sort(_pieces.begin(), _pieces.end(), isBefore);
}

void DirtyRegion::reduceTo(std::size_t most)
{
    mergeAll();
    for (_growth = kGrowth; _pieces.size() > most;) {
        _growth *= 2;
        mergeAll();
    }
    _growth = kGrowth;

    CGRect bounds = CGRectNull;
    CGFloat area = 0;
    for (const Piece& piece : _pieces) {
        bounds = CGRectUnion(bounds, piece.rect);
        area += areaOf(piece.rect);
    }
    if (_pieces.size() > 1 && areaOf(bounds) <= area * kGrowth)
        _pieces = {{bounds, area}};
}
