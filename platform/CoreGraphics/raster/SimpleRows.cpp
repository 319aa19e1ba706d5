#include "CoreGraphics/raster/SimpleRows.h"

#include "CoreGraphics/raster/SignedAreas.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

/// Most sums of a band, but for very wide ones. Few of them are touched.
constexpr int kBandSize = 1 << 17;
constexpr int kLeastBandHeight = 8;

/// What a row is, as bits.
constexpr unsigned char kIsNew = 1;
constexpr unsigned char kIsSlanted = 2; ///< different from both of its neighbours

/// In pixels. The rows of narrower shapes are reported together: each has little to paint.
constexpr int kMostMaskWidth = 96;

/// Infinite for points that are not finite.
AreaRect boxOf(std::span<const CGPoint> corners)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    AreaRect box{kInfinity, kInfinity, -kInfinity, -kInfinity};
    double sum = 0;
    for (const CGPoint corner : corners) {
        box.left = std::min(box.left, corner.x);
        box.top = std::min(box.top, corner.y);
        box.right = std::max(box.right, corner.x);
        box.bottom = std::max(box.bottom, corner.y);
        sum += corner.x + corner.y;
    }
    if (std::isnan(sum))
        box.left = -kInfinity;
    return box;
}

bool contains(double limit, const AreaRect& box)
{
    return box.left > -limit && box.top > -limit && box.right < limit && box.bottom < limit;
}

} // namespace

SimpleRows& SimpleRows::ofThread()
{
    thread_local SimpleRows rows;
    return rows;
}

bool SimpleRows::run(const Polygons& polygons, const PixelRect& limits, CoverageRows& sink)
{
    if (!polygons.areSimple)
        return false;
    const AreaRect box = boxOf(polygons.points);
    if (!contains(kFarthestExactLine, box))
        return false;
    _limits = limits;
    _isWithin = box.left >= 0 && box.right <= limits.width() && box.top >= 0 && box.bottom <= limits.height();
    setSize(limits.width(), limits.height());
    beginBand(0);
    polygons.forEach([this](std::span<const CGPoint> corners) {
        if (corners.empty())
            return;
        CGPoint last = corners.back();
        for (const CGPoint corner : corners) {
            addLine(last, corner);
            last = corner;
        }
    });
    finishBand(sink);
    if (_bottom < _height)
        finishBands(sink);
    return true;
}

void SimpleRows::setSize(int width, int height)
{
    _height = height;
    // A line at the right limit touches two pixels beyond it.
    _blocksPerRow = (width + 1) / AreaRows::kBlock + 1;
    _stride = _blocksPerRow * AreaRows::kBlock;
    _bandHeight = std::min(height, std::max(kBandSize / _stride, kLeastBandHeight));
    const auto rows = std::size_t(_bandHeight);
    _sums.resize(std::max(_sums.size(), rows * std::size_t(_stride)));
    _touched.resize(std::max(_touched.size(), rows * std::size_t(_blocksPerRow) + AreaRows::kBlockPadding));
    _isNew.resize(std::max(_isNew.size(), rows + 1));
    _coverage.resize(std::max(_coverage.size(), rows * std::size_t(_stride)));
    _spans.resize(std::max(_spans.size(), 2 * std::size_t(_blocksPerRow) + 1)); // as many as there can be
    if (_bandHeight < height) {
        _listed.clear();
        _next.clear();
        _firstListed.assign(std::size_t((height + _bandHeight - 1) / _bandHeight), -1);
    }
}

inline void SimpleRows::addLine(CGPoint from, CGPoint to)
{
    if (from.y == to.y)
        return;
    const Edge edge = from.y < to.y ? Edge{from, to, double(kFullArea)} : Edge{to, from, -double(kFullArea)};
    const auto isBetween = [](double value, double limit) { return value >= 0 && value <= limit; };
    const double width = _limits.width();
    if (_isWithin
        || (isBetween(from.x, width) && isBetween(to.x, width) && isBetween(from.y, _height)
            && isBetween(to.y, _height)))
        addEdge(edge);
    else
        addCut(edge);
}

