#include "CoreGraphics/raster/PathRows.h"

#include <bit>

namespace {

/// Lines that are closer to each other than this, in pixels, may be taken in either order.
constexpr double tolerance = 1e-4;
/// The least height of a part of a crossing band. There is at most this many of them in a row.
constexpr double leastHeight = 1.0 / 512;
/// More edges than this in one crossing band are not cut at their crossings, but into a number of equal
/// parts: the time to find all crossings grows with the square of the edges.
constexpr std::size_t mostCrossingEdges = 128;
constexpr int equalParts = 16;

/// Coverage that is nearer to 0 or 1 than this is rounded to it.
constexpr double leastCoverage = 1.0 / 1024;
/// Smallest number of uncovered or of fully covered pixels in a row that is worth a separate span.
constexpr int longRun = 16;

constexpr std::size_t bitsPerWord = 64;

/// The floor of a number that is not negative.
int whole(double value)
{
    return static_cast<int>(value);
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
    _width = limits.width();
    _height = limits.height();
    const auto sums = std::size_t(_width) + 2;
    if (_sums.size() < sums) {
        _sums.resize(sums);
        _coverage.resize(sums);
        _touched.resize((sums + bitsPerWord - 1) / bitsPerWord);
    }
    _nextChain = 0;
    _active.clear();

    const auto& chains = _outline.chains();
    for (int row = 0; row < _height;) {
        if (_active.empty()) {
            if (_nextChain == chains.size())
                return;
            row = std::max(row, whole(chains[_nextChain].top));
            if (row >= _height)
                return;
        }
        addRow(static_cast<double>(row));
        finishRow();
        const int count = equalRows(row);
        if (!_spans.empty())
            sink.rows(limits.top + row, limits.top + row + count, _spans, _coverage.data());
        row += count;
        std::erase_if(_active, [row](const ActiveChain& each) { return each.chain.bottom <= double(row); });
    }
}

void PathRows::addRow(double top)
{
    const double bottom = top + 1;
    const auto& chains = _outline.chains();
    for (; _nextChain < chains.size() && chains[_nextChain].top < bottom; ++_nextChain)
        _active.push_back({chains[_nextChain], chains[_nextChain].first});
    _ends.clear();
    for (const ActiveChain& each : _active) {
        if (each.chain.top > top)
            _ends.push_back(each.chain.top);
        if (each.chain.bottom < bottom)
            _ends.push_back(each.chain.bottom);
    }
    _isUpright = _ends.empty();
    std::ranges::sort(_ends);
    double begin = top;
    for (const double end : _ends) {
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
    _pieces.clear();
    _sides.clear();
    for (std::size_t i = 0; i < _active.size(); ++i) {
        if (_active[i].chain.top < bottom && _active[i].chain.bottom > top)
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
    const auto middle = [](const Side& side) { return side.topX + side.bottomX; };
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
    const auto& edges = _outline.edges();
    while (edges[active.edge].bottom <= top && active.edge + 1 < active.chain.end)
        ++active.edge;
    Side side{index, _pieces.size(), 0, 0, 0, std::numeric_limits<double>::max(), 0, active.chain.winding};
    double y = top;
    for (std::size_t i = active.edge;; ++i) {
        const PathEdge& edge = edges[i];
        const bool isLast = edge.bottom >= bottom || i + 1 == active.chain.end;
        const double end = isLast ? bottom : edge.bottom;
        const Piece piece{y, end, edge.xAt(y), edge.xAt(end)};
        _pieces.push_back(piece);
        _isUpright = _isUpright && piece.topX == piece.bottomX && edge.bottom >= bottom && isLast;
        side.left = std::min({side.left, piece.topX, piece.bottomX});
        side.right = std::max({side.right, piece.topX, piece.bottomX});
        if (isLast)
            break;
        y = end;
    }
    side.endPiece = _pieces.size();
    side.topX = _pieces[side.firstPiece].topX;
    side.bottomX = _pieces.back().bottomX;
    _sides.push_back(side);
}

bool PathRows::areSideBySide() const
{
    for (std::size_t i = 1; i < _sides.size(); ++i) {
        if (_sides[i - 1].right > _sides[i].left + tolerance && !isLeftOf(_sides[i - 1], _sides[i]))
            return false;
    }
    return true;
}

bool PathRows::isLeftOf(const Side& left, const Side& right) const
{
    if (left.topX > right.topX + tolerance)
        return false;
    const auto xAt = [](const Piece& piece, double y) {
        return piece.topX + (piece.bottomX - piece.topX) * ((y - piece.top) / (piece.bottom - piece.top));
    };
    // The corners of both from top to bottom.
    std::size_t i = left.firstPiece;
    std::size_t j = right.firstPiece;
    for (;;) {
        const Piece& a = _pieces[i];
        const Piece& b = _pieces[j];
        const bool isLeftNext = a.bottom <= b.bottom;
        const double leftX = isLeftNext ? a.bottomX : xAt(a, b.bottom);
        const double rightX = isLeftNext && b.bottom > a.bottom ? xAt(b, a.bottom) : b.bottomX;
        if (leftX > rightX + tolerance)
            return false;
        const bool isRightNext = b.bottom <= a.bottom;
        i += isLeftNext ? 1 : 0;
        j += isRightNext ? 1 : 0;
        if (i == left.endPiece || j == right.endPiece)
            return true;
    }
}

void PathRows::addSides()
{
    int winding = 0;
    for (const Side& side : _sides) {
        const bool wasInside = isInside(winding);
        winding += side.winding;
        if (isInside(winding) == wasInside)
            continue;
        for (std::size_t i = side.firstPiece; i < side.endPiece; ++i) {
            const Piece& piece = _pieces[i];
            const double height = piece.bottom - piece.top;
            addLine(piece.topX, piece.bottomX, wasInside ? -height : height);
        }
    }
}

void PathRows::addCrossingBand(double top, double bottom)
{
    _isUpright = false;
    _crossing.clear();
    _corners.clear();
    const auto& edges = _outline.edges();
    for (const ActiveChain& each : _active) {
        for (std::size_t i = each.edge; i < each.chain.end && edges[i].top < bottom; ++i) {
            if (edges[i].bottom <= top)
                continue;
            _crossing.emplace_back(edges[i], each.chain.winding);
            if (edges[i].top > top)
                _corners.push_back(edges[i].top);
            if (edges[i].bottom < bottom)
                _corners.push_back(edges[i].bottom);
        }
    }
    if (_crossing.size() > mostCrossingEdges) {
        _corners.clear();
        for (int i = 1; i < equalParts; ++i)
            _corners.push_back(top + (bottom - top) * double(i) / equalParts);
    }
    _corners.push_back(bottom);
    std::ranges::sort(_corners);
    double begin = top;
    for (const double end : _corners) {
        if (end > begin) {
            addCrossingEdges(begin, end);
            begin = end;
        }
    }
}

void PathRows::addCrossingEdges(double top, double bottom)
{
    while (top < bottom) {
        double end = bottom;
        const double middle = 0.5 * (top + bottom);
        _cuts.clear();
        for (const auto& [edge, winding] : _crossing) {
            if (edge.top < middle && edge.bottom > middle)
                _cuts.push_back({edge.xAt(top), edge.xAt(bottom), winding});
        }
        if (_crossing.size() > mostCrossingEdges) {
            std::ranges::sort(_cuts, {}, [](const Cut& cut) { return cut.topX + cut.bottomX; });
        } else {
            std::ranges::sort(_cuts, [](const Cut& a, const Cut& b) {
                return a.topX < b.topX || (a.topX == b.topX && a.bottomX < b.bottomX);
            });
            // Down to the first crossing; it is one of neighbours.
            double part = 1;
            for (std::size_t i = 1; i < _cuts.size(); ++i) {
                const Cut& a = _cuts[i - 1];
                const Cut& b = _cuts[i];
                if (a.bottomX > b.bottomX + tolerance)
                    part = std::min(part, (b.topX - a.topX) / (b.topX - a.topX + a.bottomX - b.bottomX));
            }
            const double crossing = std::max(top + (bottom - top) * part, top + leastHeight);
            if (part < 1 && crossing < bottom) {
                end = crossing;
                const double share = (end - top) / (bottom - top);
                for (Cut& cut : _cuts)
                    cut.bottomX = cut.topX + (cut.bottomX - cut.topX) * share;
            }
        }
        addCuts(end - top);
        top = end;
    }
}

void PathRows::addCuts(double height)
{
    int winding = 0;
    for (const Cut& cut : _cuts) {
        const bool wasInside = isInside(winding);
        winding += cut.winding;
        if (isInside(winding) != wasInside)
            addLine(cut.topX, cut.bottomX, wasInside ? -height : height);
    }
}

void PathRows::addLine(double topX, double bottomX, double signedHeight)
{
    const double left = std::min(topX, bottomX);
    const double right = std::max(topX, bottomX);
    const int first = whole(left);
    const int last = whole(right);
    double* sums = &_sums[std::size_t(first)];
    if (first == last) {
        const double rest = signedHeight * (0.5 * (left + right) - double(first));
        sums[0] += signedHeight - rest;
        sums[1] += rest;
        return touch(std::size_t(first), std::size_t(first) + 1);
    }
    // The line meets the pixels `first` to `last`. Pixel p gets what lies right of the line within it.
    const double perPixel = signedHeight / (right - left);
    const double inFirst = double(first + 1) - left;
    const double beyondLast = double(last + 1) - right;
    double before = 0.5 * perPixel * inFirst * inFirst;
    sums[0] += before;
    for (int p = first + 1; p < last; ++p) {
        const double area = perPixel * (double(p) - left + 0.5);
        *++sums += area - before;
        before = area;
    }
    const double area = perPixel * (double(last) - left + 0.5 - 0.5 * beyondLast * beyondLast);
    sums[1] += area - before;
    sums[2] += signedHeight - area;
    touch(std::size_t(first), std::size_t(last) + 1);
}

void PathRows::touch(std::size_t first, std::size_t last)
{
    constexpr auto all = ~std::uint64_t(0);
    const std::size_t firstWord = first / bitsPerWord;
    const std::size_t lastWord = last / bitsPerWord;
    const auto from = all << (first % bitsPerWord);
    const auto until = all >> (bitsPerWord - 1 - last % bitsPerWord);
    if (firstWord == lastWord) {
        _touched[firstWord] |= from & until;
        return;
    }
    _touched[firstWord] |= from;
    std::fill(
        _touched.begin() + std::ptrdiff_t(firstWord) + 1, _touched.begin() + std::ptrdiff_t(lastWord), all);
    _touched[lastWord] |= until;
}

void PathRows::finishRow()
{
    _spans.clear();
    double coverage = 0;
    int x = 0;
    const std::size_t words = (std::size_t(_width) + 2 + bitsPerWord - 1) / bitsPerWord;
    for (std::size_t word = 0; word < words; ++word) {
        std::uint64_t bits = _touched[word];
        _touched[word] = 0;
        while (bits != 0) {
            const int bit = std::countr_zero(bits);
            const int count = std::countr_one(bits >> bit);
            const int begin = int(word * bitsPerWord) + bit;
            const int end = std::min(begin + count, _width);
            addConstant(x, std::min(begin, _width), coverage);
            for (int i = begin; i < end; ++i) {
                coverage += _sums[std::size_t(i)];
                _coverage[std::size_t(i)] = static_cast<float>(coverage);
            }
            std::fill_n(_sums.begin() + begin, count, 0.0);
            if (begin < end) {
                if (!_spans.empty() && !_spans.back().isFull && _spans.back().end == begin)
                    _spans.back().end = end;
                else
                    _spans.push_back({begin, end, false});
            }
            x = std::max(x, end);
            bits = bit + count < int(bitsPerWord) ? bits & (~std::uint64_t(0) << (bit + count)) : 0;
        }
    }
    addConstant(x, _width, coverage);
}

void PathRows::addConstant(int begin, int end, double coverage)
{
    if (begin >= end)
        return;
    const bool isNone = coverage < leastCoverage;
    const bool isFull = coverage > 1 - leastCoverage;
    const bool followsMixed = !_spans.empty() && !_spans.back().isFull && _spans.back().end == begin;
    if (isNone && !(followsMixed && end - begin < longRun && end < _width))
        return;
    if (isFull && end - begin >= longRun) {
        _spans.push_back({begin, end, true});
        return;
    }
    std::fill(
        _coverage.begin() + begin, _coverage.begin() + end, isNone ? 0.0F : static_cast<float>(coverage));
    if (followsMixed)
        _spans.back().end = end;
    else
        _spans.push_back({begin, end, false});
}

int PathRows::equalRows(int row) const
{
    if (!_isUpright)
        return 1;
    double end = double(_height);
    for (const ActiveChain& each : _active)
        end = std::min(end, _outline.edges()[each.edge].bottom);
    const auto& chains = _outline.chains();
    if (_nextChain < chains.size())
        end = std::min(end, chains[_nextChain].top);
    return std::max(1, whole(end) - row);
}
