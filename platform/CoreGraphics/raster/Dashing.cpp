#include "CoreGraphics/raster/Dashing.h"

#include "CoreGraphics/CGAffineTransformInternal.h"
#include "CoreGraphics/CGPathWalk.h"
#include "CoreGraphics/raster/CurveLength.h"

#include <array>
#include <limits>
#include <numeric>

namespace {

/// In units of user space. With sums of this size the phase is still exact, and no line is longer.
constexpr CGFloat kLongestDash = 1e15;

/// Largest number of dashes of one stroke. Each takes about a microsecond and a few hundred bytes while the
/// stroke is drawn.
constexpr double kMaxDashes = 100'000;

/// Lines and curves are halved at most this often to find their hidden parts.
constexpr int kMaxDashHalvings = 12;

/// A dash of length 0 is a line of this length, which has a direction for its caps.
constexpr double kDotLength = 1e-6;

/// An upper bound of the number of dashes along a path, from the length of the lines between its points,
/// control points included. Coordinates count as at most `farthest`.
double dashCount(const CGPath& path, const std::vector<double>& dashes, const CGAffineTransform& userFromBase,
    double farthest)
{
    const auto reachable = [farthest](CGPoint point) -> CGPoint {
        return {std::clamp(point.x, -farthest, farthest), std::clamp(point.y, -farthest, farthest)};
    };
    double length = 0;
    CGPoint current{};
    CGPoint start{};
    const auto addLength = [&](CGPoint end) {
        const CGSize side = CGSizeApplyAffineTransform({end.x - current.x, end.y - current.y}, userFromBase);
        length += std::hypot(side.width, side.height);
        current = end;
    };
    const CGPoint* next = path.points().data();
    for (const CGPathOp op : path.ops()) {
        if (op == kCGPathElementMoveToPoint)
            start = current = reachable(*next++);
        else if (op == kCGPathElementCloseSubpath)
            addLength(start);
        else
            for (std::size_t i = 0; i < kCGPathPointsPerOp[op]; ++i)
                addLength(reachable(*next++));
    }
    // An odd number of lengths is used twice: dashes and gaps are exchanged the second time.
    const double sum = std::accumulate(dashes.begin(), dashes.end(), 0.0);
    return length / sum * double(dashes.size()) / 2;
}

/// Appends what it receives to a path.
class PathBuilder final : public PathVisitor {
public:
    explicit PathBuilder(CGPath& path)
        : _path(path)
    {
    }

    void beginSubpath(CGPoint start, bool /*isClosed*/) override { add(kCGPathElementMoveToPoint, {start}); }
    void addLine(CGPoint end) override { add(kCGPathElementAddLineToPoint, {end}); }
    void addCurve(const CGCubicCurve& curve) override
    {
        add(kCGPathElementAddCurveToPoint,
            std::array{CGPoint{curve.x.control1, curve.y.control1},
                CGPoint{curve.x.control2, curve.y.control2}, CGPoint{curve.x.end, curve.y.end}});
    }
    void closeSubpath() override { _path.close(); }

private:
    template <std::size_t count> void add(CGPathOp op, std::array<CGPoint, count> points)
    {
        _path.append({&op, 1}, points, nullptr, "dashes");
    }
    void add(CGPathOp op, CGPoint point) { add(op, std::array{point}); }

    CGPath& _path;
};

} // namespace

bool isDashPattern(CGFloat phase, std::span<const CGFloat> lengths)
{
    return std::isfinite(phase) && std::all_of(lengths.begin(), lengths.end(), [](CGFloat length) {
        return length >= 0 && std::isfinite(length);
    }) && std::any_of(lengths.begin(), lengths.end(), [](CGFloat length) { return length > 0; });
}

void setDashes(LineStyle& style, CGFloat phase, const CGFloat* lengths, std::size_t count)
{
    style.dashes = nullptr;
    style.dashPhase = 0;
    if (!lengths || !isDashPattern(phase, {lengths, count}))
        return;
    std::vector<double> dashes(lengths, lengths + count);
    CGFloat period = 0;
    for (double& dash : dashes) {
        dash = std::min(dash, kLongestDash);
        period += count % 2 == 0 ? dash : 2 * dash;
    }
    style.dashes = std::make_shared<const std::vector<double>>(std::move(dashes));
    phase = std::fmod(phase, period);
    style.dashPhase = phase < 0 ? phase + period : phase;
}

bool hasTooManyDashes(const CGPath& path, const Pen& pen)
{
    const auto userFromBase = inverse(pen.baseFromUser);
    return !userFromBase
        || !(dashCount(path, *pen.style->dashes, *userFromBase, kFarthestStroke) <= kMaxDashes);
}

Dasher::Dasher(std::span<const double> lengths, double phase, double scale, PathVisitor& next)
    : _lengths(lengths)
    , _phase(phase)
    , _scale(scale)
    , _next(next)
    , _period(
          std::accumulate(lengths.begin(), lengths.end(), 0.0) * scale * (lengths.size() % 2 == 0 ? 1 : 2))
{
}

void Dasher::beginSubpath(CGPoint start, bool isClosed)
{
    finish();
    _start = _current = start;
    _isClosed = isClosed;
}

void Dasher::leaveOutBeyond(const VisibleBox& visible, double distance)
{
    _isCut = true;
    _visible = visible;
    _distance = distance;
}

void Dasher::addLine(CGPoint end)
{
    addLine(end, kMaxDashHalvings);
}

void Dasher::addCurve(const CGCubicCurve& curve)
{
    addCurve(curve, kMaxDashHalvings);
}