void SimpleRows::addCut(const Edge& edge)
{
    if (!(edge.bottom.y > 0 && edge.top.y < _height))
        return;
    // Where the edge crosses the limits, from top to bottom.
    const double width = _limits.width();
    const double slope = (edge.bottom.x - edge.top.x) / (edge.bottom.y - edge.top.y);
    const double begin = std::max(edge.top.y, 0.0);
    const double end = std::min(edge.bottom.y, double(_height));
    const auto yAt = [&](double x) {
        return slope == 0 ? end : std::clamp(edge.top.y + (x - edge.top.x) / slope, begin, end);
    };
    const auto pointAt = [&](double y) {
        const double x = y == edge.top.y ? edge.top.x
            : y == edge.bottom.y         ? edge.bottom.x
                                         : edge.top.x + (y - edge.top.y) * slope;
        return CGPoint{x, y};
    };
    const auto [first, second] = std::minmax({yAt(0), yAt(width)});
    CGPoint top = pointAt(begin);
    for (const double y : {first, second, end}) {
        if (!(y > top.y))
            continue;
        const CGPoint bottom = pointAt(y);
        if (top.x + bottom.x < 2 * width)
            addEdge(
                {{std::clamp(top.x, 0.0, width), top.y}, {std::clamp(bottom.x, 0.0, width), y}, edge.sign});
        top = bottom;
    }
}

inline void SimpleRows::addEdge(const Edge& edge)
{
    if (edge.bottom.y <= _bottom)
        addRows(edge);
    else
        addLong(edge);
}

void SimpleRows::addLong(const Edge& edge)
{
    if (edge.top.y >= _bottom) {
        int& first = _firstListed[std::size_t(int(edge.top.y) / _bandHeight)];
        _listed.push_back({edge, first});
        first = int(_listed.size()) - 1;
        return;
    }
    const double slope = (edge.bottom.x - edge.top.x) / (edge.bottom.y - edge.top.y);
    const CGPoint middle{edge.top.x + (_bottom - edge.top.y) * slope, double(_bottom)};
    addRows({edge.top, middle, edge.sign});
    _next.push_back({middle, edge.bottom, edge.sign});
}

void SimpleRows::beginBand(int top)
{
    _top = top;
    _bottom = std::min(top + _bandHeight, _height);
    std::memset(_touched.data(), 0, std::size_t(_bandHeight) * std::size_t(_blocksPerRow));
    std::memset(_isNew.data(), 0, std::size_t(_bandHeight) + 1);
    _upright.clear();
}

inline void SimpleRows::addRows(const Edge& edge)
{
    const double y = edge.top.y - _top;
    const double endY = edge.bottom.y - _top;
    int row = int(y);
    const int lastRow = int(endY);
    if (edge.top.x == edge.bottom.x) {
        _upright.push_back(edge);
        setNew(row);
        setNew(row + 1);
        const int end = lastRow + (endY > lastRow ? 1 : 0);
        setNew(end - 1);
        setNew(end);
        return;
    }
    Piece piece = pieceAt(row);
    if (row == lastRow)
        return piece.addSlanted(edge.top.x, edge.bottom.x, (endY - y) * edge.sign);
    const double slope = (edge.bottom.x - edge.top.x) / (endY - y);
    double x = edge.top.x;
    double next = x + (row + 1 - y) * slope;
    piece.addSlanted(x, next, (row + 1 - y) * edge.sign);
    for (++row; row < lastRow; ++row) {
        piece.goDown(_blocksPerRow);
        x = next;
        next += slope;
        piece.addSlanted(x, next, edge.sign);
    }
    if (endY > lastRow) {
        piece.goDown(_blocksPerRow);
        piece.addSlanted(next, edge.bottom.x, (endY - lastRow) * edge.sign);
    }
}

inline SimpleRows::Piece SimpleRows::pieceAt(int row)
{
    return {&_sums[std::size_t(row) * std::size_t(_stride)],
        &_touched[std::size_t(row) * std::size_t(_blocksPerRow)], &_isNew[std::size_t(row)]};
}

