#include "CoreGraphics/raster/PathRows.h"

namespace {

/// After this many such bands, the rest of a row is one band: a row in which thousands of crossing chains
/// begin and end would be cut into as many bands.
constexpr int kMostCrowdedBands = 16;
/// Fewer chains than this are one group.
constexpr std::size_t kLeastGrouped = 8;

/// Sums of hashes of numbers are equal only if the numbers are. (The last steps of SplitMix64.)
std::uint64_t hash(double value)
{
    auto bits = std::bit_cast<std::uint64_t>(value);
    bits = (bits ^ bits >> 30) * 0xbf58476d1ce4e5b9;
    bits = (bits ^ bits >> 27) * 0x94d049bb133111eb;
    return bits ^ bits >> 31;
}

/// The floor of a number that is not negative.
int whole(double value)
{
    return int(value);
}

} // namespace

PathRows& PathRows::ofThread()
{
    thread_local PathRows rows;
    return rows;
}

void PathRows::run(
    const CGPath& path, bool isEvenOdd, const PixelSpace& space, const PixelRect& limits, CoverageRows& sink)
{
    _outline.build(path, space, limits);
    _isEvenOdd = isEvenOdd;
    scan(limits, sink);
}

void PathRows::run(const Polygons& polygons, const PixelRect& limits, CoverageRows& sink)
{
    _outline.build(polygons, limits);
    _isEvenOdd = false;
    scan(limits, sink);
}

void PathRows::scan(const PixelRect& limits, CoverageRows& sink)
{
    _row.setWidth(limits.width());
    _height = limits.height();
    _nextChain = 0;
    _active.clear();
    _firstEnd = std::numeric_limits<double>::max();
    const auto& chains = _outline.chains();
    if (const std::size_t most = _outline.edges().size() + chains.size(); _pieces.size() < most)
        _pieces.resize(most);

    for (int row = 0; row < _height;) {
        if (_active.empty()) {
            if (_nextChain == chains.size())
                return;
            row = std::max(row, whole(chains[_nextChain].top));
            if (row >= _height)
                return;
        }
        addRow(row);
        _row.finish();
        const int count = equalRows(row);
        if (!_row.spans().empty())
            sink.rows(limits.top + row, limits.top + row + count, _row.spans(), _row.coverage());
        row += count;
        endChains(row);
    }
}

void PathRows::addRow(double top)
{
    const double bottom = top + 1;
    const std::size_t before = _active.size();
    beginChains(bottom);
    const bool isCut = _firstEnd < bottom
        || std::any_of(_active.begin() + std::ptrdiff_t(before), _active.end(),
            [top](const ActiveChain& each) { return each.top > top; });
    _isUpright = !isCut;
    if (isCut || !addWholeChains(top, bottom))
        addGroups(top, bottom);
}

bool PathRows::addWholeChains(double top, double bottom)
{
    int winding = 0;
    double before = 0; // the right end of the last chain
    for (ActiveChain& chain : _active) {
        const bool wasInside = isInside(winding);
        winding += chain.winding;
        const bool isBoundary = isInside(winding) != wasInside;
        while (chain.edge->bottom <= top)
            ++chain.edge;
        const PathEdge* edge = chain.edge;
        _isUpright = _isUpright && edge->slope == 0 && edge->bottom >= bottom;
        double y = top;
        double x = edge->xAt(top);
        double left = x;
        double right = x;
        for (;; ++edge) {
            const bool isLast = edge->bottom >= bottom;
            const double endY = isLast ? bottom : edge->bottom;
            const double endX = isLast ? edge->xAt(bottom) : edge->bottomX;
            if (isBoundary)
                _row.addLine(x, endX, wasInside ? y - endY : endY - y);
            left = std::min(left, endX);
            right = std::max(right, endX);
            if (isLast)
                break;
            y = endY;
            x = endX;
        }
        if (isBoundary)
            _row.touch(left, right);
        if (left < before - kTolerance) {
            _row.clear();
            return false;
        }
        before = right;
    }
    return true;
}

void PathRows::beginChains(double bottom)
{
    const auto& chains = _outline.chains();
    const PathEdge* edges = _outline.edges().data();
    for (; _nextChain < chains.size() && chains[_nextChain].top < bottom; ++_nextChain) {
        const PathChain& chain = chains[_nextChain];
        _active.push_back({edges + chain.first, edges + chain.end, chain.top, chain.bottom, chain.winding});
        _firstEnd = std::min(_firstEnd, chain.bottom);
    }
}

void PathRows::endChains(double bottom)
{
    if (_firstEnd > bottom)
        return;
    std::erase_if(_active, [bottom](const ActiveChain& each) { return each.bottom <= bottom; });
    _firstEnd = std::numeric_limits<double>::max();
    for (const ActiveChain& each : _active)
        _firstEnd = std::min(_firstEnd, each.bottom);
}

void PathRows::addGroups(double top, double bottom)
{
    _windingBefore = 0;
    if (_active.size() < kLeastGrouped)
        return addGroup({0, _active.size()}, top, bottom);
    _extents.clear();
    for (const ActiveChain& each : _active)
        _extents.push_back(extent(each, top, bottom));
    std::ranges::sort(_extents, {}, &Extent::left);
    _active.clear();
    for (const Extent& each : _extents)
        _active.push_back(each.chain);

    Group group{0, 0};
    int winding = 0;           // that the group adds at the row's top
    std::uint64_t changes = 0; // of the winding within the row: 0 if they cancel each other out
    double right = 0;
    for (const Extent& each : _extents) {
        if (group.end > group.begin && changes == 0 && each.left > right + kTolerance) {
            addGroup(group, top, bottom);
            _windingBefore += winding;
            group.begin = group.end;
            winding = 0;
        }
        ++group.end;
        right = std::max(right, each.right);
        const ActiveChain& chain = each.chain;
        if (chain.top > top)
            changes += hash(chain.top) * std::uint64_t(chain.winding);
        else
            winding += chain.winding;
        if (chain.bottom < bottom)
            changes -= hash(chain.bottom) * std::uint64_t(chain.winding);
    }
    addGroup(group, top, bottom);
}