void Dasher::addLine(CGPoint end, int depth)
{
    const CGPoint start = _current;
    const double length = std::hypot(end.x - start.x, end.y - start.y);
    if (isWorthHalving(length)) {
        if (!_visible.isNear(start, end, _distance))
            return skip(length, end);
        if (depth > 0) {
            addLine({(start.x + end.x) / 2, (start.y + end.y) / 2}, depth - 1);
            return addLine(end, depth - 1);
        }
    }
    const auto pointAt = [&](double at) {
        return at >= length
            ? end
            : CGPoint{start.x + (end.x - start.x) * at / length, start.y + (end.y - start.y) * at / length};
    };
    cut(length, pointAt, [&](double, double to) { addToDash(nullptr, pointAt(to)); });
    _current = end;
}

void Dasher::addCurve(const CGCubicCurve& curve, int depth)
{
    const CurveLength lengths(curve);
    if (isWorthHalving(lengths.total())) {
        if (!_visible.isNear(curve, _distance))
            return skip(lengths.total(), {curve.x.end, curve.y.end});
        if (depth > 0) {
            addCurve({part(curve.x, 0, 0.5), part(curve.y, 0, 0.5)}, depth - 1);
            return addCurve({part(curve.x, 0.5, 1), part(curve.y, 0.5, 1)}, depth - 1);
        }
    }
    // Each dash begins where the gap before it ended.
    double lastAt = -1;
    double lastT = 0;
    const auto parameterAt = [&](double at) {
        if (at != lastAt) {
            lastAt = at;
            lastT = lengths.parameterAt(at);
        }
        return lastT;
    };
    const auto pointAt = [&](double at) {
        const double t = parameterAt(at);
        return CGPoint{curve.x.at(t), curve.y.at(t)};
    };
    cut(lengths.total(), pointAt, [&](double from, double to) {
        const double t0 = parameterAt(from);
        const double t1 = parameterAt(to);
        const CGCubicCurve dash(part(curve.x, t0, t1), part(curve.y, t0, t1));
        addToDash(&dash, {dash.x.end, dash.y.end});
    });
    _current = {curve.x.end, curve.y.end};
}

void Dasher::skip(double length, CGPoint end)
{
    if (!_hasBegun)
        begin();
    _current = end;
    if (_isOn)
        endDash();
    double rest = std::fmod(length, _period);
    while (rest >= _left) {
        rest -= _left;
        turnOver();
    }
    _left -= rest;
    _dashStart = end;
}

void Dasher::closeSubpath()
{
    addLine(_start);
    finish();
}

void Dasher::begin()
{
    _hasBegun = true;
    _isFirst = true;
    _isOn = true;
    _hasElements = false;
    _first.clear();
    _index = 0;
    double rest = _phase;
    while (rest >= _lengths[_index] && rest > 0) {
        rest -= _lengths[_index];
        turnOver();
    }
    _left = (_lengths[_index] - rest) * _scale;
    if (_isOn)
        _dashStart = _current;
    else
        _isFirst = false;
}

void Dasher::turnOver()
{
    _isOn = !_isOn;
    _index = (_index + 1) % _lengths.size();
    _left = _lengths[_index] * _scale;
}

template <class PointAt, class Add> void Dasher::cut(double length, PointAt pointAt, Add add)
{
    if (!_hasBegun)
        begin();
    double at = 0;
    while (length - at > 0) {
        const double step = std::min(_left, length - at);
        if (_isOn && step > 0)
            add(at, at + step);
        else if (_isOn && _left == 0)
            add(at, at + std::min(kDotLength, length - at));
        at += step;
        _left -= step;
        if (_left > 0)
            continue;
        if (_isOn)
            endDash();
        turnOver();
        if (_isOn)
            _dashStart = pointAt(at);
    }
}

void Dasher::addToDash(const CGCubicCurve* curve, CGPoint end)
{
    if (_isFirst && _isClosed) {
        _first.push_back({curve ? std::optional(*curve) : std::nullopt, end});
    } else {
        if (!_hasElements)
            _next.beginSubpath(_dashStart, false);
        if (curve)
            _next.addCurve(*curve);
        else
            _next.addLine(end);
    }
    _hasElements = true;
}

void Dasher::endDash()
{
    _isFirst = false;
    _hasElements = false;
}

void Dasher::finish()
{
    if (!_hasBegun)
        return;
    _hasBegun = false;
    if (_isFirst) {        // there is no gap in the whole subpath
        if (!_hasElements) // a dot
            addToDash(nullptr, _current);
        if (_isClosed) {
            _next.beginSubpath(_start, true);
            addFirst();
            _next.closeSubpath();
        }
        return;
    }
    if (_first.empty())
        return;
    if (!_isOn || !_hasElements)
        _next.beginSubpath(_start, false);
    addFirst();
}

void Dasher::addFirst()
{
    for (const Element& each : _first) {
        if (each.curve)
            _next.addCurve(*each.curve);
        else
            _next.addLine(each.end);
    }
}

RetainPtr<CGPath> dashedPath(const CGPath& path, const LineStyle& style)
{
    // Strokes end at `kFarthestStroke`, outlines do not.
    constexpr double kAnywhere = std::numeric_limits<double>::infinity();
    if (!(dashCount(path, *style.dashes, CGAffineTransformIdentity, kAnywhere) <= kMaxDashes))
        return adopt(CGPathCreateMutableCopy(&path));
    auto dashes = adopt(new CGPath(CGPath::Mutability::Immutable));
    PathBuilder builder(*dashes);
    Dasher dasher(*style.dashes, style.dashPhase, 1, builder);
    walk(path, dasher);
    dasher.finish();
    return dashes;
}