inline void SimpleRows::Piece::addSlanted(double topX, double bottomX, double height)
{
    *isNew = kIsSlanted;
    add(topX, bottomX, height);
}

inline void SimpleRows::Piece::add(double topX, double bottomX, double height)
{
    const double left = std::min(topX, bottomX);
    const double right = std::max(topX, bottomX);
    const int first = int(left);
    const int last = int(right) - first;
    const int firstBlock = first / AreaRows::kBlock;
    const int lastBlock = (first + last + 1) / AreaRows::kBlock;
    touched[firstBlock] = 1;
    touched[lastBlock] = 1;
    for (int block = firstBlock + 1; block < lastBlock; ++block)
        touched[block] = 1;
    addAreas(sums + first, left - first, right - first, last, height);
}

void SimpleRows::addUpright(const Edge& edge)
{
    const double y = edge.top.y - _top;
    const double endY = edge.bottom.y - _top;
    for (int row = int(y); row < endY; ++row) {
        if (isNew(row))
            pieceAt(row).add(
                edge.top.x, edge.top.x, (std::min(endY, row + 1.0) - std::max(y, double(row))) * edge.sign);
    }
}

void SimpleRows::finishBand(CoverageRows& sink)
{
    const int count = _bottom - _top;
    setNew(0);
    for (int row = 0; row < count; ++row) {
        if (_isNew[std::size_t(row)] >= kIsSlanted)
            setNew(row + 1);
    }
    for (const Edge& edge : _upright)
        addUpright(edge);
    const AreaRows rows{_sums.data(), count, _touched.data(), _blocksPerRow, _isNew.data()};
    if (_limits.width() <= kMostMaskWidth) {
        takeCoverage(rows, _coverage.data());
        return sink.mask({{_limits.left, _limits.top + _top, _limits.right, _limits.top + _bottom},
            _coverage.data(), _stride});
    }
    takeTouchedCoverage(rows, _coverage.data());
    for (int row = 0; row < count;) {
        const int first = row++;
        while (row < count && !isNew(row))
            ++row;
        unsigned char* const coverage = &_coverage[std::size_t(first) * std::size_t(_stride)];
        if (const auto spans = spansOf(first, coverage); !spans.empty())
            sink.rows(_limits.top + _top + first, _limits.top + _top + row, spans, coverage);
    }
}

inline std::span<const CoverageSpan> SimpleRows::spansOf(int row, unsigned char* coverage)
{
    CoverageSpan* end = _spans.data();
    const int width = _limits.width();
    const auto addMixed = [&](int left, int right) {
        if (end != _spans.data() && !end[-1].isFull && end[-1].end == left)
            end[-1].end = right;
        else
            *end++ = {left, right, false};
    };
    int x = 0;
    const auto goTo = [&](int left) { // over pixels that are not touched
        const unsigned char before = x == 0 ? 0 : coverage[x - 1];
        if (before == 0 || left <= x)
            return;
        if (before == 255 && left - x >= kLongRun) {
            *end++ = {x, left, true};
        } else {
            std::memset(coverage + x, before, std::size_t(left - x));
            addMixed(x, left);
        }
    };
    forEachTouched(
        &_touched[std::size_t(row) * std::size_t(_blocksPerRow)], _blocksPerRow, [&](int left, int right) {
            goTo(left);
            if (left < width) // an edge at the right limit touches a block beyond it
                addMixed(left, std::min(right, width));
            x = right;
        });
    goTo(width);
    return {_spans.data(), end};
}

void SimpleRows::finishBands(CoverageRows& sink)
{
    for (std::size_t band = 1; band < _firstListed.size(); ++band) {
        beginBand(_bottom);
        std::swap(_active, _next);
        _next.clear();
        for (const Edge& edge : _active)
            addEdge(edge);
        for (int i = _firstListed[band]; i >= 0; i = _listed[std::size_t(i)].next)
            addEdge(_listed[std::size_t(i)].edge);
        finishBand(sink);
    }
}
