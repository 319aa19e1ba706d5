#include "CoreGraphics/raster/Dashing.h"

#include "CoreGraphics/CGAffineTransformInternal.h"
#include "CoreGraphics/CGPathWalk.h"
#include "CoreGraphics/raster/CurveLength.h"

#include <limits>
#include <numeric>

namespace {

/// In units of user space. With sums of this size the phase is still exact, and no line is longer.
constexpr CGFloat kLongestDash = 1e15;

/// Largest number of dashes of one stroke. Each takes about a microsecond and a few hundred bytes while the
/// stroke is drawn.
constexpr double kMaxDashes = 100'000;

/// Points further from the origin in base space are not reached by dashes.
constexpr double kFarthest = 4e6;

/// A dash of length 0 is a line of this length, which has a direction for its caps.
constexpr double kDotLength = 1e-6;

CGPoint reachable(CGPoint point)
{
    return {std::clamp(point.x, -kFarthest, kFarthest), std::clamp(point.y, -kFarthest, kFarthest)};
}

/// An upper bound of the number of dashes along a path, from the length of the lines between its points,
/// control points included.
double dashCount(const CGPath& path, const Pen& pen)
{
    const std::vector<double>& dashes = *pen.style->dashes;
    const auto userFromBase = inverse(pen.baseFromUser);
    if (!userFromBase)
        return std::numeric_limits<double>::infinity();
    double length = 0;
    CGPoint current{};
    CGPoint start{};
    const auto addLength = [&](CGPoint end) {
        const CGSize side = CGSizeApplyAffineTransform({end.x - current.x, end.y - current.y}, *userFromBase);
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

/// Cuts the subpaths of a path into dashes.
class Dasher {
public:
    explicit Dasher(const LineStyle& style)
        : _lengths(*style.dashes)
        , _phase(style.dashPhase)
        , _dashes(adopt(new CGPath(CGPath::Mutability::Immutable)))
    {
    }

    RetainPtr<CGPath> dashed(const CGPath& path)
    {
        walk(path, *this);
        finish();
        return _dashes;
    }

    void beginSubpath(CGPoint start, bool isClosed)
    {
        finish();
        _start = _current = start;
        _isClosed = isClosed;
    }

    void addLine(CGPoint end)
    {
        const CGPoint start = _current;
        const double length = std::hypot(end.x - start.x, end.y - start.y);
        const auto pointAt = [&](double at) {
            return at >= length ? end
                                : CGPoint{start.x + (end.x - start.x) * at / length,
                                    start.y + (end.y - start.y) * at / length};
        };
        cut(length, pointAt, [&](Elements& dash, double, double to) {
            dash.add(kCGPathElementAddLineToPoint, {pointAt(to)});
        });
        _current = end;
    }

    void addCurve(const CGCubicCurve& curve)
    {
        const CurveLength lengths(curve);
        const auto pointAt = [&](double at) {
            const double t = lengths.parameterAt(at);
            return CGPoint{curve.x.at(t), curve.y.at(t)};
        };
        cut(lengths.total(), pointAt, [&](Elements& dash, double from, double to) {
            const double t0 = lengths.parameterAt(from);
            const double t1 = lengths.parameterAt(to);
            const CGCubic x = part(curve.x, t0, t1);
            const CGCubic y = part(curve.y, t0, t1);
            dash.add(kCGPathElementAddCurveToPoint,
                {{x.control1, y.control1}, {x.control2, y.control2}, {x.end, y.end}});
        });
        _current = {curve.x.end, curve.y.end};
    }

    void closeSubpath()
    {
        addLine(_start);
        finish();
    }

private:
    struct Elements {
        std::vector<CGPathOp> ops;
        std::vector<CGPoint> points;

        void add(CGPathOp op, std::initializer_list<CGPoint> more)
        {
            ops.push_back(op);
            points.insert(points.end(), more);
        }
        /// Appends what follows the move of other elements.
        void addRest(const Elements& other)
        {
            ops.insert(ops.end(), other.ops.begin() + 1, other.ops.end());
            points.insert(points.end(), other.points.begin() + 1, other.points.end());
        }
    };

    void begin()
    {
        _hasBegun = true;
        _isFirst = true;
        _isOn = true;
        _index = 0;
        _left = _lengths[0];
        double rest = _phase;
        while (rest >= _left && rest > 0) {
            rest -= _left;
            turnOver();
        }
        _left -= rest;
        if (_isOn)
            _dash.add(kCGPathElementMoveToPoint, {_current});
        else
            _isFirst = false;
    }

    void turnOver()
    {
        _isOn = !_isOn;
        _index = (_index + 1) % _lengths.size();
        _left = _lengths[_index];
    }

    /// Cuts a line or curve of the given length. `pointAt` gives the point at a length, `add` appends the
    /// elements between two lengths to a dash.
    template <class PointAt, class Add> void cut(double length, PointAt pointAt, Add add)
    {
        if (!_hasBegun)
            begin();
        double at = 0;
        while (length - at > 0) {
            const double step = std::min(_left, length - at);
            if (_isOn && step > 0)
                add(_dash, at, at + step);
            else if (_isOn && _left == 0)
                add(_dash, at, at + std::min(kDotLength, length - at));
            at += step;
            _left -= step;
            if (_left > 0)
                continue;
            if (_isOn)
                endDash();
            turnOver();
            if (_isOn)
                _dash.add(kCGPathElementMoveToPoint, {pointAt(at)});
        }
    }

    /// Ends the current dash. The first one of a closed subpath may be the rest of the last one, so it is
    /// held back.
    void endDash()
    {
        if (_isFirst && _isClosed)
            _first = std::exchange(_dash, {});
        else
            append(_dash);
        _isFirst = false;
    }

    void finish()
    {
        if (!_hasBegun)
            return;
        const bool isWhole = _isFirst;
        const bool isOpenDash = _isOn && _dash.ops.size() > 1;
        if (isWhole) {
            // Without length, there is a dot.
            if (_dash.ops.size() == 1)
                _dash.add(kCGPathElementAddLineToPoint, {_current});
            if (_isClosed)
                _dash.add(kCGPathElementCloseSubpath, {});
        } else if (isOpenDash && !_first.ops.empty()) {
            _dash.addRest(std::exchange(_first, {}));
        }
        if (!_first.ops.empty())
            append(_first);
        if (isWhole || isOpenDash)
            append(_dash);
        _dash = {};
        _hasBegun = false;
    }

    void append(Elements& elements)
    {
        _dashes->append(elements.ops, elements.points, nullptr, "dashes");
        elements = {};
    }

    const std::vector<double>& _lengths;
    const double _phase;
    RetainPtr<CGPath> _dashes;

    CGPoint _start{};
    CGPoint _current{};
    bool _hasBegun = false; ///< the current subpath has an element besides its move
    bool _isClosed = false; ///< the current subpath ends in a close
    bool _isFirst = false;  ///< the current dash began with the subpath
    bool _isOn = false;
    std::size_t _index = 0;
    double _left = 0; ///< of the current dash or gap
    Elements _dash;
    Elements _first;
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
    return !(dashCount(path, pen) <= kMaxDashes);
}

RetainPtr<CGPath> dashedPath(const CGPath& path, const LineStyle& style)
{
    return Dasher(style).dashed(path);
}
