#include "CoreGraphics/raster/ConvexRows.h"

#include <cmath>

ConvexRows& ConvexRows::ofThread()
{
    thread_local ConvexRows rows;
    return rows;
}

bool ConvexRows::run(const Polygons& polygons, const PixelRect& limits, CoverageRows& sink)
{
    const auto polygon = convex(polygons.points, limits.width());
    if (polygon)
        scan(*polygon, limits, sink);
    return polygon.has_value();
}

std::optional<ConvexRows::Convex> ConvexRows::convex(std::span<const CGPoint> corners, double width)
{
    if (corners.empty())
        return std::nullopt;
    Convex result{corners, 0, 0, false, false};
    CGPoint last = corners.back();
    double left = last.x;
    double right = last.x;
    double area = 0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const CGPoint corner = corners[i];
        left = std::min(left, corner.x);
        right = std::max(right, corner.x);
        if (corner.y < result.topY())
            result.top = i;
        if (corner.y > result.bottomY())
            result.bottom = i;
        area += (corner.x - last.x) * (corner.y + last.y);
        last = corner;
    }
    if (!(left > -kFarthestExactLine && right < kFarthestExactLine && result.topY() > -kFarthestExactLine
            && result.bottomY() < kFarthestExactLine && std::isfinite(area)))
        return std::nullopt;
    result.isWithin = left >= 0 && right <= width;
    result.isClockwise = area < 0;
    return result;
}

void ConvexRows::scan(const Convex& polygon, const PixelRect& limits, CoverageRows& sink)
{
    _row.setWidth(limits.width());
    for (Side& side : _sides)
        side.setWidth(limits.width());
    _sides[0].begin(polygon, !polygon.isClockwise, 1);
    _sides[1].begin(polygon, polygon.isClockwise, -1);
    const int end = int(std::min(std::ceil(polygon.bottomY()), double(limits.height())));
    for (int row = int(std::max(polygon.topY(), 0.0)); row < end;) {
        int count = end - row;
        for (Side& side : _sides) {
            count = std::min(count, side.uprightRows(row));
            side.addTo(_row, row + 1);
        }
        _row.finish();
        count = std::max(count, 1);
        if (!_row.spans().empty())
            sink.rows(limits.top + row, limits.top + row + count, _row.spans(), _row.coverage());
        row += count;
        for (std::size_t i = 0; count > 1 && i < _sides.size(); ++i)
            _sides[i].skipTo(row);
    }
}

void ConvexRows::Side::begin(const Convex& polygon, bool isForward, double sign)
{
    _corners = polygon.corners;
    _corner = polygon.top;
    _last = polygon.bottom;
    _isForward = isForward;
    _isEnded = false;
    _isWithin = polygon.isWithin;
    _sign = sign;
    _to = _corners[_corner];
    advance();
    while (!_isEnded && _to.y <= 0)
        advance();
    _y = std::max(_from.y, 0.0);
    _x = xAt(_y);
}

inline void ConvexRows::Side::advance()
{
    _from = _to;
    while (_corner != _last) {
        if (_isForward)
            _corner = _corner + 1 == _corners.size() ? 0 : _corner + 1;
        else
            _corner = (_corner == 0 ? _corners.size() : _corner) - 1;
        _to.x = _corners[_corner].x;
        if (_corners[_corner].y > _from.y) {
            _to.y = _corners[_corner].y;
            _slope = (_to.x - _from.x) / (_to.y - _from.y);
            return;
        }
        _from.x = _to.x; // level
    }
    _isEnded = true;
}

inline int ConvexRows::Side::uprightRows(int row) const
{
    return _slope == 0 && _y <= row ? int(_to.y) - row : 1;
}

inline void ConvexRows::Side::addTo(RowCoverage& row, double bottom)
{
    double left = _x;
    double right = _x;
    for (;;) {
        const bool endsLine = _to.y <= bottom;
        const CGPoint end = endsLine ? _to : CGPoint{xAt(bottom), bottom};
        const double height = _sign * (end.y - _y);
        if (_isWithin)
            row.addLine(_x, end.x, height);
        else
            addCut(row, std::min(_x, end.x), std::max(_x, end.x), height);
        left = std::min(left, end.x);
        right = std::max(right, end.x);
        _x = end.x;
        _y = end.y;
        if (!endsLine)
            break;
        advance();
        _x = _from.x;
        if (_isEnded || _y == bottom)
            break;
        left = std::min(left, _x);
        right = std::max(right, _x);
    }
    if (!_isWithin) {
        left = std::clamp(left, 0.0, _width);
        right = std::clamp(right, 0.0, _width);
    }
    row.touch(left, right);
}

void ConvexRows::Side::addCut(RowCoverage& row, double left, double right, double height) const
{
    if (right <= 0)
        return row.addLine(0, 0, height);
    if (left >= _width)
        return;
    if (left >= 0 && right <= _width)
        return row.addLine(left, right, height);
    const double perPixel = height / (right - left);
    if (left < 0) {
        row.addLine(0, 0, -left * perPixel);
        height += left * perPixel;
        left = 0;
    }
    if (right > _width) {
        height -= (right - _width) * perPixel;
        right = _width;
    }
    row.addLine(left, right, height);
}