PathRows::Extent PathRows::extent(const ActiveChain& chain, double top, double bottom)
{
    Extent result{chain, 0, 0};
    const PathEdge*& first = result.chain.edge;
    while (first->bottom <= top && first + 1 < chain.end)
        ++first;
    result.left = result.right = first->xAt(top);
    for (const PathEdge* edge = first; edge < chain.end && edge->top < bottom; ++edge) {
        const double x = edge->xAt(bottom);
        result.left = std::min(result.left, x);
        result.right = std::max(result.right, x);
    }
    return result;
}

void PathRows::addGroup(const Group& group, double top, double bottom)
{
    _group = group;
    _ends.clear();
    for (std::size_t i = group.begin; i < group.end; ++i) {
        if (_active[i].top > top)
            _ends.push_back(_active[i].top);
        if (_active[i].bottom < bottom)
            _ends.push_back(_active[i].bottom);
    }
    std::ranges::sort(_ends);
    _crowdedBands = 0;
    double begin = top;
    for (const double end : _ends) {
        if (_crowdedBands == kMostCrowdedBands)
            return addCrossingBand(begin, bottom);
        if (end > begin) {
            addBand(begin, end);
            begin = end;
        }
    }
    if (begin < bottom)
        addBand(begin, bottom);
}

void PathRows::addBand(double top, double bottom)
{
    _endPiece = _pieces.data();
    _sides.clear();
    for (std::size_t i = _group.begin; i < _group.end; ++i) {
        if (_active[i].top < bottom && _active[i].bottom > top)
            addSide(i, top, bottom);
    }
    sortSides();
    if (areSideBySide())
        addSides();
    else
        addCrossingBand(top, bottom);
}

void PathRows::sortSides()
{
    const auto middle = [](const Side& side) { return side.topX() + side.bottomX(); };
    if (std::ranges::is_sorted(_sides, {}, middle))
        return;
    _places.clear();
    for (const Side& side : _sides)
        _places.push_back(side.active);
    std::ranges::sort(_sides, {}, middle);
    _sorted.clear();
    for (const Side& side : _sides)
        _sorted.push_back(_active[side.active]);
    for (std::size_t i = 0; i < _places.size(); ++i)
        _active[_places[i]] = _sorted[i];
}

void PathRows::addSide(std::size_t index, double top, double bottom)
{
    ActiveChain& active = _active[index];
    while (active.edge->bottom <= top && active.edge + 1 < active.end)
        ++active.edge;
    const PathEdge* edge = active.edge;
    const Piece* const first = _endPiece;
    Piece* piece = _endPiece;
    double y = top;
    double x = edge->xAt(top);
    double left = x;
    double right = x;
    for (; edge->bottom < bottom && edge + 1 < active.end; ++edge) {
        *piece++ = {y, edge->bottom, x, edge->bottomX};
        y = edge->bottom;
        x = edge->bottomX;
        left = std::min(left, x);
        right = std::max(right, x);
    }
    const double end = edge->xAt(bottom);
    *piece++ = {y, bottom, x, end};
    _isUpright = _isUpright && edge->slope == 0 && piece - first == 1;
    _endPiece = piece;
    _sides.push_back({index, first, piece, std::min(left, end), std::max(right, end), active.winding});
}

bool PathRows::areSideBySide() const
{
    // Whether one side lies to the left of another at all their corners.
    const auto isLeftOf = [](const Side& left, const Side& right) {
        if (left.topX() > right.topX() + kTolerance)
            return false;
        const auto xAt = [](const Piece& piece, double y) {
            return piece.topX + (piece.bottomX - piece.topX) * ((y - piece.top) / (piece.bottom - piece.top));
        };
        // The corners of both from top to bottom.
        const Piece* a = left.firstPiece;
        const Piece* b = right.firstPiece;
        while (a != left.endPiece && b != right.endPiece) {
            const double y = std::min(a->bottom, b->bottom);
            const bool endsA = a->bottom <= y;
            const bool endsB = b->bottom <= y;
            if ((endsA ? a->bottomX : xAt(*a, y)) > (endsB ? b->bottomX : xAt(*b, y)) + kTolerance)
                return false;
            a += endsA ? 1 : 0;
            b += endsB ? 1 : 0;
        }
        return true;
    };
    for (std::size_t i = 1; i < _sides.size(); ++i) {
        if (_sides[i - 1].right > _sides[i].left + kTolerance && !isLeftOf(_sides[i - 1], _sides[i]))
            return false;
    }
    return true;
}

void PathRows::addSides()
{
    int winding = _windingBefore;
    for (const Side& side : _sides) {
        const bool wasInside = isInside(winding);
        winding += side.winding;
        if (isInside(winding) == wasInside)
            continue;
        for (const Piece* piece = side.firstPiece; piece != side.endPiece; ++piece) {
            const double height = piece->bottom - piece->top;
            _row.addLine(piece->topX, piece->bottomX, wasInside ? -height : height);
        }
        _row.touch(side.left, side.right);
    }
}

int PathRows::equalRows(int row) const
{
    if (!_isUpright)
        return 1;
    double end = _height;
    for (const ActiveChain& each : _active)
        end = std::min(end, each.edge->bottom);
    const auto& chains = _outline.chains();
    if (_nextChain < chains.size())
        end = std::min(end, chains[_nextChain].top);
    return std::max(1, whole(end) - row);
}
