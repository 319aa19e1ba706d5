#include "geometry/CurveFlattening.h"

#include "geometry/ZRBezierMath.h"

#include <array>

namespace {

/// Both coordinates of a point in one vector register. Each operation does the rule's arithmetic on both.
using Pair = double __attribute__((vector_size(16)));

Pair pair(CGPoint point)
{
    return Pair{point.x, point.y};
}

CGPoint point(Pair pair)
{
    return {pair[0], pair[1]};
}

Pair middle(Pair a, Pair b)
{
    return (b - a) * 0.5 + a;
}

/// The sum of the squares of both coordinates.
double squared(Pair vector)
{
    const Pair squares = vector * vector;
    return squares[0] + squares[1];
}

struct Piece {
    Pair cp0, cp1, point;
};

/// Whether all coordinates are so small that subdividing the curve cannot overflow. False for NaN.
bool isInSafeRange(Pair start, const Piece& curve)
{
    constexpr double kMost = 1e300;
    for (const Pair point : {start, curve.cp0, curve.cp1, curve.point}) {
        if (!(std::abs(point[0]) < kMost && std::abs(point[1]) < kMost))
            return false;
    }
    return true;
}

/// Decides whether a control polygon is longer than the resolution, taking square roots only near the limit.
class Threshold {
public:
    Threshold(double resolution, Pair start, const Piece& curve)
        : _resolution(resolution)
    {
        // For these resolutions the compared squares neither underflow nor overflow. Outside the safe range a
        // control polygon may be NaN, and therefore not longer than the resolution, although its chord is.
        if (resolution > 1e-100 && resolution < 1e100 && isInSafeRange(start, curve)) {
            // Much more than the rounding errors of a few squares and sums.
            constexpr double kMargin = 1e-12;
            _surelyLong = resolution * resolution * (1 + kMargin);
            _surelyShort = resolution * resolution / 3 * (1 - kMargin);
        }
    }

    bool isExceeded(Pair start, const Piece& piece) const
    {
        // The control polygon is at least as long as its chord, and at most three times the root mean square
        // of its three sides.
        if (squared(piece.point - start) > _surelyLong)
            return true;
        const Pair first = piece.cp0 - start, second = piece.cp1 - piece.cp0, third = piece.point - piece.cp1;
        const Pair squares = first * first + second * second + third * third;
        if (squares[0] + squares[1] <= _surelyShort)
            return false;
        return perimeter(point(start), {point(piece.cp0), point(piece.cp1), point(piece.point)})
            > _resolution;
    }

private:
    double _resolution;
    double _surelyLong = HUGE_VAL;
    double _surelyShort = -1;
};

} // namespace

void flattenCurve(CGPoint from, const ZRBezier& bezier, double resolution, std::vector<CGPoint>& points)
{
    struct Pending {
        Piece piece;
        int halvings;
    };
    constexpr int kDeepest = 64;
    std::array<Pending, kDeepest> pending; // right halves whose left half is being processed
    std::size_t pendingCount = 0;

    const int mostHalvings = ::mostHalvings(resolution);
    Pair start = pair(from);
    Piece piece{pair(bezier.cp0), pair(bezier.cp1), pair(bezier.point)};
    const Threshold threshold(resolution, start, piece);
    int halvings = 0;
    for (;;) {
        while (halvings < mostHalvings && threshold.isExceeded(start, piece)) {
            const Pair a = middle(start, piece.cp0), b = middle(piece.cp0, piece.cp1);
            const Pair c = middle(piece.cp1, piece.point);
            const Pair d = middle(a, b), e = middle(b, c);
            const Pair split = middle(d, e);
            pending[pendingCount++] = {{e, c, piece.point}, ++halvings};
            piece = {a, d, split};
        }
        points.push_back(point(piece.point));
        if (pendingCount == 0)
            return;
        start = piece.point;
        --pendingCount;
        piece = pending[pendingCount].piece;
        halvings = pending[pendingCount].halvings;
    }
}
